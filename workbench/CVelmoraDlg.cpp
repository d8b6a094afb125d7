#include "CVelmoraDlg.h"

#include "CAccessSysData_MacrosTable.h"
#include "CAccessSysData_MacrosV2Table.h"
#include "CConnectManager.h"
#include "CDiagnosticLog.h"
#include "CDlgLoad.h"
#include "CDlgMacro.h"
#include "CDlgMacroList.h"
#include "CDlgNew.h"
#include "CEditCtr.h"
#include "CEditListCtrl.h"
#include "CJsParserOpr.h"
#include "CMacroDataManager.h"
#include "CMacroImplement.h"
#include "CResultBar.h"
#include "CSampleScripts.h"
#include "CSettingsFileOpener.h"
#include "CStcMiniFrm.h"
#include "CSteelBarBar.h"
#include "CToolFrm.h"
#include "CToolIcons.h"
#include "CUIServices.h"
#include "NativePath.h"
#include "QxMfcFun.h"
#include "TextFile.h"
#include "UIFunction.h"

#include <QCloseEvent>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFile>
#include <QLabel>
#include <QRegularExpression>
#include <QScreen>
#include <QGuiApplication>
#include <QVBoxLayout>

using QxMfc::Fun;

namespace {

const QString kLogViewerTitle = QStringLiteral("CalAnalyse.log - 记事本");

// Decimal value of the leading digits; 0 when the text starts otherwise.
int LeadingInt(const QString& text)
{
    const QRegularExpressionMatch match = QRegularExpression(QStringLiteral("^[+-]?\\d+")).match(text);
    return match.hasMatch() ? match.captured().toInt() : 0;
}

} // namespace

CVelmoraDlg* CVelmoraDlg::s_instance = nullptr;

CVelmoraDlg* CVelmoraDlg::Instance()
{
    if (!s_instance)
        s_instance = new CVelmoraDlg;
    return s_instance;
}

void CVelmoraDlg::DestroyInstance()
{
    if (!s_instance)
        return;
    if (s_instance->isVisible())
        s_instance->close();
    delete s_instance;
    s_instance = nullptr;
}

CVelmoraDlg::CVelmoraDlg()
    : QWidget(nullptr)
{
    setObjectName(QStringLiteral("102"));
    setWindowTitle(QStringLiteral("脚本调试工具"));
    setWindowIcon(CToolIcons::AppIcon());
    resize(954, 740); // 477 x 370 dialog units
    m_frameHolder = new CStcMiniFrm(this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_frameHolder);
    m_frameHolder->Bind(this);
    connect(ToolFrame()->ScriptListBar(), &CSteelBarBar::scriptChosen, this, &CVelmoraDlg::OnScriptChosen);
    // Without a window manager the maximised state alone changes nothing, so
    // the window also starts over the screen's whole free area.
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        setGeometry(screen->availableGeometry());
    setWindowState(Qt::WindowMaximized);
}

CVelmoraDlg::~CVelmoraDlg()
{
    m_jsDialog.DestroyWindow();
    if (s_instance == this)
        s_instance = nullptr;
}

CToolFrm* CVelmoraDlg::ToolFrame() const { return m_frameHolder->ToolFrame(); }
CEditCtr* CVelmoraDlg::Editor() const { return ToolFrame()->Editor(); }
CEditListCtrl* CVelmoraDlg::ParamList() const { return ToolFrame()->ResultBar()->List(); }
CEditListCtrl* CVelmoraDlg::ScriptList() const { return ToolFrame()->ScriptListBar()->List(); }
QString CVelmoraDlg::EditorText() const { return Editor()->text(); }

bool CVelmoraDlg::OnCommand(int id)
{
    if (!ToolFrame())
        return false; // closed: the frame is gone until Domodle opens a new window
    switch (id) {
    case 32778: RunScript(); break;
    case 32777: ShowAnalysisLog(); break;
    case 32923: OpenImportDialog(); break;
    case 32776: SaveSettingsFile(); break;
    case 32779: ResetWorkbench(); break;
    case 32786: SaveLastScript(); break;
    case 32787: SaveToDatabase(); break;
    case 32789: ImportParamNames(); break;
    case 32780: AddParamRow(); break;
    case 32781: DeleteSelectedParams(); break;
    case 32791: ExportParamNames(); break;
    case 32793: ClearParams(); break;
    case 1014: WriteTextFile(QStringLiteral("c:\\hello.txt"), QStringLiteral("longlongago")); break;
    case 16: ShowAbout(); break;
    case 32794: OpenSettingsFile(); break;
    case 32795: ShowMacroList(); break;
    case 32775: case 32772: case 32773: case 32782: break; // offered, nothing to do
    default: return false;
    }
    return true;
}

qintptr CVelmoraDlg::SendMessage(unsigned message, quintptr wparam, qintptr lparam)
{
    if (message == WindowMessages::kAliveQuery)
        return 1;
    if (message == WindowMessages::kLinePosition && ToolFrame())
        return ToolFrame()->SendMessage(message, wparam, lparam);
    return 0;
}

