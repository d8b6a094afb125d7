#include "CDialog_TestSimScript.h"
#include "CEditCtr.h"
#include "CEditFindDlg.h" // CEditCtr.h holds a QPointer to it
#include "DialogTestSupport.h"

#include <QComboBox>

namespace {

const QString kWeight = "通用脚本\\钢筋每米重量.js";

QStringList Items(QWidget& dialog)
{
    auto& combo = Control<QComboBox>(dialog, "1013");
    QStringList items;
    for (int i = 0; i < combo.count(); ++i)
        items << combo.itemText(i);
    return items;
}

// The grid's rows as shown, and a stored case's rows, as "name|value|comment".
QStringList GridRows(QWidget& dialog)
{
    const NDataModelDataSet* shown = Control<CGridCtrlForDataSet>(dialog, "1011").DataSet();
    return shown ? RowTexts(*shown) : QStringList{};
}

QStringList StoredRows(const QString& caseName)
{
    CTestCaseInfoTable table;
    QString text;
    return CTestCaseStore::LoadTestCase(kWeight, caseName, text, &table) ? RowTexts(table) : QStringList{"<unreadable>"};
}

} // namespace

class TestSimScriptTest : public SampleHomeTest
{
protected:
    void SetUp() override
    {
        SampleHomeTest::SetUp();
        m_dialog = std::make_unique<CDialog_TestSimScript>(kWeight);
        m_dialog->OnInitDialog();
    }
    CDialog_TestSimScript& Dialog() { return *m_dialog; }
    void NewCase(const QString& typed)
    {
        ModalScript input;
        input.Then("1018", Type(typed));
        Dialog().OnNewTestCase();
        EXPECT_EQ(input.Pending(), 0);
    }
    void SetCell(int row, int column, const QString& value)
    {
        auto& grid = Control<CGridCtrlForDataSet>(Dialog(), "1011");
        ASSERT_TRUE(grid.model()->setData(grid.model()->index(row, column), value));
    }

    std::unique_ptr<CDialog_TestSimScript> m_dialog;
};

TEST_F(TestSimScriptTest, OpensOnTheFirstCaseWithTheGlobalsAndTheScript)
{
    EXPECT_EQ(Items(Dialog()), QStringList({"**测试所有**", "直径12.tx", "直径25.tx", "直径8.tx"}));
    EXPECT_EQ(Dialog().CurrentCaseName(), "直径12.tx");
    EXPECT_EQ(GridRows(Dialog()), StoredRows("直径12.tx"));
    EXPECT_EQ((QStringList{Control<QPlainTextEdit>(Dialog(), "1021").toPlainText(),
                           Control<QPlainTextEdit>(Dialog(), "1020").toPlainText(),
                           Control<CEditCtr>(Dialog(), "1010").text()}),
              (QStringList{"d = 12;", Globals(kWeight).section('|', -1), ScriptText(kWeight)}));
    EXPECT_TRUE(Ui().MessageTexts().isEmpty());
}

TEST_F(TestSimScriptTest, NewCaseNamesEndInTxAndMustBeNew)
{
    const struct { const char* typed; const char* stored; const char* message; } cases[] = {
        {"abc", "abc.tx", nullptr},
        {"abc.tx", "abc.tx", "输入的测试名称已经存在!"},
        {"abd.tx", "abd.tx", nullptr},
        {"abc.TX", "abc.TX.tx", nullptr},
        {"abc", "abc.tx", "输入的测试名称已经存在!"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.typed);
        Ui().Clear();
        NewCase(c.typed);
        EXPECT_EQ(Ui().MessageTexts(), c.message ? QStringList{c.message} : QStringList{});
        EXPECT_TRUE(CTestCaseStore::TestCaseExists(kWeight, c.stored));
        if (!c.message) {
            EXPECT_EQ(Dialog().CurrentCaseName(), c.stored);
        }
    }
    // A new case is the separator alone: no text, no rows.
    EXPECT_EQ(FileText(CTestCaseStore::ScriptFolder(kWeight) + "abd.tx"), CTestCaseStore::kSeparator);
    // Cancelling the name asks nothing and adds nothing.
    ModalScript cancel;
    cancel.Then("1018", Cancel());
    const QStringList before = Items(Dialog());
    Dialog().OnNewTestCase();
    EXPECT_EQ(Items(Dialog()), before);
}

