#include "CDialogLayout.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

CDialogLayout::CDialogLayout(QDialog* dialog)
    : m_dialog(dialog)
    , m_grid(new QGridLayout(dialog))
{
}

QLineEdit* CDialogLayout::Edit(QWidget* parent, int id)
{
    auto* edit = new QLineEdit(parent);
    edit->setObjectName(QString::number(id));
    edit->setMinimumWidth(260);
    return edit;
}

QPushButton* CDialogLayout::Browse(int id)
{
    auto* button = new QPushButton(QStringLiteral("..."), m_dialog);
    button->setObjectName(QString::number(id));
    button->setFixedWidth(32);
    return button;
}

void CDialogLayout::AddRow(const QString& label, QWidget* field, QPushButton* browse)
{
    m_grid->addWidget(new QLabel(label, m_dialog), m_row, 0);
    m_grid->addWidget(field, m_row, 1);
    if (browse)
        m_grid->addWidget(browse, m_row, 2);
    ++m_row;
}

void CDialogLayout::AddNote(const QString& text)
{
    m_grid->addWidget(new QLabel(text, m_dialog), m_row++, 0, 1, 3);
}

void CDialogLayout::AddOkCancel()
{
    auto* buttons = new QDialogButtonBox(m_dialog);
    QPushButton* ok = buttons->addButton(QStringLiteral("OK"), QDialogButtonBox::AcceptRole);
    ok->setObjectName(QStringLiteral("1"));
    ok->setDefault(true);
    buttons->addButton(QStringLiteral("Cancel"), QDialogButtonBox::RejectRole)->setObjectName(QStringLiteral("2"));
    QObject::connect(buttons, &QDialogButtonBox::accepted, m_dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, m_dialog, &QDialog::reject);
    m_grid->addWidget(buttons, m_row++, 0, 1, 3);
}
