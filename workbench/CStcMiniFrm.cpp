#include "CStcMiniFrm.h"

#include "CToolFrm.h"

#include <QApplication>
#include <QKeyEvent>
#include <QVBoxLayout>

CStcMiniFrm::CStcMiniFrm(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("1004"));
    setWindowTitle(QStringLiteral("hello"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
}

void CStcMiniFrm::Bind(CCommandTarget* owner)
{
    m_frame = new CToolFrm(owner, this);
    layout()->addWidget(m_frame);
    qApp->installEventFilter(this);
}

void CStcMiniFrm::DestroyFrame()
{
    qApp->removeEventFilter(this);
    delete m_frame.data();
}

bool CStcMiniFrm::eventFilter(QObject* watched, QEvent* event)
{
    // Escape anywhere inside the workbench is swallowed; the editor's find
    // dialog and other windows keep theirs.
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        auto* widget = qobject_cast<QWidget*>(watched);
        if (widget && widget->window() == window())
            return true;
    }
    return QWidget::eventFilter(watched, event);
}
