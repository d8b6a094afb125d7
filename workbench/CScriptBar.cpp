#include "CScriptBar.h"

#include "CEditCtr.h"

CScriptBar::CScriptBar(QWidget* parent)
    : CCoolBar(QStringLiteral("脚本"), parent, QSize(1000, 1000), 124)
    , m_editor(new CEditCtr(this))
{
    m_editor->setObjectName(QStringLiteral("1003"));
    // The caption font is the pane's; the editor keeps its fixed font.
    setWidget(m_editor);
}
