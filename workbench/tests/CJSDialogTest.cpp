#include "CAccessSysData_MacrosTable.h"
#include "CAccessSysData_MacrosV2Table.h"
#include "CDBFactory.h"
#include "CJSDialog.h"
#include "CJSDialogHost.h"
#include "CJSDialogWnd.h"
#include "DbBackendTest.h"
#include "HostContext.h"

#include <QCoreApplication>

#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

namespace {

// The workbench as the dialog sees it: a chosen row, a gathered script, and a
// run step that records what it was given.
class FakeWorkbench : public CJSDialogHost
{
public:
    QString GetChosenScriptName() const override { return chosen; }
    QString GetGatheredScript() const override { return gathered; }
    bool RunScriptText(const QString& script) override
    {
        runs << script;
        return runSucceeds;
    }

    QString chosen, gathered;
    QStringList runs;
    bool runSucceeds = true;
};

class JSDialogTest : public TempHomeTest
{
protected:
    void SetUp() override
    {
        TempHomeTest::SetUp();
        CDBFactory::ReleaseThread();
        dialog.SetHost(&workbench);
    }
    void TearDown() override
    {
        dialog.DestroyWindow();
        CDBFactory::ReleaseThread();
        TempHomeTest::TearDown();
    }

    template <typename T>
    T* Control(int id)
    {
        return dialog.GetWindow()->findChild<T*>(QString::number(id));
    }
    void Click(int id) { Control<QPushButton>(id)->click(); }
    // The dialog's data as "entries|script key|script text".
    QString Shown()
    {
        return dialog.Data().entries.join(',') + '|' + dialog.Data().scriptPath + '|' + dialog.Data().scriptText;
    }

