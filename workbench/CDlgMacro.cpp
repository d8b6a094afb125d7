#include "CDlgMacro.h"

#include "CDialogLayout.h"
#include "UIFunction.h"

#include <QComboBox>
#include <QLineEdit>

CDlgMacro::CDlgMacro(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("139"));
    setWindowTitle(QStringLiteral("宏设置"));
    m_nameEdit = CDialogLayout::Edit(this, 1017);
    m_typeCombo = new QComboBox(this);
    m_typeCombo->setObjectName(QStringLiteral("1020"));
    m_typeCombo->addItems({QStringLiteral("0"), QStringLiteral("1")});
    m_typeCombo->setCurrentIndex(0);
    m_descriptionEdit = CDialogLayout::Edit(this, 1019);
    CDialogLayout layout(this);
    layout.AddRow(QStringLiteral("名称"), m_nameEdit);
    layout.AddRow(QStringLiteral("类型"), m_typeCombo);
    layout.AddRow(QStringLiteral("其他描述"), m_descriptionEdit);
    layout.AddOkCancel();
}

void CDlgMacro::accept()
{
    m_strName = m_nameEdit->text();
    m_strDescription = m_descriptionEdit->text();
    if (m_strName.isEmpty()) {
        // The misspelt text is the one users know.
        UIFunction::QXMessageBox(QStringLiteral("名城不能为空"));
        return;
    }
    m_nType = m_typeCombo->currentIndex();
    QDialog::accept();
}
