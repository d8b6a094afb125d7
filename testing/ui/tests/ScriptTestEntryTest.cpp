#include "CScriptTestEntry.h"
#include "DialogTestSupport.h"

namespace {

const QString kQuestion = QString::fromUtf8(CScriptTestEntry::kNoCasesQuestion);
const QString kUntested = "梁\\未测.js";

// Picks a script by name in the chooser and presses "测试当前脚本".
ModalScript::Action Choose(const QString& name)
{
    return [name](QDialog& d) {
        auto& grid = Control<CGridCtrlForDataSet>(d, "1005");
        for (int row = 0; row < grid.GetRowCount(); ++row)
            if (grid.model()->index(row, 0).data().toString() == name)
                grid.SetCurrentRow(row);
        Click(d, "1");
    };
}

ModalScript::Action Press(const char* id)
{
    return [id](QDialog& d) { Click(d, id); };
}

} // namespace

class ScriptTestEntryTest : public SampleHomeTest
{
protected:
    void SetUp() override
    {
        SampleHomeTest::SetUp();
        ASSERT_TRUE(CAccessSysData_MacrosTable::SetMacroContent(kUntested, "var q = p * 2;"));
    }
};

TEST_F(ScriptTestEntryTest, EveryWayOutOfTheDialogs)
{
    const struct {
        const char* what;
        int answer;                                   // to the question, when it is asked
        QList<std::pair<QString, ModalScript::Action>> steps;
        int result;
        bool asked;
        bool globalsWritten;
    } cases[] = {
        {"chooser cancelled", 0, {{"1016", Cancel()}}, 0, false, false},
        {"no to new cases", UIFunction::IDNO, {{"1016", Choose(kUntested)}}, 0, true, false},
        {"functions cancelled", UIFunction::IDYES, {{"1016", Choose(kUntested)}, {"1018", Cancel()}}, 0, true, false},
        {"parameters cancelled", UIFunction::IDYES,
         {{"1016", Choose(kUntested)}, {"1018", Type("function f(){}")}, {"1018", Cancel()}}, 0, true, false},
        {"both saved", UIFunction::IDYES,
         {{"1016", Choose(kUntested)}, {"1018", Type("function f(){}")}, {"1018", Type("var p = 1;")}, {"1017", Press("1")}},
         1, true, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        QDir(NativePath::Map(CTestCaseStore::ScriptFolder(kUntested))).removeRecursively();
        ASSERT_FALSE(CTestCaseStore::HasTestCases(kUntested));
        Ui().Clear();
        if (c.asked)
            Ui().QueueAnswer(c.answer);
        ModalScript script;
        for (const auto& [id, action] : c.steps)
            script.Then(id, action);
        EXPECT_EQ(CScriptTestEntry::Run(), c.result);
        EXPECT_EQ(script.Pending(), 0);
        EXPECT_EQ(Ui().MessageTexts(), c.asked ? QStringList{kQuestion} : QStringList{});
        EXPECT_EQ(CTestCaseStore::HasTestCases(kUntested), c.globalsWritten);
    }
    EXPECT_EQ(Globals(kUntested), "function f(){}|var p = 1;");
}

TEST_F(ScriptTestEntryTest, AScriptWithCasesOpensItsDialogAndRunAllNeverAsks)
{
    ModalScript open;
    open.Then("1016", Choose(ScriptNames().first())).Then("1017", Press("1"));
    EXPECT_EQ(CScriptTestEntry::Run(), 1);
    EXPECT_EQ(open.Pending(), 0);
    EXPECT_TRUE(Ui().MessageTexts().isEmpty());

    // The untested script fails the whole run instead of raising the question.
    ModalScript all;
    all.Then("1016", Press("1006"));
    EXPECT_EQ(CScriptTestEntry::Run(), 1);
    EXPECT_EQ(Ui().MessageTexts(), QStringList{"测试出现失败！"});
    EXPECT_EQ(Ui().CallsOf("ShellOpen").size(), 1);
}
