#include "CResultBar.h"

#include "CEditListCtrl.h"

CResultBar::CResultBar(QWidget* parent)
    : CCoolBar(QStringLiteral("输出参数与结果"), parent, QSize(300, 100), 122)
    , m_list(new CEditListCtrl(1005, this))
{
    const char16_t* titles[] = {u"参数名", u"参数值", u"描述", u"类型"};
    for (int column = 0; column < 4; ++column)
        m_list->InsertColumn(column, QString::fromUtf16(titles[column]), 100);
    m_list->SetEditable(true);
    m_list->setContextMenuPolicy(Qt::CustomContextMenu);
    setWidget(m_list);
}