    FakeWorkbench workbench;
    CJSDialog dialog;
};

TEST_F(JSDialogTest, ChosenRowFillsTheComboOnOpeningAndOnRefill)
{
    ASSERT_TRUE(CAccessSysData_MacrosTable::SetMacroContent("a\\b.js", "var b;"));
    workbench.chosen = "a\\b.js|c.js|d.txt";
    dialog.OnInitDialog();
    EXPECT_EQ(Shown(), "a\\b.js,a\\c.js|a\\b.js|var b;");

    // A refill while the window is open lists the first piece's folders.
    dialog.Create(nullptr);
    workbench.chosen = "x\\y\\z.js|w.js";
    dialog.FillFromChosenRow();
    EXPECT_EQ(Shown(), "x,x\\y,x\\z.js|x\\y\\z.js|");
}

TEST_F(JSDialogTest, BrowsedScriptPathIsCutAfterItsFirstSE)
{
    const struct { const char* browsed; const char* key; bool second; } rows[] = {
        {"D:\\DATA\\BASE\\通用脚本\\x.js", "通用脚本\\x.js", true},
        {"D:\\data\\base\\图形法脚本\\g.js", "图形法脚本\\g.js", true},
        {"D:\\脚本\\a.js", "D:\\脚本\\a.js", false},
        {"SE", "", false},
    };
    for (const auto& row : rows) {
        dialog.Data().scriptPath = CJSDialog::KeyFromBrowsedPath(QString::fromUtf8(row.browsed));
        EXPECT_EQ(dialog.Data().scriptPath, QString::fromUtf8(row.key)) << row.browsed;
        EXPECT_EQ(dialog.UseSecondTable(), row.second) << row.browsed;
    }
}

TEST_F(JSDialogTest, BrowsingReadsTheRightTableAndAFileWithoutJsKeepsThePath)
{
    ASSERT_TRUE(CAccessSysData_MacrosV2Table::SetMacroContent("通用脚本\\x.js", "v2"));
    ASSERT_TRUE(CAccessSysData_MacrosTable::SetMacroContent("通用脚本\\x.js", "v1"));
    Ui().QueueFileName("D:/DATA/BASE/通用脚本/x.js");
    dialog.OnBrowseScript();
    EXPECT_EQ(Shown(), "通用脚本\\x.js|通用脚本\\x.js|v2");

    dialog.Data().scriptText = "edited, not saved";
    Ui().QueueFileName("D:\\DATA\\BASE\\readme.txt");
    dialog.OnBrowseScript();
    EXPECT_EQ(Shown(), "通用脚本\\x.js|通用脚本\\x.js|v2");
    EXPECT_EQ(Ui().CallsOf("OpenFileName").size(), 2);
}

TEST_F(JSDialogTest, SaveAlwaysSaysSuccessAndStoresUnderTheKey)
{
    const struct { const char* path; bool stored; } rows[] = {{"梁\\新脚本.js", true}, {"", false}};
    for (const auto& row : rows) {
        Ui().Clear();
        dialog.Data().scriptPath = QString::fromUtf8(row.path);
        dialog.Data().scriptText = "var n = 1;";
        dialog.OnSave();
        EXPECT_EQ(Ui().MessageTexts(), QStringList{"成功！"}) << row.path;
        QString text;
        EXPECT_EQ(dialog.GetContent(text), row.stored) << row.path;
        EXPECT_EQ(text, row.stored ? "var n = 1;" : QString()) << row.path;
    }
}

TEST_F(JSDialogTest, ScriptIsReadFromAnotherAccessFile)
{
    ASSERT_FALSE(CopyAccessFixture(HostContext::Instance().DriveRoot(QLatin1Char('D')) + "/数据").isEmpty());
    dialog.Data().scriptPath = "梁\\箍筋长度.js";
    Ui().QueueFileName("D:\\数据\\macros.mdb");
    dialog.OnBrowseDatabase();
    EXPECT_EQ(dialog.Data().scriptText, "var L = 2 * (b + h) - 8 * c + 2 * 11.9 * d;\r\nif (L < 0) { L = 0; }\r\n");
    EXPECT_EQ(dialog.Data().databasePath, "D:\\数据\\macros.mdb");

    // A key the file lacks, and a file that is no Access file, leave the text.
    dialog.Data().scriptPath = "梁\\没有.js";
    Ui().QueueFileName("D:\\数据\\macros.mdb");
    Ui().QueueFileName("D:\\数据\\notes.txt");
    dialog.OnBrowseDatabase();
    dialog.OnBrowseDatabase();
    EXPECT_EQ(dialog.Data().scriptText.left(6), "var L ");
    EXPECT_EQ(dialog.Data().databasePath, "D:\\数据\\macros.mdb");
    EXPECT_TRUE(Ui().MessageTexts().isEmpty());
}

TEST_F(JSDialogTest, RunReplacesTheStoredScriptInsideTheWorkbenchTextOrAppends)
{
    ASSERT_TRUE(CAccessSysData_MacrosTable::SetMacroContent("k.js", "var a = 1;"));
    ASSERT_TRUE(CAccessSysData_MacrosTable::SetMacroContent("empty.js", QString("")));
    const struct { const char* key; const char* gathered; const char* run; } rows[] = {
        {"k.js", "var a = 1;\r\nvar b = a;var a = 1;", "var a = 2;\r\nvar b = a;var a = 2;"},
        {"k.js", "var c = 3;", "var c = 3;var a = 2;"},
        {"empty.js", "var c = 3;", "var c = 3;var a = 2;"},
        {"none.js", "", "var a = 2;"},
    };
    for (const auto& row : rows) {
        dialog.Data().scriptPath = QString::fromUtf8(row.key);
        dialog.Data().scriptText = "var a = 2;";
        workbench.gathered = QString::fromUtf8(row.gathered);
        dialog.OnRun();
        EXPECT_EQ(workbench.runs.value(workbench.runs.size() - 1), QString::fromUtf8(row.run)) << row.key;
    }
    EXPECT_EQ(Ui().MessageTexts(), QStringList(4, "脚本正确"));
    workbench.runSucceeds = false;
    dialog.OnRun();
    EXPECT_EQ(Ui().MessageTexts().size(), 4);
}

TEST_F(JSDialogTest, WindowCarriesTheDataAndClosingDestroysIt)
{
    ASSERT_TRUE(CAccessSysData_MacrosTable::SetMacroContent("b\\one.js", "1;\r\n2;"));
    ASSERT_TRUE(CAccessSysData_MacrosTable::SetMacroContent("b\\two.js", "two"));
    QWidget owner;
    workbench.chosen = "b\\one.js|two.js";
    dialog.Create(&owner);
    ASSERT_TRUE(dialog.IsWindow());
    CJSDialogWnd* window = dialog.GetWindow();

    // The controls carry the data both ways; CR LF survive the editor.
    EXPECT_EQ(Control<QPlainTextEdit>(1001)->toPlainText(), "1;\n2;");
    Click(1);
    QString stored;
    ASSERT_TRUE(CAccessSysData_MacrosTable::GetMacroContent("b\\one.js", stored));
    EXPECT_EQ(stored, "1;\r\n2;");
    emit Control<QComboBox>(1004)->activated(1);
    EXPECT_EQ(Control<QLineEdit>(1000)->text(), "b\\two.js");
    EXPECT_EQ(Control<QPlainTextEdit>(1001)->toPlainText(), "two");

    // Creating again replaces the window; cancelling destroys it.
    const QPointer<CJSDialogWnd> first = window;
    dialog.Create(&owner);
    EXPECT_TRUE(first.isNull());
    ASSERT_TRUE(dialog.IsWindow());
    Click(2);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(dialog.IsWindow());
}

} // namespace
