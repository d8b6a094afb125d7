#pragma once
#include "CCoolBar.h"

class CEditListCtrl;

// The pane "输出参数与结果": the editable parameter list (id 1005), whose rows
// the workbench owns.
class CResultBar : public CCoolBar
{
    Q_OBJECT
public:
    explicit CResultBar(QWidget* parent);
    CEditListCtrl* List() const { return m_list; }

private:
    CEditListCtrl* m_list;
};
