#include "CCeateDialog.h"

#include <QApplication>
#include <QPointer>
#include <QTemporaryDir>
#include <QWidget>
#include <gtest/gtest.h>

namespace {

QList<QWidget*> Workbenches()
{
    QList<QWidget*> found;
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->isVisible() && window->windowTitle() == QStringLiteral("脚本调试工具"))
            found << window;
    return found;
}

// Through the library as a host loads it: its host context comes from the
// environment, so the home is set before the first call.
TEST(CCeateDialogTest, DomodleTwiceLeavesOneWindowAndReleaseKeepsIt)
{
    QTemporaryDir home;
    ASSERT_TRUE(home.isValid());
    qputenv("VELMORA_HOME", home.path().toUtf8());
    CCeateDialog* entry = CCeateDialog::Instance();
    entry->Domodle();
    ASSERT_EQ(Workbenches().size(), 1);
    QPointer<QWidget> first = Workbenches().first();

    entry->Domodle();
    EXPECT_TRUE(first.isNull());
    ASSERT_EQ(Workbenches().size(), 1);
    QPointer<QWidget> second = Workbenches().first();

    CCeateDialog::Release();
    QApplication::processEvents();
    EXPECT_FALSE(second.isNull());
    EXPECT_EQ(Workbenches().size(), 1);
    second->close();
}

} // namespace
