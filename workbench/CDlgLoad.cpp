#include "CDlgLoad.h"

#include "CDialogLayout.h"
#include "CDlgNew.h"
#include "CUIServices.h"

#include <QLineEdit>
#include <QPushButton>

CDlgLoad::CDlgLoad(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("133"));
    setWindowTitle(QStringLiteral("导入脚本参数文件"));
    m_fileEdit = CDialogLayout::Edit(this, 1013);
    CDialogLayout layout(this);
    QPushButton* browse = layout.Browse(1012);
    layout.AddRow(QStringLiteral("文件名"), m_fileEdit, browse);
    layout.AddOkCancel();
    connect(browse, &QPushButton::clicked, this, &CDlgLoad::OnBrowse);
}

void CDlgLoad::OnBrowse()
{
    const QString path = CUIServices::Current().OpenFileName(windowTitle(), CDlgNew::kSettingsFilter, QString());
    if (!path.isEmpty())
        m_fileEdit->setText(path);
}

void CDlgLoad::accept()
{
    m_strFileName = m_fileEdit->text();
    QDialog::accept();
}
