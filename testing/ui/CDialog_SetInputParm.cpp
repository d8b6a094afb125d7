#include "CDialog_SetInputParm.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

CDialog_SetInputParm::CDialog_SetInputParm(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("1018"));
    setWindowTitle(QStringLiteral("设置输入参数"));
    m_label = new QLabel(QStringLiteral("输入参数："), this);
    m_label->setObjectName(QStringLiteral("1019"));
    m_edit = new QPlainTextEdit(this);
    m_edit->setObjectName(QStringLiteral("1017"));
    auto* save = new QPushButton(QStringLiteral("保存"), this);
    save->setObjectName(QStringLiteral("1"));
    save->setDefault(false);
    save->setAutoDefault(false);
    connect(save, &QPushButton::clicked, this, &CDialog_SetInputParm::OnSave);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(save);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_label);
    layout->addWidget(m_edit, 1);
    layout->addLayout(buttons);
    resize(560, 380);
}

int CDialog_SetInputParm::exec()
{
    setWindowTitle(m_caption);
    m_label->setText(m_caption);
    m_edit->setPlainText(m_text);
    return QDialog::exec();
}

void CDialog_SetInputParm::OnSave()
{
    m_text = m_edit->toPlainText();
    accept();
}

bool CDialog_SetInputParm::Ask(QWidget* parent, const QString& caption, QString& text)
{
    CDialog_SetInputParm dialog(parent);
    dialog.SetCaption(caption);
    dialog.SetText(text);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    text = dialog.GetText();
    return true;
}
