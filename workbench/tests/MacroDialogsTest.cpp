#include "CDlgLoad.h"
#include "CDlgMacro.h"
#include "CDlgNew.h"
#include "WorkbenchTestSupport.h"

#include <QComboBox>
#include <QPushButton>

namespace {

using MacroDialogsTest = TempHomeTest;

TEST_F(MacroDialogsTest, MacroDialogRefusesAnEmptyNameAndGivesTheTypeIndex)
{
    const struct { const char* name; int type; bool accepted; } rows[] = {
        {"", 1, false}, {"箍筋", 0, true}, {"箍筋", 1, true}};
    for (const auto& row : rows) {
        Ui().Clear();
        CDlgMacro dialog;
        Type(&dialog, 1017, QString::fromUtf8(row.name));
        dialog.findChild<QComboBox*>("1020")->setCurrentIndex(row.type);
        dialog.show();
        dialog.accept();
        EXPECT_EQ(std::pair(dialog.result() == QDialog::Accepted, dialog.isVisible()), std::pair(row.accepted, !row.accepted))
            << row.name;
        EXPECT_EQ(Ui().MessageTexts(), row.accepted ? QStringList() : QStringList{"名城不能为空"});
        if (row.accepted) {
            EXPECT_EQ(dialog.m_nType, row.type);
        }
    }
}

TEST_F(MacroDialogsTest, NewDialogWritesTheSkeletonWhetherTypedOrBrowsed)
{
    const QByteArray skeleton =
        "<Script><ScriptFile Name=\"C:\\s.js\"/><ParamsInput/><ParamsOutput/></Script>";
    for (bool browse : {false, true}) {
        ASSERT_TRUE(WriteBytes(HomeFile("drives/c/set.xml"), "old content that is longer"));
        CDlgNew dialog;
        if (browse) {
            Ui().QueueFileName("C:\\set.xml");
            Ui().QueueFileName("C:\\s.js");
            dialog.findChild<QPushButton*>("1008")->click();
            dialog.findChild<QPushButton*>("1010")->click();
        } else {
            Type(&dialog, 1007, "C:\\set.xml");
            Type(&dialog, 1009, "C:\\s.js");
        }
        dialog.accept();
        EXPECT_EQ(dialog.m_strSetFileName + "|" + dialog.m_strScriptFileName, "C:\\set.xml|C:\\s.js") << browse;
        EXPECT_EQ(ReadBytes(HomeFile("drives/c/set.xml")), skeleton) << browse;
    }
}

TEST_F(MacroDialogsTest, LoadDialogTakesATypedOrBrowsedNameAndACancelledBrowseKeepsIt)
{
    CDlgLoad dialog;
    Type(&dialog, 1013, "C:\\typed.xml");
    dialog.findChild<QPushButton*>("1012")->click(); // cancelled: nothing queued
    dialog.accept();
    EXPECT_EQ(dialog.m_strFileName, "C:\\typed.xml");
    Ui().QueueFileName("C:\\browsed.xml");
    dialog.findChild<QPushButton*>("1012")->click();
    dialog.accept();
    EXPECT_EQ(dialog.m_strFileName, "C:\\browsed.xml");
}

} // namespace
