#pragma once
#include "CArray.h"
#include "CJSDialog.h"
#include "CJSDialogHost.h"
#include "CMacro.h"
#include "CMacroParam.h"
#include "CMacroParamFile.h"
#include "CV8MacroImplement.h"
#include "WindowMessages.h"

#include <QDialog>
#include <QPointer>
#include <QWidget>

class CEditCtr;
class CEditListCtrl;
class CStcMiniFrm;
class CToolFrm;

// The workbench window "脚本调试工具": hosts the tool frame and turns its
// commands into runs, settings-file and database saves. One per process.
class CVelmoraDlg : public QWidget, public CMessageTarget, public CCommandTarget, public CJSDialogHost
{
    Q_OBJECT
public:
    static CVelmoraDlg* Instance();
    static CVelmoraDlg* Existing() { return s_instance; }
    // Closes the window (running its closing steps) and deletes it.
    static void DestroyInstance();

    // Every command by its id; true when the id is one of the workbench's.
    bool OnCommand(int id) override;
    // 0x7101 is answered with 1; WM_USER+100 sets the status line.
    qintptr SendMessage(unsigned message, quintptr wparam, qintptr lparam) override;

    CToolFrm* ToolFrame() const;
    CEditCtr* Editor() const;
    CEditListCtrl* ParamList() const;
    CEditListCtrl* ScriptList() const;

    // The steps of the run command; false when the run failed.
    bool RunScript();
    void GatherParams();
    QString EditorText() const;
    const CMacro& CurrentMacro() const { return m_macro; }
    const CArray<CMacroParam>& WorkingParams() const { return m_params; }
    QString ScriptFileName() const { return m_scriptFileName; }
    QString SettingsFileName() const { return m_settingsFileName; }

    // Loads the chosen script of the script list into the editor, fills the
    // import dialog and runs it.
    void OnScriptChosen(const QString& name);

    // The import dialog's window (null while closed) and its fill step.
    CJSDialog& ImportDialog() { return m_jsDialog; }
    void FillImportDialog();

    // The import dialog's view of the workbench.
    QString GetChosenScriptName() const override;
    QString GetGatheredScript() const override { return m_scriptText; }
    bool RunScriptText(const QString& script) override;

    // Puts a stored macro into the editor and the parameter pane; it becomes
    // the current macro, so the next database save updates it.
    void OpenMacro(const CMacro& macro);

    // Lines the runner puts before the script text.
    int RunnerPrefixLines() const;

    static QString LoadScriptText(const QString& key);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    CVelmoraDlg();
    ~CVelmoraDlg() override;

    void SaveSettingsFile();
    void ResetWorkbench();
    void SaveToDatabase();
    void ShowAnalysisLog();
    void SaveLastScript();
    void ExportParamNames();
    void ImportParamNames();
    void OpenImportDialog();
    void AddParamRow();
    void DeleteSelectedParams();
    void ClearParams();
    void ShowAbout();
    void OpenSettingsFile();
    void ShowMacroList();
    bool RunGathered();
    void ShowParams();
    void ShowRunError();

    static CVelmoraDlg* s_instance;

    CJSDialog m_jsDialog;
    CStcMiniFrm* m_frameHolder = nullptr;
    CV8MacroImplement m_runner;
    CMacroParamFile m_paramFile;
    CArray<CMacroParam> m_inputs;
    CArray<CMacroParam> m_params;
    QString m_scriptFileName;
    QString m_settingsFileName;
    QString m_scriptText;
    CMacro m_macro;
};
