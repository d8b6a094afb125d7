#include "CDialog_TestSimScript.h"

#include "CAccessSysData_MacrosTable.h"
#include "CDialog_SetInputParm.h"
#include "CGridCtrlForDataSet.h"
#include "CJSCoverTestService.h"
#include "CNativeCoverageService.h"
#include "CEditCtr.h"
#include "CEditFindDlg.h" // CEditCtr.h holds a QPointer to it
#include "CTestCaseInfoTable.h"
#include "UIFunction.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

namespace {

void Say(const QString& text)
{
    UIFunction::QXMessageBox(text, QString(), UIFunction::MB_OK);
}

bool AskYes(const QString& text)
{
    return UIFunction::QXMessageBox(text, QString(), UIFunction::MB_YESNO) == UIFunction::IDYES;
}

QPlainTextEdit* TextBox(QWidget* parent, const char* id)
{
    auto* edit = new QPlainTextEdit(parent);
    edit->setObjectName(QLatin1String(id));
    return edit;
}

} // namespace

CDialog_TestSimScript::CDialog_TestSimScript(const QString& script, QWidget* parent)
    : QDialog(parent), m_script(script)
{
    setObjectName(QStringLiteral("1017"));
    setWindowTitle(QStringLiteral("脚本测试用例 - ") + script);
    m_cases = new QComboBox(this);
    m_cases->setObjectName(QStringLiteral("1013"));
    m_grid = new CGridCtrlForDataSet(this);
    m_grid->setObjectName(QStringLiteral("1011"));
    m_globalParms = TextBox(this, "1020");
    m_caseText = TextBox(this, "1021");
    m_scriptText = new CEditCtr(this);
    m_scriptText->setObjectName(QStringLiteral("1010"));

    auto button = [this](const char* id, const QString& text, void (CDialog_TestSimScript::*slot)()) {
        auto* b = new QPushButton(text, this);
        b->setObjectName(QLatin1String(id));
        b->setAutoDefault(false);
        connect(b, &QPushButton::clicked, this, slot);
        return b;
    };
    auto* layout = new QGridLayout(this);
    auto* top = new QHBoxLayout;
    top->addWidget(new QLabel(QStringLiteral("测试用例名称："), this));
    top->addWidget(m_cases, 1);
    top->addWidget(button("1016", QStringLiteral("新建测试用例"), &CDialog_TestSimScript::OnNewTestCase));
    top->addWidget(button("1014", QStringLiteral("保存"), &CDialog_TestSimScript::OnSave));
    top->addWidget(button("1007", QStringLiteral("删除当前测试"), &CDialog_TestSimScript::OnDeleteTestCase));
    top->addWidget(button("1008", QStringLiteral("运行"), &CDialog_TestSimScript::OnRun));
    layout->addLayout(top, 0, 0, 1, 2);

    auto* left = new QVBoxLayout;
    left->addWidget(new QLabel(QStringLiteral("运行结果:"), this));
    left->addWidget(m_grid, 1);
    auto* rowButtons = new QHBoxLayout;
    rowButtons->addWidget(button("1025", QStringLiteral("新增参数"), &CDialog_TestSimScript::OnAddParameter));
    rowButtons->addWidget(button("1017", QStringLiteral("删除参数"), &CDialog_TestSimScript::OnDeleteParameter));
    left->addLayout(rowButtons);
    left->addWidget(new QLabel(QStringLiteral("默认输入参数："), this));
    left->addWidget(m_globalParms, 1);
    left->addWidget(new QLabel(QStringLiteral("当前测试新值"), this));
    left->addWidget(m_caseText, 1);
    layout->addLayout(left, 1, 0);

    auto* right = new QVBoxLayout;
    right->addWidget(new QLabel(QStringLiteral("执行脚本："), this));
    right->addWidget(m_scriptText, 1);
    layout->addLayout(right, 1, 1);
    layout->setColumnStretch(1, 1);

    auto* bottom = new QHBoxLayout;
    bottom->addWidget(button("1022", QStringLiteral("查看全局函数"), &CDialog_TestSimScript::OnViewGlobalFunctions));
    bottom->addWidget(button("1023", QStringLiteral("测试JS覆盖率"), &CDialog_TestSimScript::OnCoverage));
    bottom->addWidget(button("NativeCoverage", QStringLiteral("本地覆盖率"), &CDialog_TestSimScript::OnNativeCoverage));
    bottom->addStretch();
    auto* ok = new QPushButton(QStringLiteral("OK"), this);
    ok->setObjectName(QStringLiteral("1"));
    ok->setAutoDefault(false);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    bottom->addWidget(ok);
    layout->addLayout(bottom, 2, 0, 1, 2);
    resize(1000, 680);
    connect(m_cases, &QComboBox::activated, this, [this] { ShowSelectedCase(); });
}

