#include "CEditFindDlg.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

CEditFindDlg::CEditFindDlg(QWidget* owner)
    : QDialog(owner)
{
    setObjectName(QStringLiteral("FindDialog"));
    setWindowTitle(QStringLiteral("查找"));
    setAttribute(Qt::WA_DeleteOnClose);
    setModal(false);

    m_text = new QLineEdit(this);
    m_text->setObjectName(QStringLiteral("FindText"));
    m_wholeWord = new QCheckBox(QStringLiteral("全字匹配(&W)"), this);
    m_wholeWord->setObjectName(QStringLiteral("WholeWord"));
    m_matchCase = new QCheckBox(QStringLiteral("区分大小写(&C)"), this);
    m_matchCase->setObjectName(QStringLiteral("MatchCase"));
    m_up = new QRadioButton(QStringLiteral("向上(&U)"), this);
    m_up->setObjectName(QStringLiteral("Up"));
    m_down = new QRadioButton(QStringLiteral("向下(&D)"), this);
    m_down->setObjectName(QStringLiteral("Down"));
    m_down->setChecked(true);

    auto* next = new QPushButton(QStringLiteral("查找下一个(&F)"), this);
    next->setObjectName(QStringLiteral("FindNext"));
    next->setDefault(true);
    auto* cancel = new QPushButton(QStringLiteral("取消"), this);
    cancel->setObjectName(QStringLiteral("Cancel"));
    connect(next, &QPushButton::clicked, this, &CEditFindDlg::findNext);
    connect(cancel, &QPushButton::clicked, this, &QDialog::close);

    auto* direction = new QGroupBox(QStringLiteral("方向"), this);
    auto* directionRow = new QHBoxLayout(direction);
    directionRow->addWidget(m_up);
    directionRow->addWidget(m_down);

    auto* grid = new QGridLayout(this);
    grid->addWidget(new QLabel(QStringLiteral("查找内容(&N):"), this), 0, 0);
    grid->addWidget(m_text, 0, 1, 1, 2);
    grid->addWidget(next, 0, 3);
    grid->addWidget(m_wholeWord, 1, 0, 1, 2);
    grid->addWidget(direction, 1, 2, 2, 1);
    grid->addWidget(cancel, 1, 3);
    grid->addWidget(m_matchCase, 2, 0, 1, 2);
}

QString CEditFindDlg::FindText() const { return m_text->text(); }
bool CEditFindDlg::SearchDown() const { return m_down->isChecked(); }
bool CEditFindDlg::MatchCase() const { return m_matchCase->isChecked(); }
bool CEditFindDlg::WholeWord() const { return m_wholeWord->isChecked(); }
