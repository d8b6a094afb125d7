#include "TextFile.h"
#include "TestEnvironment.h"
#include "UIFunction.h"

#include <QDir>
#include <sys/stat.h>

class TextFileTest : public TempHomeTest
{
};

TEST_F(TextFileTest, WriteTextFileWritesOneBytePerCharacterFromTheUtf16Form)
{
    struct Case
    {
        QString text;
        QByteArray bytes;
    };
    const Case cases[] = {
        {QStringLiteral("abcd"), QByteArray("a\0b\0", 4)},
        {QStringLiteral("abc"), QByteArray("a\0b", 3)},
        {QStringLiteral("x"), QByteArray("x", 1)},
        {QStringLiteral("长度"), QByteArray("\x7F\x95", 2)},        // U+957F U+5EA6: only the first character's two bytes
        {QStringLiteral("长度单位"), QByteArray("\x7F\x95\xA6\x5E", 4)},
        {QStringLiteral("a长"), QByteArray("a\0", 2)},
        {QString(), QByteArray()},
    };
    const QString path = HomeFile("out.txt");
    ASSERT_TRUE(WriteBytes(path, "previous content that is longer"));
    for (const Case& c : cases) {
        EXPECT_TRUE(WriteTextFile(path, c.text));
        EXPECT_EQ(ReadBytes(path), c.bytes) << c.text.toStdString();
        EXPECT_EQ(ReadBytes(path).size(), c.text.size());
    }
}

TEST_F(TextFileTest, WriteTextFileMapsWindowsPathsAndFailsWithoutFolder)
{
    EXPECT_TRUE(WriteTextFile(QStringLiteral("C:\\w.js"), QStringLiteral("ab")));
    EXPECT_EQ(ReadBytes(HomeFile("drives/c/w.js")), QByteArray("a\0", 2));
    EXPECT_FALSE(WriteTextFile(QStringLiteral("C:\\no\\such\\w.js"), QStringLiteral("ab")));
    EXPECT_FALSE(WriteTextFile(QString(), QStringLiteral("ab")));
    EXPECT_TRUE(Ui().calls.isEmpty());
}

TEST_F(TextFileTest, ReadTextFileDecodesTheCodePage)
{
    struct Case
    {
        QByteArray bytes;
        QString text;
    };
    const Case cases[] = {
        {QByteArray("\xB3\xA4\xB6\xC8"), QStringLiteral("长度")},                         // GBK
        {QByteArray("var L = 1;\r\n"), QStringLiteral("var L = 1;\r\n")},
        {QByteArray(), QString()},
        {QByteArray("ab\0cd", 5), QStringLiteral("ab")},                                   // stops at a zero byte
        {QByteArray("a\0b\0", 4), QStringLiteral("a")},                                    // what WriteTextFile leaves
        {QByteArray("x\xFFy"), QStringLiteral("x?y")},                                     // invalid GBK byte
    };
    const QString path = HomeFile("in.txt");
    for (const Case& c : cases) {
        ASSERT_TRUE(WriteBytes(path, c.bytes));
        QString text = QStringLiteral("stale");
        EXPECT_TRUE(ReadTextFile(path, text));
        EXPECT_EQ(text, c.text) << c.bytes.toHex().toStdString();
    }
    EXPECT_TRUE(Ui().calls.isEmpty());
}

TEST_F(TextFileTest, Utf8ReadThroughGbkIsMisreadButKept)
{
    const QString path = HomeFile("utf8.js");
    ASSERT_TRUE(WriteBytes(path, QStringLiteral("// 长度\r\nvar a = 1;").toUtf8()));
    QString text;
    ASSERT_TRUE(ReadTextFile(path, text));
    EXPECT_NE(text, QStringLiteral("// 长度\r\nvar a = 1;"));
    EXPECT_TRUE(text.startsWith(QStringLiteral("// ")));
    EXPECT_TRUE(text.endsWith(QStringLiteral("\r\nvar a = 1;")));
}

TEST_F(TextFileTest, MissingFileShowsMessageAndKeepsText)
{
    const QString fifo = HomeFile("fifo");
    ASSERT_EQ(mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    const QString paths[] = {QStringLiteral("C:\\missing\\a.js"), HomeFile("none.txt"), QString(), Home(),
                             QStringLiteral("/dev/zero"), fifo};
    for (const QString& path : paths) {
        Ui().Clear();
        QString text = QStringLiteral("kept");
        EXPECT_FALSE(ReadTextFile(path, text));
        EXPECT_EQ(text, QStringLiteral("kept"));
        ASSERT_EQ(Ui().calls.size(), 1);
        EXPECT_EQ(Ui().calls[0].kind, QStringLiteral("MessageBox"));
        EXPECT_EQ(Ui().calls[0].text, QStringLiteral("不存在文件") + path);
        EXPECT_TRUE(Ui().calls[0].caption.isEmpty());
        EXPECT_EQ(Ui().calls[0].style, UIFunction::MB_OK);
    }
}