TEST_F(TestSimScriptTest, RecordSaveRunAllThenAChangedExpectationFails)
{
    NewCase("直径10");
    Control<QPlainTextEdit>(Dialog(), "1021").setPlainText("d = 10;");
    Click(Dialog(), "1025");
    SetCell(0, 0, "W");
    SetCell(0, 1, "旧值");
    // Recording: the grid gets the computed value, the file keeps nothing yet.
    Click(Dialog(), "1008");
    EXPECT_EQ(GridRows(Dialog()), QStringList{"W|0.617|"});
    EXPECT_EQ(StoredRows("直径10.tx"), QStringList{});
    Click(Dialog(), "1014");
    EXPECT_EQ(StoredRows("直径10.tx"), QStringList{"W|0.617|"});

    ASSERT_TRUE(Dialog().SelectTestCase("**测试所有**"));
    EXPECT_EQ(GridRows(Dialog()), QStringList{});
    Click(Dialog(), "1008");
    EXPECT_TRUE(Ui().MessageTexts().isEmpty());
    EXPECT_TRUE(Ui().CallsOf("ShellOpen").isEmpty());

    ASSERT_TRUE(Dialog().SelectTestCase("直径10.tx"));
    SetCell(0, 1, "0.62");
    Click(Dialog(), "1014");
    ASSERT_TRUE(Dialog().SelectTestCase("**测试所有**"));
    Click(Dialog(), "1008");
    EXPECT_EQ(Ui().MessageTexts(), QStringList{"测试出现失败！"});
    ASSERT_EQ(Ui().CallsOf("ShellOpen").size(), 1);
    const QString result = FileText(Ui().CallsOf("ShellOpen").first().text);
    EXPECT_TRUE(result.contains("检测测试(直径10.tx)发现错误:计算结果不一致!"));
    EXPECT_FALSE(result.contains("测试通过!"));
    EXPECT_EQ(result.count("计算结果一致!"), 4 + 3);
}

TEST_F(TestSimScriptTest, RunsUseTheTextsOnScreenWithoutSavingThem)
{
    // Every case computes W from the script on screen: all disagree.
    Control<CEditCtr>(Dialog(), "1010").setText("var W = 1;");
    ASSERT_TRUE(Dialog().SelectTestCase("**测试所有**"));
    Click(Dialog(), "1008");
    EXPECT_EQ(Ui().MessageTexts(), QStringList{"测试出现失败！"});
    EXPECT_NE(ScriptText(kWeight), "var W = 1;");

    // A broken global parameter text fails a single run with the engine's words.
    Ui().Clear();
    ASSERT_TRUE(Dialog().SelectTestCase("直径8.tx"));
    const QStringList before = GridRows(Dialog());
    Control<QPlainTextEdit>(Dialog(), "1020").setPlainText("var = ;");
    Click(Dialog(), "1008");
    ASSERT_EQ(Ui().MessageTexts().size(), 1);
    EXPECT_TRUE(Ui().MessageTexts().first().startsWith("脚本运行失败!Error: ")) << Ui().MessageTexts().first().toStdString();
    EXPECT_EQ(GridRows(Dialog()), before);

    // Saving asks about the changed global parameters; No keeps the stored ones.
    Ui().Clear();
    const QString stored = Globals(kWeight);
    Click(Dialog(), "1014");
    EXPECT_EQ(Ui().MessageTexts(), QStringList{"是否保存全局参数的修改!(Y/N)"});
    EXPECT_EQ(Globals(kWeight), stored);
    Ui().QueueAnswer(UIFunction::IDYES);
    Click(Dialog(), "1014");
    EXPECT_EQ(Globals(kWeight), stored.left(stored.lastIndexOf('|')) + "|var = ;");
}

