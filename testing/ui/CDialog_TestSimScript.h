#pragma once
#include "CTestJavaScriptService.h"

#include <QDialog>

class CGridCtrlForDataSet;
class CEditCtr;
class QComboBox;
class QPlainTextEdit;

// Dialog 1017: the test cases of one script. Create, pick, edit, save and
// delete cases, record expected values by running one case, run every case
// with comparison, edit the global texts and build the coverage harness.
// Every button is also a public member so that callers and tests can drive
// it without clicking.
class CDialog_TestSimScript : public QDialog
{
    Q_OBJECT
public:
    static inline const QString kAllTests = QStringLiteral("**测试所有**");

    explicit CDialog_TestSimScript(const QString& script, QWidget* parent = nullptr);
    ~CDialog_TestSimScript() override;

    // Fills the dialog from the store; exec() calls it first.
    void OnInitDialog();
    int exec() override;

    // Selects the case of that exact name and shows it; false when the
    // combo has no such entry.
    bool SelectTestCase(const QString& name);
    QString CurrentCaseName() const;

    void OnNewTestCase();
    void OnSave();
    void OnDeleteTestCase();
    void OnRun();
    void OnViewGlobalFunctions();
    void OnAddParameter();
    void OnDeleteParameter();
    void OnCoverage();
    void OnNativeCoverage();

private:
    void FillCombo();
    void ShowSelectedCase();
    void RunAllCases();
    void RunCurrentCase();

    QString m_script;
    CTestJavaScriptService m_service;
    bool m_initialised = false;

    QComboBox* m_cases;
    CGridCtrlForDataSet* m_grid;
    QPlainTextEdit* m_globalParms;
    QPlainTextEdit* m_caseText;
    CEditCtr* m_scriptText;
};
