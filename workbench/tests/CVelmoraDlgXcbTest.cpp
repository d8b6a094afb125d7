#include "CResultBar.h"
#include "CScriptBar.h"
#include "CSteelBarBar.h"
#include "CToolFrm.h"
#include "WorkbenchTestSupport.h"

#include <QTest>

namespace {

// Also registered to run under Xvfb on the xcb platform, where the window
// manager side of creation, maximising and docking is real.
using CVelmoraDlgXcbTest = WorkbenchTest;

TEST_F(CVelmoraDlgXcbTest, WindowOpensMaximisedWithPanesDockedInTheirAreas)
{
    if (qEnvironmentVariableIsSet("VELMORA_EXPECT_PLATFORM")) {
        EXPECT_EQ(QGuiApplication::platformName(), qEnvironmentVariable("VELMORA_EXPECT_PLATFORM"));
    }
    Window()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(Window()));
    EXPECT_EQ(Window()->windowTitle(), QStringLiteral("脚本调试工具"));
    EXPECT_TRUE(Window()->windowState() & Qt::WindowMaximized);
    CToolFrm* frame = Window()->ToolFrame();
    EXPECT_EQ(QRect(frame->mapTo(Window(), QPoint(0, 0)), frame->size()), Window()->rect());
    QStringList areas;
    for (QDockWidget* pane : {static_cast<QDockWidget*>(frame->ScriptListBar()),
                              static_cast<QDockWidget*>(frame->ScriptBar()),
                              static_cast<QDockWidget*>(frame->ResultBar())})
        areas << pane->objectName() + QLatin1Char(':') + QString::number(frame->dockWidgetArea(pane)) + QLatin1Char(':')
                     + pane->windowTitle() + QLatin1Char(':') + QString::number(pane->isVisible());
    EXPECT_EQ(areas.join(QLatin1Char(',')), QStringLiteral("123:2:输入参数:1,124:8:脚本:1,122:8:输出参数与结果:1"));
    // The script pane sits above the parameter pane.
    EXPECT_LT(frame->ScriptBar()->geometry().bottom(), frame->ResultBar()->geometry().top());
    // Resizing keeps the frame over the whole window.
    Window()->showNormal();
    Window()->resize(700, 500);
    QTRY_COMPARE(frame->size(), Window()->size());
}

} // namespace