TEST_F(TestSimScriptTest, DeleteAsksAndSaysWhenTheFileIsGone)
{
    ASSERT_TRUE(Dialog().SelectTestCase("直径8.tx"));
    Ui().QueueAnswer(UIFunction::IDNO);
    Click(Dialog(), "1007");
    EXPECT_TRUE(CTestCaseStore::TestCaseExists(kWeight, "直径8.tx"));
    Ui().QueueAnswer(UIFunction::IDYES);
    Click(Dialog(), "1007");
    EXPECT_FALSE(CTestCaseStore::TestCaseExists(kWeight, "直径8.tx"));
    EXPECT_EQ(Items(Dialog()), QStringList({"**测试所有**", "直径12.tx", "直径25.tx"}));
    EXPECT_EQ(Dialog().CurrentCaseName(), "**测试所有**");

    // The file went away behind the dialog's back.
    ASSERT_TRUE(Dialog().SelectTestCase("直径25.tx"));
    ASSERT_TRUE(CTestCaseStore::DeleteTestCase(kWeight, "直径25.tx"));
    Ui().QueueAnswer(UIFunction::IDYES);
    Click(Dialog(), "1007");
    EXPECT_EQ(Ui().MessageTexts().last(), "测试用例删除失败!");
}

TEST_F(TestSimScriptTest, WithoutACaseTheCaseButtonsSaySo)
{
    ASSERT_TRUE(Dialog().SelectTestCase("**测试所有**"));
    for (const char* id : {"1025", "1017", "1014", "1007"}) // deleting asks nothing and deletes nothing
        Click(Dialog(), id);
    EXPECT_EQ(Ui().MessageTexts(), QStringList({"新增参数失败!", "删除参数失败!", "请先选中测试用例!"}));
    EXPECT_EQ(Items(Dialog()).size(), 4);
    EXPECT_FALSE(Dialog().SelectTestCase("无此用例.tx"));

    // A case row is deleted under the grid's current row only.
    ASSERT_TRUE(Dialog().SelectTestCase("直径25.tx"));
    Click(Dialog(), "1025");
    auto& grid = Control<CGridCtrlForDataSet>(Dialog(), "1011");
    const int rows = grid.GetRowCount();
    grid.SetCurrentRow(rows);
    Click(Dialog(), "1017");
    EXPECT_EQ(grid.GetRowCount(), rows);
    grid.SetCurrentRow(rows - 1);
    Click(Dialog(), "1017");
    EXPECT_EQ(GridRows(Dialog()), StoredRows("直径25.tx"));

    // A script without global texts cannot be edited.
    Ui().Clear();
    CDialog_TestSimScript bare("无用例.js");
    bare.OnInitDialog();
    EXPECT_EQ(Ui().MessageTexts(), QStringList{"获取全局参数，全局函数出错!"});
    EXPECT_EQ(Items(bare), QStringList{"**测试所有**"});
}

TEST_F(TestSimScriptTest, CoverageOfAllCasesOrTheCurrentOne)
{
    const auto mainJs = [] { return FileText("C:\\testJSCover\\mainJs.js"); };
    ASSERT_TRUE(Dialog().SelectTestCase("**测试所有**"));
    Click(Dialog(), "1023");
    EXPECT_TRUE(mainJs().contains("function setParm_2(){\r\nd = 8;\r\n}"));
    ASSERT_TRUE(Dialog().SelectTestCase("直径8.tx"));
    Click(Dialog(), "1023");
    EXPECT_TRUE(mainJs().contains("function setParm_0(){\r\nd = 8;\r\n}"));
    EXPECT_FALSE(mainJs().contains("setParm_1()"));

    // Without its global texts the harness is not built.
    Ui().Clear();
    ASSERT_TRUE(QFile::remove(NativePath::Map(CTestCaseStore::ScriptFolder(kWeight) + "GlobalParm.txt")));
    Click(Dialog(), "1023");
    EXPECT_EQ(Ui().MessageTexts(), QStringList{"生成覆盖测试代码失败!"});
}
