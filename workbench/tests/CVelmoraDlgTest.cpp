#include "CEditCtr.h"
#include "CEditListCtrl.h"
#include "CAccessSysData_MacrosTable.h"
#include "CAccessSysData_MacrosV2Table.h"
#include "CSteelBarBar.h"
#include "CToolFrm.h"
#include "QxMfcFun.h"
#include "WindowMessages.h"
#include "WorkbenchTestSupport.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QTest>

namespace {

using QxMfc::Fun;

class CVelmoraDlgTest : public WorkbenchTest
{
protected:
    void SetParams(const QStringList& names)
    {
        for (const QString& name : names)
            Window()->ParamList()->InsertRow({name, "old", name + "说明", "9"});
    }
};

TEST_F(CVelmoraDlgTest, EveryCommandIdHasItsHandlerAndOthersAreRefused)
{
    for (int id : {32778, 32777, 32923, 32776, 32779, 32786, 32787, 32775, 32772, 32773, 32789, 32780, 32781, 32782,
                   32791, 32793, 1014}) {
        if (id == 32776 || id == 32787) // the two that ask for names first
            AnswerNextDialog([](QDialog* dialog) { ASSERT_TRUE(dialog); dialog->reject(); });
        EXPECT_TRUE(Window()->OnCommand(id)) << id;
    }
    for (int id : {32783, 32788, 32924, 0})
        EXPECT_FALSE(Window()->OnCommand(id)) << id;
    // The popups hand their ids to the same dispatcher.
    for (const auto& [menu, ids] : {std::pair{129, "32772,32773,32789"},
                                    std::pair{135, "32780,32781,32782,32789,32791,32793"}}) {
        std::unique_ptr<QMenu> popup(CToolFrm::CreatePopupMenu(menu, nullptr));
        QStringList got;
        for (QAction* action : popup->actions())
            got << action->data().toString();
        EXPECT_EQ(got.join(QLatin1Char(',')), ids) << menu;
    }
}

TEST_F(CVelmoraDlgTest, RunFillsThePaneWithOutputsAsText)
{
    Window()->Editor()->setText("var a = 1 + 2;\nvar s = 'x' + a;");
    SetParams({"a", "s", "nope"});
    ASSERT_TRUE(Window()->RunScript());
    EXPECT_EQ(ParamRows(), (QStringList{"a|3|a说明|", "s|x3|s说明|", "nope|参数不存在|nope说明|"}));
    for (const CMacroParam& param : Window()->WorkingParams())
        EXPECT_EQ(param.GetDataType(), 0);
    EXPECT_TRUE(Ui().calls.isEmpty());
}

TEST_F(CVelmoraDlgTest, FailedRunShowsTheEngineTextAndMarksTheScriptLine)
{
    Window()->Editor()->setText("var a = 1;\nvar b = a +;\n");
    SetParams({"a"});
    EXPECT_FALSE(Window()->RunScript());
    ASSERT_EQ(Ui().MessageTexts().size(), 1);
    EXPECT_TRUE(Ui().MessageTexts().first().startsWith("Error: "));
    EXPECT_TRUE(Ui().MessageTexts().first().endsWith("; in line 4")) << Ui().MessageTexts().first().toStdString();
    EXPECT_EQ(Window()->Editor()->MarkedErrorLine(), 2);
    EXPECT_EQ(ParamRows(), QStringList{"a|old|a说明|9"});
}

TEST_F(CVelmoraDlgTest, SaveSettingsAsksForNamesAfterNewAndWritesBothFiles)
{
    Window()->Editor()->setText("var a = 1;");
    SetParams({"a"});
    AnswerNextDialog([](QDialog* dialog) { ASSERT_TRUE(dialog); dialog->reject(); });
    Window()->OnCommand(32776);
    EXPECT_EQ(Ui().MessageTexts(), QStringList{"由于没有设置保存文件名，将取消保存操作!"});
    EXPECT_TRUE(Window()->SettingsFileName().isEmpty());

    auto answer = [](const QString& settings, const QString& script) {
        AnswerNextDialog([=](QDialog* dialog) {
            ASSERT_TRUE(dialog);
            EXPECT_EQ(dialog->objectName(), "132");
            FillAndAccept(dialog, {{1007, settings}, {1009, script}});
        });
    };
    answer("C:\\m.xml", "C:\\m.js");
    Window()->OnCommand(32776);
    EXPECT_EQ(ReadBytes(HomeFile("drives/c/m.js")), QByteArray("v\0a\0r\0 \0a\0", 10));
    EXPECT_TRUE(ReadBytes(HomeFile("drives/c/m.xml")).contains("<Param Name=\"a\" Value=\"old\""));
    // New keeps the script file name, yet the next save asks for both again.
    Window()->OnCommand(32779);
    EXPECT_EQ(Window()->ScriptFileName(), "C:\\m.js");
    EXPECT_EQ(Window()->ParamList()->GetItemCount() + Window()->EditorText().size(), 0);
    answer("C:\\n.xml", "C:\\n.js");
    Window()->OnCommand(32776);
    EXPECT_EQ(Window()->SettingsFileName(), "C:\\n.xml");
    EXPECT_EQ(Ui().MessageTexts().size(), 1);
}

TEST_F(CVelmoraDlgTest, SaveToDatabaseCancelledKeepsNoMacroAndAFailedOneSaysSo)
{
    Window()->Editor()->setText("var W = 1;");
    SetParams({"W"});
    AnswerNextDialog([](QDialog* dialog) { ASSERT_TRUE(dialog); dialog->reject(); });
    Window()->OnCommand(32787);
    EXPECT_EQ(Window()->CurrentMacro().GetId(), -1);
    AnswerNextDialog([](QDialog* dialog) { FillAndAccept(dialog, {{1017, "it's"}}); });
    Window()->OnCommand(32787);
    EXPECT_EQ(Ui().MessageTexts(), QStringList{"添加失败"});
    EXPECT_EQ(Window()->CurrentMacro().GetName(), "it's");
}

TEST_F(CVelmoraDlgTest, ParameterNamesTravelThroughAllParmLog)
{
    Window()->Editor()->setText("var a = 7; var b = 8;");
    // Missing file: nothing added, the script still runs.
    SetParams({"a"});
    Window()->OnCommand(32789);
    EXPECT_EQ(ParamRows(), QStringList{"a|7|a说明|"});
    Window()->ParamList()->InsertRow({"b"});
    Window()->RunScript();
    Window()->OnCommand(32791);
    EXPECT_EQ(ReadBytes(HomeFile("sysdata/AllParm.log")), QByteArray("a;b;"));
    Window()->OnCommand(32793);
    EXPECT_TRUE(ParamRows().isEmpty());
    Window()->OnCommand(32789);
    EXPECT_EQ(ParamRows(), (QStringList{"a|7||", "b|8||", "|undefined||"}));
}

TEST_F(CVelmoraDlgTest, ParamRowsAddAndDeleteFromThePopup)
{
    SetParams({"p0", "p1", "p2"});
    Window()->OnCommand(32780);
    EXPECT_EQ(ParamRows().last(), "zz|||");
    CEditListCtrl* list = Window()->ParamList();
    list->setSelectionMode(QAbstractItemView::MultiSelection);
    list->selectRow(0);
    list->selectRow(2);
    Window()->OnCommand(32781);
    EXPECT_EQ(ParamRows(), (QStringList{"p1|old|p1说明|9", "zz|||"}));
}

TEST_F(CVelmoraDlgTest, FixedFilesAndMessages)
{
    Window()->OnCommand(32786);
    EXPECT_TRUE(QFile::exists(HomeFile("drives/c/Velmora.log")));
    EXPECT_EQ(ReadBytes(HomeFile("drives/c/Velmora.log")), QByteArray());
    EXPECT_EQ(Window()->SendMessage(WindowMessages::kAliveQuery, 0, 0), 1);

    QLabel* line = Window()->findChild<QLabel*>("32924");
    ASSERT_TRUE(line);
    Window()->SendMessage(WindowMessages::kLinePosition, 12, 345);
    EXPECT_EQ(line->text(), "第12行,共345行");

    Window()->OnCommand(32777);
    QStringList calls;
    for (const auto& call : Ui().calls)
        calls << call.kind + QLatin1Char(':') + call.text.section(QLatin1Char('/'), -1);
    EXPECT_EQ(calls, (QStringList{"CloseWindowByTitle:CalAnalyse - 记事本", "CloseWindowByTitle:CalAnalyse.log - 记事本",
                                  "ShellOpen:CalAnalyse.log"}));
}

TEST_F(CVelmoraDlgTest, ScriptListComesFromMacrolistAndChoosingRunsTheScript)
{
    ASSERT_TRUE(Fun::SaveFileContent(Fun::GetSysDataPath() + "\\macrolist.log",
                                     QStringLiteral("old.js:x\r\n*****************************\r\n"
                                                    "梁\\a.js:梁:b:c\r\nno-colon.js\r\n通用脚本\\w.js:通用\r\n")));
    ASSERT_TRUE(CAccessSysData_MacrosTable::SetMacroContent("梁\\a.js", "var q = 5;"));
    ASSERT_TRUE(CAccessSysData_MacrosV2Table::SetMacroContent("通用脚本\\w.js", "var q = 6;"));
    CEditListCtrl* list = Window()->ScriptList();
    QStringList rows;
    for (int r = 0; r < list->GetItemCount(); ++r)
        rows << list->GetItemText(r, 0) + QLatin1Char('|') + list->GetItemText(r, 1) + QLatin1Char('|') + list->GetItemText(r, 2);
    EXPECT_EQ(rows, (QStringList{"1|梁\\a.js|梁bc", "2|通用脚本\\w.js|通用"}));

    Window()->ParamList()->InsertRow({"q"});
    for (const auto& [row, value] : {std::pair{0, "5"}, std::pair{1, "6"}}) {
        list->setFocus();
        list->setCurrentCell(row, 1);
        QTest::keyClick(list, Qt::Key_Return);
        EXPECT_EQ(Window()->ParamList()->GetItemText(0, 1), value) << row;
    }
    EXPECT_EQ(Window()->EditorText(), "var q = 6;");
    EXPECT_EQ(Window()->ToolFrame()->ScriptListBar()->LastChosenName(), "通用脚本\\w.js");
}

TEST_F(CVelmoraDlgTest, EscapeDoesNotCloseAndClosingClearsTheLogs)
{
    Window()->show();
    QTest::keyClick(Window()->Editor(), Qt::Key_Escape);
    QTest::keyClick(Window(), Qt::Key_Escape);
    EXPECT_TRUE(Window()->isVisible());
    ASSERT_TRUE(WriteBytes(HomeFile("sysdata/mac.log"), "x")); // which logs go is the diagnostics tests' part
    Ui().Clear();
    Window()->close();
    EXPECT_FALSE(QFile::exists(HomeFile("sysdata/mac.log")));
    ASSERT_EQ(Ui().calls.size(), 1);
    EXPECT_EQ(Ui().calls[0].text, "CalAnalyse.log - 记事本");
    EXPECT_FALSE(Window()->OnCommand(32778));
}

} // namespace