CDialog_TestSimScript::~CDialog_TestSimScript() = default;

int CDialog_TestSimScript::exec()
{
    if (!m_initialised)
        OnInitDialog();
    return QDialog::exec();
}

void CDialog_TestSimScript::OnInitDialog()
{
    m_initialised = true;
    m_grid->SetColumns({{CTestCaseInfoTable::ParmName, QStringLiteral("参数名称"), 100},
                        {CTestCaseInfoTable::ParmValue, QStringLiteral("参数值"), 100}});
    FillCombo();
    m_cases->setCurrentIndex(m_cases->count() >= 2 ? 1 : 0);
    ShowSelectedCase();
    QString globalFun;
    QString globalParm;
    if (!m_service.LoadGlobals(m_script, globalFun, globalParm)) {
        Say(QStringLiteral("获取全局参数，全局函数出错!"));
        return;
    }
    m_grid->SetEditable(true);
    m_globalParms->setPlainText(globalParm);
    QString scriptText;
    CAccessSysData_MacrosTable::GetMacroContent(m_script, scriptText);
    m_scriptText->setText(scriptText);
}

void CDialog_TestSimScript::FillCombo()
{
    m_cases->clear();
    m_cases->addItem(kAllTests);
    CArray<QString> names;
    m_service.ListTestCases(m_script, names);
    for (const QString& name : names)
        m_cases->addItem(name);
}

QString CDialog_TestSimScript::CurrentCaseName() const
{
    return m_cases->currentText();
}

