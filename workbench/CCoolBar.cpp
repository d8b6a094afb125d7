#include "CCoolBar.h"

#include <QFontDatabase>

CCoolBar::CCoolBar(const QString& title, QWidget* parent, QSize size, int barId)
    : QDockWidget(title, parent)
    , m_size(size)
{
    setObjectName(QString::number(barId));
    setFeatures(QDockWidget::DockWidgetClosable | QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
    QFont caption = font();
    caption.setFamily(CaptionFace());
    setFont(caption);
}

QString CCoolBar::CaptionFace()
{
    const QString song = QStringLiteral("宋体");
    return QFontDatabase::families().contains(song) ? song : QStringLiteral("Tahoma");
}
