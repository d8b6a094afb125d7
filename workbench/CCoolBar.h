#pragma once
#include <QDockWidget>

// A docking pane of the tool frame: a caption with a close button, the pane's
// bar id as object name and an initial size.
class CCoolBar : public QDockWidget
{
    Q_OBJECT
public:
    CCoolBar(const QString& title, QWidget* parent, QSize size, int barId);

    QSize sizeHint() const override { return m_size; }
    QSize InitialSize() const { return m_size; }
    // "宋体" when a family of that name is installed, else "Tahoma".
    static QString CaptionFace();

private:
    QSize m_size;
};
