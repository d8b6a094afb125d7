#include "CConsoleUIService.h"
#include "TestEnvironment.h"
#include "UIFunction.h"

#include <cstdio>

using UIServicesTest = TempHomeTest;

TEST_F(UIServicesTest, MessageBoxIsRecordedWithExactTextCaptionAndStyle)
{
    EXPECT_EQ(UIFunction::QXMessageBox(QStringLiteral("测试出现失败！"), QString(), UIFunction::MB_OK), UIFunction::IDOK);
    EXPECT_EQ(UIFunction::QXMessageBox(QStringLiteral("删除?(Y/N)"), QString(), UIFunction::MB_YESNO), UIFunction::IDNO);
    Ui().QueueAnswer(UIFunction::IDYES);
    EXPECT_EQ(UIFunction::QXMessageBox(QStringLiteral("q"), QStringLiteral("cap"), 64 | 4), UIFunction::IDYES);
    const auto boxes = Ui().CallsOf(QStringLiteral("MessageBox"));
    ASSERT_EQ(boxes.size(), 3);
    EXPECT_EQ(boxes[0].text, QStringLiteral("测试出现失败！"));
    EXPECT_EQ(boxes[0].style, 0u);
    EXPECT_EQ(boxes[1].style, 4u);
    EXPECT_EQ(boxes[2].caption, QStringLiteral("cap"));
    EXPECT_EQ(boxes[2].style, 68u);
}

TEST(ConsoleUIServiceTest, WritesMessagesAndProgressToItsStreamAndAnswersFromSettings)
{
    char* buffer = nullptr;
    size_t size = 0;
    std::FILE* stream = open_memstream(&buffer, &size);
    ASSERT_NE(stream, nullptr);
    {
        CConsoleUIService console(stream);
        EXPECT_EQ(console.MessageBox(QStringLiteral("没有找到连接的数据库!"), QString(), 64), UIFunction::IDOK);
        EXPECT_EQ(console.MessageBox(QStringLiteral("继续?(Y/N)"), QString(), 4), UIFunction::IDNO);
        console.SetYesNoAnswer(UIFunction::IDYES);
        EXPECT_EQ(console.MessageBox(QStringLiteral("继续?(Y/N)"), QString(), 4), UIFunction::IDYES);
        console.ProgressUpdate(QStringLiteral("开始测试脚本:a.js"), 1, 2);
        console.ProgressEnd();
        QString value = QStringLiteral("keep");
        EXPECT_FALSE(console.InputText(QStringLiteral("name"), QString(), value));
        EXPECT_EQ(value, QStringLiteral("keep"));
    }
    std::fclose(stream);
    const QString out = QString::fromUtf8(buffer, qsizetype(size));
    std::free(buffer);
    EXPECT_TRUE(out.contains(QStringLiteral("没有找到连接的数据库!\n")));
    EXPECT_TRUE(out.contains(QStringLiteral("[###############...............] 1/2 开始测试脚本:a.js\n")));
}