void CVelmoraDlg::GatherParams()
{
    m_inputs.SetSize(0);
    m_params.SetSize(0);
    CEditListCtrl* list = ParamList();
    for (int row = 0; row < list->GetItemCount(); ++row) {
        CMacroParam param(list->GetItemText(row, 0), list->GetItemText(row, 1), list->GetItemText(row, 2));
        // The type is read from the script list's fourth cell, which does not
        // exist: every gathered parameter is text, as users know it.
        param.SetDataType(static_cast<std::uint32_t>(LeadingInt(ToolFrame()->ScriptListBar()->GetCellText(row, 3))));
        m_params.Add(param);
    }
    m_scriptText = EditorText();
}

int CVelmoraDlg::RunnerPrefixLines() const
{
    return static_cast<int>(CMacroImplement::DeclarationsOf(m_inputs).count(QLatin1Char('\n'))) + 2;
}

bool CVelmoraDlg::RunScript()
{
    GatherParams();
    return RunGathered();
}

bool CVelmoraDlg::RunScriptText(const QString& script)
{
    GatherParams();
    m_scriptText = script;
    return RunGathered();
}

bool CVelmoraDlg::RunGathered()
{
    Editor()->MarkErrorLine(0);
    if (!m_runner.ExecuteScript(m_scriptText, m_inputs, m_params)) {
        ShowRunError();
        return false;
    }
    CJsParserOpr::Release();
    ShowParams();
    return true;
}

void CVelmoraDlg::ShowParams()
{
    CEditListCtrl* list = ParamList();
    list->DeleteAllItems();
    for (const CMacroParam& param : m_params)
        list->InsertRow({param.GetName(), param.GetValue(), param.GetDescription()});
}

void CVelmoraDlg::ShowRunError()
{
    const QString error = m_runner.GetError();
    const QRegularExpressionMatch line = QRegularExpression(QStringLiteral("; in line (\\d+)\\s*$")).match(error);
    if (line.hasMatch()) {
        const int scriptLine = line.captured(1).toInt() - RunnerPrefixLines();
        if (scriptLine >= 1 && scriptLine <= Editor()->lines())
            Editor()->MarkErrorLine(scriptLine);
    }
    UIFunction::QXMessageBox(error);
}

void CVelmoraDlg::SaveSettingsFile()
{
    GatherParams();
    if (m_settingsFileName.isEmpty() || m_scriptFileName.isEmpty()) {
        CDlgNew dialog(this);
        if (dialog.exec() != QDialog::Accepted) {
            UIFunction::QXMessageBox(QStringLiteral("由于没有设置保存文件名，将取消保存操作!"));
            return;
        }
        m_settingsFileName = dialog.m_strSetFileName;
        m_scriptFileName = dialog.m_strScriptFileName;
    }
    m_paramFile.SetFilePath(m_settingsFileName);
    if (!m_paramFile.Save(m_inputs, m_params, m_scriptFileName, m_scriptText))
        UIFunction::QXMessageBox(m_paramFile.GetErrorText());
}

void CVelmoraDlg::ResetWorkbench()
{
    m_inputs.SetSize(0);
    m_params.SetSize(0);
    // The script file name stays; the empty settings name is what makes the
    // next save ask for both.
    m_settingsFileName.clear();
    m_scriptText.clear();
    m_macro = CMacro();
    ToolFrame()->ScriptListBar()->Clear();
    ParamList()->DeleteAllItems();
    Editor()->clear();
}

void CVelmoraDlg::SaveToDatabase()
{
    GatherParams();
    CMacroDataManager store;
    if (m_macro.GetName().isEmpty()) {
        CDlgMacro dialog(this);
        if (dialog.exec() != QDialog::Accepted)
            return;
        m_macro.SetName(dialog.m_strName);
        m_macro.SetDescription(dialog.m_strDescription);
        m_macro.SetType(dialog.m_nType);
        m_macro.SetContent(m_scriptText);
        m_macro.InputParams().Copy(m_inputs);
        m_macro.OutputParams().Copy(m_params);
        const int id = store.InsertMacro(m_macro);
        if (id == -1)
            UIFunction::QXMessageBox(QStringLiteral("添加失败"));
        else
            m_macro.SetId(id);
        return;
    }
    m_macro.SetContent(m_scriptText);
    m_macro.InputParams().Copy(m_inputs);
    m_macro.OutputParams().Copy(m_params);
    if (store.UpdateMacro(m_macro.GetId(), m_macro) == -1)
        UIFunction::QXMessageBox(QStringLiteral("添加失败"));
}

void CVelmoraDlg::ShowAnalysisLog()
{
    CUIService& ui = CUIServices::Current();
    ui.CloseWindowByTitle(QStringLiteral("CalAnalyse - 记事本"));
    ui.CloseWindowByTitle(kLogViewerTitle);
    ui.ShellOpen(NativePath::Map(Fun::GetSysDataPath() + QStringLiteral("\\CalAnalyse.log")));
}

