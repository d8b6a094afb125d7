#include "CDlgNew.h"

#include "CDialogLayout.h"
#include "CMacroParamFile.h"
#include "CUIServices.h"
#include "NativePath.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSaveFile>

const QString CDlgNew::kSettingsFilter =
    QStringLiteral("XML FILES (*.xml)|*.xml|Text Files (*.txt)|*.txt|All Files (*.*)|*.*||");
const QString CDlgNew::kScriptFilter =
    QStringLiteral("Script Files (*.js; *.vbs)|*.js;*.vbs|Text Files (*.txt)|*.txt|All Files (*.*)|*.*||");

CDlgNew::CDlgNew(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("132"));
    setWindowTitle(QStringLiteral("新建脚本参数设置文件"));
    m_settingsEdit = CDialogLayout::Edit(this, 1007);
    m_scriptEdit = CDialogLayout::Edit(this, 1009);
    CDialogLayout layout(this);
    QPushButton* browseSettings = layout.Browse(1008);
    QPushButton* browseScript = layout.Browse(1010);
    layout.AddRow(QStringLiteral("设置文件名"), m_settingsEdit, browseSettings);
    layout.AddRow(QStringLiteral("脚本文件名"), m_scriptEdit, browseScript);
    layout.AddNote(QStringLiteral("* 参数在主界面中设置、保存"));
    layout.AddOkCancel();
    connect(browseSettings, &QPushButton::clicked, this, &CDlgNew::OnBrowseSettings);
    connect(browseScript, &QPushButton::clicked, this, &CDlgNew::OnBrowseScript);
}

void CDlgNew::OnBrowseSettings()
{
    const QString path = CUIServices::Current().OpenFileName(windowTitle(), kSettingsFilter, QString());
    if (!path.isEmpty())
        m_settingsEdit->setText(path);
}

void CDlgNew::OnBrowseScript()
{
    const QString path = CUIServices::Current().OpenFileName(windowTitle(), kScriptFilter, QString());
    if (!path.isEmpty())
        m_scriptEdit->setText(path);
}

void CDlgNew::accept()
{
    m_strSetFileName = m_settingsEdit->text();
    m_strScriptFileName = m_scriptEdit->text();
    // The empty skeleton replaces any file of that name; a failed write is
    // reported later by the save itself.
    QSaveFile file(NativePath::Map(m_strSetFileName));
    if (!m_strSetFileName.isEmpty() && file.open(QIODevice::WriteOnly)) {
        file.write(CMacroParamFile::BuildDocument({}, {}, m_strScriptFileName));
        file.commit();
    }
    QDialog::accept();
}
