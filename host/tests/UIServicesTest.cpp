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
    QStringList boxes;
    for (const auto& box : Ui().CallsOf(QStringLiteral("MessageBox")))
        boxes << QStringLiteral("%1|%2|%3").arg(box.text, box.caption).arg(box.style);
    EXPECT_EQ(boxes.join(u' '), QStringLiteral("测试出现失败！||0 删除?(Y/N)||4 q|cap|68"));
}

TEST(ConsoleUIServiceTest, WritesMessagesAndProgressToItsStreamAndAnswersFromSettings)
{
    char* buffer = nullptr;
    size_t size = 0;
    std::FILE* stream = open_memstream(&buffer, &size);
    ASSERT_NE(stream, nullptr);
    {
        CConsoleUIService console(stream);
        console.SetTerminal(true);
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
    EXPECT_TRUE(out.contains(QStringLiteral("\r\033[K[###############...............] 1/2 开始测试脚本:a.js\n")));
}

TEST(ConsoleUIServiceTest, ProgressOffATerminalIsOnePlainLinePerText)
{
    char* buffer = nullptr;
    size_t size = 0;
    std::FILE* stream = open_memstream(&buffer, &size);
    ASSERT_NE(stream, nullptr);
    {
        CConsoleUIService console(stream);
        for (int pos : {0, 0, 1})
            console.ProgressUpdate(pos ? QStringLiteral("b.js") : QStringLiteral("a.js"), pos, 2);
        console.ProgressUpdate(QString(), 2, 2);
        console.ProgressEnd();
    }
    std::fclose(stream);
    EXPECT_EQ(QString::fromUtf8(buffer, qsizetype(size)), QStringLiteral("0/2 a.js\n1/2 b.js\n"));
    std::free(buffer);
}
