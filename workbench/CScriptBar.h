#pragma once
#include "CCoolBar.h"

class CEditCtr;

// The pane "脚本" holding the script editor (id 1003).
class CScriptBar : public CCoolBar
{
    Q_OBJECT
public:
    explicit CScriptBar(QWidget* parent);
    CEditCtr* Editor() const { return m_editor; }

private:
    CEditCtr* m_editor;
};
