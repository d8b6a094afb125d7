#include "CToolFrm.h"
#include "WorkbenchTestSupport.h"

#include <QTest>

namespace {

// Also registered to run under Xvfb on the xcb platform, where the window
// manager side of creation and maximising is real.
using CVelmoraDlgXcbTest = WorkbenchTest;

TEST_F(CVelmoraDlgXcbTest, WindowOpensMaximisedAndTheFrameCoversIt)
{
    if (qEnvironmentVariableIsSet("VELMORA_EXPECT_PLATFORM")) {
        EXPECT_EQ(QGuiApplication::platformName(), qEnvironmentVariable("VELMORA_EXPECT_PLATFORM"));
    }
    Window()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(Window()));
    EXPECT_TRUE(Window()->windowState() & Qt::WindowMaximized);
    CToolFrm* frame = Window()->ToolFrame();
    EXPECT_EQ(QRect(frame->mapTo(Window(), QPoint(0, 0)), frame->size()), Window()->rect());
    // Resizing keeps the frame over the whole window.
    Window()->showNormal();
    Window()->resize(700, 500);
    QTRY_COMPARE(frame->size(), Window()->size());
}

} // namespace
