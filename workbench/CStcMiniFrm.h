#pragma once
#include <QPointer>
#include <QWidget>

class CCommandTarget;
class CToolFrm;

// Holds the tool frame over the workbench's whole client area and keeps the
// Escape key from closing the workbench.
class CStcMiniFrm : public QWidget
{
    Q_OBJECT
public:
    explicit CStcMiniFrm(QWidget* parent);

    // Creates the tool frame in place of the holder's placeholder.
    void Bind(CCommandTarget* owner);
    CToolFrm* ToolFrame() const { return m_frame; }
    void DestroyFrame();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPointer<CToolFrm> m_frame;
};
