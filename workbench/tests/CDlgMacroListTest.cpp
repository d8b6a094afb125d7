#include "CDlgMacroList.h"
#include "HostContext.h"
#include "MacroStoreFixtures.h"
#include "UIFunction.h"

#include <QPushButton>
#include <QTreeWidget>

namespace {

class MacroListTest : public MacroStoreFixture
{
protected:
    void Prepare() override
    {
        CMacro bare(1, "无输入", QString(), "var y = 2;");
        bare.OutputParams().Add(MakeParam("y", QString(), "结果", 1));
        m_rebarId = m_macros.InsertMacro(MakeRebarMacro());
        m_bareId = m_macros.InsertMacro(bare);
        ASSERT_GT(m_bareId, m_rebarId);
    }

    // Each listed row as "name|description".
    QStringList Rows(CDlgMacroList& dialog)
    {
        auto* list = dialog.findChild<QTreeWidget*>("1030");
        QStringList rows;
        for (int i = 0; list && i < list->topLevelItemCount(); ++i)
            rows << list->topLevelItem(i)->text(0) + "|" + list->topLevelItem(i)->text(1);
        return rows;
    }

    int m_rebarId = -1, m_bareId = -1;
};

TEST_P(MacroListTest, OpensAStoredMacroWhole)
{
    CDlgMacroList dialog;
    EXPECT_EQ(Rows(dialog), QStringList({"钢筋重量|每米重量", "无输入|"}));
    CMacro opened;
    dialog.SetOpener([&](const CMacro& macro) { opened = macro; });
    for (int row : {1, 0}) {
        dialog.SetCurrentRow(row);
        dialog.findChild<QPushButton*>("1")->click();
        EXPECT_EQ(dialog.result(), QDialog::Accepted);
        const CMacro& stored = dialog.Service().Macros()[row];
        EXPECT_EQ(std::tuple(opened.GetId(), opened.GetContent(), opened.OutputParams().GetSize()),
                  std::tuple(stored.GetId(), stored.GetContent(), 1)) << row;
    }
    EXPECT_EQ(opened.InputParams().GetSize(), 2);
}

TEST_P(MacroListTest, DeleteAsksAndRemovesTheMacroWithItsParameters)
{
    CDlgMacroList dialog;
    dialog.SetCurrentRow(0);
    EXPECT_FALSE(dialog.OnCommand(CDlgMacroList::ID_DELETE));
    ExpectTablesHold(2, 4);
    Ui().QueueAnswer(UIFunction::IDYES);
    EXPECT_TRUE(dialog.OnCommand(CDlgMacroList::ID_DELETE));
    ExpectTablesHold(1, 1);
    EXPECT_EQ(Rows(dialog), QStringList{"无输入|"});
    EXPECT_EQ(UiCalls(), QStringList(2, "MessageBox|确实要删除宏“钢筋重量”吗?(Y/N)||" + QString::number(UIFunction::MB_YESNO)));
}

TEST_P(MacroListTest, AddAndModifyTakeTheFactsTheUserGives)
{
    CDlgMacroList dialog;
    bool confirm = true;
    dialog.SetFactsAsker([&](CMacro& facts) {
        facts.SetName(facts.GetName() + "新");
        facts.SetType(1);
        facts.SetDescription("改过");
        return confirm;
    });
    EXPECT_TRUE(dialog.OnCommand(CDlgMacroList::ID_ADD));
    dialog.SetCurrentRow(0);
    EXPECT_TRUE(dialog.OnCommand(CDlgMacroList::ID_MODIFY));
    confirm = false;
    EXPECT_FALSE(dialog.OnCommand(CDlgMacroList::ID_MODIFY));
    EXPECT_EQ(Rows(dialog), QStringList({"钢筋重量新|改过", "无输入|", "新|改过"}));
    CMacro modified;
    ASSERT_TRUE(m_macros.LoadMacro(m_rebarId, modified));
    EXPECT_EQ(modified.GetType(), 1);
    EXPECT_EQ(modified.GetContent(), MakeRebarMacro().GetContent());
    EXPECT_EQ(modified.InputParams().GetSize() + modified.OutputParams().GetSize(), 3);
    ExpectTablesHold(3, 4);
}

TEST_P(MacroListTest, ExportWritesTheListedMacrosAsXml)
{
    CDlgMacroList dialog;
    Ui().QueueFileName("C:\\宏.xml");
    Ui().QueueFileName("C:\\没有的目录\\宏.xml");
    EXPECT_TRUE(dialog.OnCommand(CDlgMacroList::ID_EXPORT));
    EXPECT_FALSE(dialog.OnCommand(CDlgMacroList::ID_EXPORT));
    EXPECT_FALSE(dialog.OnCommand(CDlgMacroList::ID_EXPORT)); // cancelled
    EXPECT_EQ(ReadBytes(HostContext::Instance().DriveRoot(QLatin1Char('C')) + "/宏.xml"),
              QStringLiteral("<Macros><Macro Name=\"钢筋重量\" Value=\"var W = 0.00617 * d * d;&#13;&#10;\" "
                             "Description=\"每米重量\"/><Macro Name=\"无输入\" Value=\"var y = 2;\" "
                             "Description=\"\"/></Macros>")
                  .toUtf8());
    EXPECT_EQ(Ui().MessageTexts(), QStringList({"已导出2个宏到C:\\宏.xml", "导出失败：C:\\没有的目录\\宏.xml"}));
}

VELMORA_INSTANTIATE_DB_BACKENDS(MacroListTest);

} // namespace