void CVelmoraDlg::SaveLastScript()
{
    WriteTextFile(QStringLiteral("C:\\Velmora.log"), m_runner.GetLastScript());
}

void CVelmoraDlg::ExportParamNames()
{
    QString names;
    for (const CMacroParam& param : m_params)
        names += param.GetName() + QLatin1Char(';');
    const QString path = Fun::GetSysDataPath() + QStringLiteral("\\AllParm.log");
    QFile::remove(NativePath::Map(path));
    Fun::AppendCString2File(path, names);
}

void CVelmoraDlg::ImportParamNames()
{
    QString text;
    Fun::File2CString(Fun::GetSysDataPath() + QStringLiteral("\\AllParm.log"), text);
    if (!text.isEmpty()) {
        CArray<QString> names;
        Fun::SplitCString(text, QStringLiteral(";"), names);
        for (const QString& name : names) {
            CMacroParam param;
            param.SetName(name);
            m_params.Add(param);
            ParamList()->InsertRow({name});
        }
    }
    RunScript();
}

void CVelmoraDlg::AddParamRow()
{
    ParamList()->InsertRow({QStringLiteral("zz")});
}

void CVelmoraDlg::DeleteSelectedParams()
{
    const QList<int> rows = ParamList()->SelectedRows();
    for (auto row = rows.crbegin(); row != rows.crend(); ++row)
        ParamList()->DeleteItem(*row);
}

void CVelmoraDlg::ClearParams()
{
    m_params.SetSize(0);
    ParamList()->DeleteAllItems();
    RunScript();
}

void CVelmoraDlg::ShowAbout()
{
    QDialog about(this);
    about.setObjectName(QStringLiteral("100"));
    about.setWindowTitle(QStringLiteral("关于 Velmora"));
    auto* layout = new QVBoxLayout(&about);
    auto* icon = new QLabel(&about);
    icon->setPixmap(windowIcon().pixmap(32, 32));
    layout->addWidget(icon);
    layout->addWidget(new QLabel(QStringLiteral("Velmora 1.0 版"), &about));
    auto* buttons = new QDialogButtonBox(&about);
    buttons->addButton(QStringLiteral("确定"), QDialogButtonBox::AcceptRole);
    connect(buttons, &QDialogButtonBox::accepted, &about, &QDialog::accept);
    layout->addWidget(buttons);
    about.exec();
}

QString CVelmoraDlg::LoadScriptText(const QString& key)
{
    QString text;
    if (CSampleScripts::IsV2Key(key))
        CAccessSysData_MacrosV2Table::GetMacroContent(key, text);
    else
        CAccessSysData_MacrosTable::GetMacroContent(key, text);
    return text;
}

void CVelmoraDlg::OnScriptChosen(const QString& name)
{
    Editor()->setText(LoadScriptText(name));
    FillImportDialog();
    RunScript();
}

void CVelmoraDlg::OpenImportDialog()
{
    m_jsDialog.SetHost(this);
    m_jsDialog.Create(this);
}

void CVelmoraDlg::FillImportDialog()
{
    m_jsDialog.FillFromChosenRow();
}

QString CVelmoraDlg::GetChosenScriptName() const
{
    return ToolFrame() ? ToolFrame()->ScriptListBar()->LastChosenName() : QString();
}

void CVelmoraDlg::OpenSettingsFile()
{
    CDlgLoad dialog(this);
    if (dialog.exec() != QDialog::Accepted || !CSettingsFileOpener::Open(dialog.m_strFileName, m_paramFile))
        return;
    m_settingsFileName = m_paramFile.GetFilePath();
    m_scriptFileName = m_paramFile.GetScriptFile();
    m_scriptText = m_paramFile.GetScript();
    m_inputs.SetSize(0);
    m_paramFile.GetOutputParams(m_params);
    Editor()->setText(m_scriptText);
    ShowParams();
}

void CVelmoraDlg::ShowMacroList()
{
    CDlgMacroList dialog(this);
    dialog.SetOpener([this](const CMacro& macro) { OpenMacro(macro); });
    dialog.SetFactsAsker([&dialog](CMacro& facts) {
        CDlgMacro ask(&dialog);
        if (ask.exec() != QDialog::Accepted)
            return false;
        facts.SetName(ask.m_strName);
        facts.SetType(ask.m_nType);
        facts.SetDescription(ask.m_strDescription);
        return true;
    });
    dialog.exec();
}

void CVelmoraDlg::OpenMacro(const CMacro& macro)
{
    m_macro = macro;
    m_scriptText = macro.GetContent();
    m_inputs.SetSize(0);
    m_params.Copy(macro.OutputParams());
    Editor()->setText(m_scriptText);
    ShowParams();
}

void CVelmoraDlg::closeEvent(QCloseEvent* event)
{
    CDiagnosticLog::DeleteSessionLogs();
    CUIServices::Current().CloseWindowByTitle(kLogViewerTitle);
    m_frameHolder->DestroyFrame();
    event->accept();
}
