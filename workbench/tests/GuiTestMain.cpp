#include <QApplication>
#include <gtest/gtest.h>

// GUI tests need a QApplication. The platform comes from QT_QPA_PLATFORM set
// by the test registration (offscreen or xcb); test discovery runs the binary
// without it, so offscreen is the default.
int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