bool CDialog_TestSimScript::SelectTestCase(const QString& name)
{
    const int index = m_cases->findText(name, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (index < 0)
        return false;
    m_cases->setCurrentIndex(index);
    ShowSelectedCase();
    return true;
}

void CDialog_TestSimScript::ShowSelectedCase()
{
    const QString name = CurrentCaseName();
    if (name == kAllTests) {
        m_grid->SetDataSet(nullptr);
        m_caseText->clear();
        return;
    }
    if (!m_grid->DataSet())
        m_grid->SetDataSet(std::make_unique<CTestCaseInfoTable>());
    // Loading appends rows, so the previous case's rows go first.
    m_grid->DataSet()->Reset();
    QString caseText;
    const bool loaded = m_service.LoadTestCase(m_script, name, caseText, m_grid->DataSet());
    m_grid->Refresh();
    if (!loaded) {
        Say(QStringLiteral("获取测试用例，信息失败!"));
        return;
    }
    m_caseText->setPlainText(caseText);
}

void CDialog_TestSimScript::OnNewTestCase()
{
    QString name;
    if (!CDialog_SetInputParm::Ask(this, QStringLiteral("请输入新测试名称"), name))
        return;
    if (!name.endsWith(CTestCaseStore::kCaseExtension, Qt::CaseSensitive))
        name += CTestCaseStore::kCaseExtension;
    CArray<QString> names;
    m_service.ListTestCases(m_script, names);
    for (const QString& existing : names) {
        if (existing == name) {
            Say(QStringLiteral("输入的测试名称已经存在!"));
            return;
        }
    }
    m_service.SaveTestCase(m_script, name, QString(), nullptr);
    FillCombo();
    if (!SelectTestCase(name))
        Say(QStringLiteral("新增测试用例失败!"));
}

void CDialog_TestSimScript::OnSave()
{
    if (CurrentCaseName() == kAllTests) {
        Say(QStringLiteral("请先选中测试用例!"));
        return;
    }
    QString globalFun;
    QString globalParm;
    m_service.LoadGlobals(m_script, globalFun, globalParm);
    const QString shownParm = m_globalParms->toPlainText();
    if (shownParm != globalParm && AskYes(QStringLiteral("是否保存全局参数的修改!(Y/N)")))
        m_service.SaveGlobals(m_script, globalFun, shownParm);
    m_service.SaveTestCase(m_script, CurrentCaseName(), m_caseText->toPlainText(), m_grid->DataSet());
}

void CDialog_TestSimScript::OnDeleteTestCase()
{
    if (CurrentCaseName() == kAllTests)
        return;
    if (UIFunction::QXMessageBox(QStringLiteral("是否删除当前测试用例！(Y/N)"), QString(), UIFunction::MB_YESNO)
        == UIFunction::IDNO)
        return;
    if (!m_service.DeleteTestCase(m_script, CurrentCaseName())) {
        Say(QStringLiteral("测试用例删除失败!"));
        return;
    }
    FillCombo();
    SelectTestCase(kAllTests);
}

void CDialog_TestSimScript::OnRun()
{
    if (CurrentCaseName() == kAllTests)
        RunAllCases();
    else
        RunCurrentCase();
}

void CDialog_TestSimScript::RunAllCases()
{
    // The global parameters and the script as they are on screen, saved or not.
    QString globalFun;
    QString storedParm;
    m_service.LoadGlobals(m_script, globalFun, storedParm);
    const QString globalParm = m_globalParms->toPlainText();
    const QString scriptText = m_scriptText->text();
    CArray<QString> names;
    m_service.ListTestCases(m_script, names);
    bool failed = false;
    for (const QString& name : names) {
        CTestCaseInfoTable stored;
        QString caseText;
        m_service.LoadTestCase(m_script, name, caseText, &stored);
        const std::unique_ptr<NDataModelDataSet> run = stored.Clone();
        QString error;
        if (!m_service.RunTestCase(globalFun, globalParm, caseText, scriptText, *run, error)) {
            failed = true;
            m_service.LogTestMessage(m_script, name, error);
        } else if (!m_service.CompareResults(m_script, name, *run, stored)) {
            failed = true;
        }
    }
    if (failed) {
        Say(CTestJavaScriptService::kRunFailed);
        m_service.OpenResultFile();
    }
}

void CDialog_TestSimScript::RunCurrentCase()
{
    QString globalFun;
    QString storedParm;
    m_service.LoadGlobals(m_script, globalFun, storedParm);
    NDataModelDataSet* table = m_grid->DataSet();
    if (!table) {
        Say(QStringLiteral("没有获得输出结果结构!"));
        return;
    }
    // Recording: the computed values land in the grid's own cells; "保存"
    // makes them the expected values.
    QString error;
    if (!m_service.RunTestCase(globalFun, m_globalParms->toPlainText(), m_caseText->toPlainText(),
                               m_scriptText->text(), *table, error))
        Say(QStringLiteral("脚本运行失败!") + error);
    m_grid->Refresh();
}

void CDialog_TestSimScript::OnViewGlobalFunctions()
{
    QString globalFun;
    QString globalParm;
    m_service.LoadGlobals(m_script, globalFun, globalParm);
    if (CDialog_SetInputParm::Ask(this, QStringLiteral("全局函数"), globalFun))
        m_service.SaveGlobals(m_script, globalFun, globalParm);
}

void CDialog_TestSimScript::OnAddParameter()
{
    NDataModelDataSet* table = m_grid->DataSet();
    if (!table) {
        Say(QStringLiteral("新增参数失败!"));
        return;
    }
    table->InsertRow(0);
    m_grid->Refresh();
}

void CDialog_TestSimScript::OnDeleteParameter()
{
    NDataModelDataSet* table = m_grid->DataSet();
    if (!table) {
        Say(QStringLiteral("删除参数失败!"));
        return;
    }
    const int row = m_grid->GetCurrentRow();
    if (row >= 0 && row < table->GetRowCount())
        table->DeleteRow(row + 1);
    m_grid->Refresh();
}

void CDialog_TestSimScript::OnCoverage()
{
    CArray<QString> cases;
    if (CurrentCaseName() == kAllTests)
        m_service.ListTestCases(m_script, cases);
    else
        cases.Add(CurrentCaseName());
    CJSCoverTestService coverage;
    if (!coverage.BuildCoverageHarness(m_service, m_script, cases))
        Say(QStringLiteral("生成覆盖测试代码失败!"));
}

// Line coverage from the engine itself: the stored cases (one or all) run
// with line counts and the report opens; no server needed.
void CDialog_TestSimScript::OnNativeCoverage()
{
    const QString name = CurrentCaseName();
    CNativeCoverageService().RunScriptCoverage(m_script, name == kAllTests ? QString() : name);
}
