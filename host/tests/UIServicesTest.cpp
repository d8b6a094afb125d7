#include "CConsoleUIService.h"
#include "UIFunction.h"

#include <cstdio>
#include <functional>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

// What a console service wrote while `use` drove it.
QString ConsoleOutput(const std::function<void(CConsoleUIService&)>& use)
{
    char* buffer = nullptr;
    size_t size = 0;
    std::FILE* stream = open_memstream(&buffer, &size);
    {
        CConsoleUIService console(stream);
        use(console);
    }
    std::fclose(stream);
    const QString out = QString::fromUtf8(buffer, qsizetype(size));
    std::free(buffer);
    return out;
}

} // namespace

TEST(ConsoleUIServiceTest, AnswersFromSettingsAndDrawsProgressOnATerminalOnly)
{
    const QString terminal = ConsoleOutput([](CConsoleUIService& console) {
        console.SetTerminal(true);
        EXPECT_EQ(console.MessageBox(u"没有找到连接的数据库!"_s, QString(), 64), UIFunction::IDOK);
        EXPECT_EQ(console.MessageBox(u"继续?(Y/N)"_s, QString(), 4), UIFunction::IDNO);
        console.SetYesNoAnswer(UIFunction::IDYES);
        EXPECT_EQ(console.MessageBox(u"继续?(Y/N)"_s, QString(), 4), UIFunction::IDYES);
        console.ProgressUpdate(u"开始测试脚本:a.js"_s, 1, 2);
        console.ProgressEnd();
        QString value = u"keep"_s;
        EXPECT_FALSE(console.InputText(u"name"_s, QString(), value));
        EXPECT_EQ(value, u"keep"_s);
    });
    EXPECT_TRUE(terminal.contains(u"没有找到连接的数据库!\n"_s));
    EXPECT_TRUE(terminal.contains(u"\r\033[K[###############...............] 1/2 开始测试脚本:a.js\n"_s));
    // Off a terminal: one plain line per new text.
    EXPECT_EQ(ConsoleOutput([](CConsoleUIService& console) {
                  for (int pos : {0, 0, 1})
                      console.ProgressUpdate(pos ? u"b.js"_s : u"a.js"_s, pos, 2);
                  console.ProgressUpdate(QString(), 2, 2);
                  console.ProgressEnd();
              }),
              u"0/2 a.js\n1/2 b.js\n"_s);
}
