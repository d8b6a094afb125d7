#include "CMacroParamFile.h"
#include "QxMfcFun.h"
#include "TextFile.h"
#include "TestEnvironment.h"
#include "UIFunction.h"

#include <QDir>
#include <functional>
#include <sys/stat.h>

using TextFileTest = TempHomeTest;

// Half the UTF-16 bytes: one byte per character.
TEST_F(TextFileTest, WriteTextFileWritesTheFirstHalfOfTheUtf16Bytes)
{
    const struct { QString text; QByteArray bytes; } cases[] = {
        {QStringLiteral("abcd"), QByteArray("a\0b\0", 4)}, {QStringLiteral("abc"), QByteArray("a\0b", 3)},
        {QStringLiteral("长度单位"), QByteArray("\x7F\x95\xA6\x5E", 4)}, // U+957F U+5EA6 only
        {QString(), QByteArray()},
    };
    const QString path = HomeFile("out.txt");
    ASSERT_TRUE(WriteBytes(path, "previous content that is longer"));
    for (const auto& c : cases) {
        EXPECT_TRUE(WriteTextFile(path, c.text));
        EXPECT_EQ(ReadBytes(path), c.bytes) << c.text.toStdString();
    }
    EXPECT_TRUE(WriteTextFile(QStringLiteral("C:\\w.js"), QStringLiteral("ab")));
    EXPECT_EQ(ReadBytes(HomeFile("drives/c/w.js")), QByteArray("a\0", 2));
    EXPECT_FALSE(WriteTextFile(QStringLiteral("C:\\no\\such\\w.js"), QStringLiteral("ab")));
    EXPECT_FALSE(WriteTextFile(QString(), QStringLiteral("ab")));
    EXPECT_TRUE(Ui().calls.isEmpty());
}

TEST_F(TextFileTest, ReadTextFileDecodesGbkUpToAZeroByte)
{
    const struct { QByteArray bytes; QString text; } cases[] = {
        {QByteArray("\xB3\xA4\xB6\xC8"), QStringLiteral("长度")}, {QByteArray(), QString()},
        {QByteArray("a\0b\0", 4), QStringLiteral("a")}, // what WriteTextFile leaves
        {QByteArray("x\xFFy"), QStringLiteral("x?y")},  // invalid GBK byte
    };
    const QString path = HomeFile("in.txt");
    for (const auto& c : cases) {
        ASSERT_TRUE(WriteBytes(path, c.bytes));
        QString text = QStringLiteral("stale");
        EXPECT_TRUE(ReadTextFile(path, text));
        EXPECT_EQ(text, c.text) << c.bytes.toHex().toStdString();
    }
    EXPECT_TRUE(Ui().calls.isEmpty());
}

TEST_F(TextFileTest, UnreadableFileShowsMessageAndKeepsText)
{
    const QString fifo = HomeFile("fifo");
    ASSERT_EQ(mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    for (const QString& path : {QStringLiteral("C:\\missing\\a.js"), QString(), Home(), QStringLiteral("/dev/zero"), fifo}) {
        Ui().Clear();
        QString text = QStringLiteral("kept");
        EXPECT_FALSE(ReadTextFile(path, text));
        EXPECT_EQ(text, QStringLiteral("kept"));
        // A message box without caption and with an OK button.
        EXPECT_EQ(UiCalls(), QStringList{"MessageBox|不存在文件" + path + "||" + QString::number(UIFunction::MB_OK)});
    }
}

// A write that fails half-way (a full disk) leaves the old file as it was and
// no temporary file beside it.
TEST_F(TextFileTest, FailedWritesKeepTheOldFiles)
{
    const QString longText(4000, QLatin1Char('n'));
    const QString folder = HomeFile("kept");
    ASSERT_TRUE(QDir().mkpath(folder));
    const QString file = folder + QStringLiteral("/a.txt");
    const QString script = folder + QStringLiteral("/a.js");
    CArray<CMacroParam> params;
    params.Add(CMacroParam(longText, QString(), QString()));
    CMacroParamFile settings;
    settings.SetFilePath(file);
    const struct { const char* writer; std::function<bool()> write; bool result; QString kept; } cases[] = {
        {"SaveFileContent", [&] { return QxMfc::Fun::SaveFileContent(file, longText); }, false, file},
        {"WriteTextFile", [&] { return WriteTextFile(file, longText); }, false, file},
        {"settings file", [&] { return settings.Save(params, {}, script, QStringLiteral("x")); }, false, file},
        // The settings file fits; its script file does not, which Save does not report.
        {"script file", [&] { return settings.Save({}, {}, script, longText); }, true, script},
    };
    const QByteArray old(1000, 'o');
    for (const auto& c : cases) {
        SCOPED_TRACE(c.writer);
        ASSERT_TRUE(WriteBytes(file, old));
        ASSERT_TRUE(WriteBytes(script, old));
        bool result = !c.result;
        {
            FileSizeLimit limit(2000);
            result = c.write();
        }
        EXPECT_EQ(result, c.result);
        EXPECT_EQ(ReadBytes(c.kept), old);
        EXPECT_EQ(QDir(folder).entryList(QDir::Files | QDir::Hidden).size(), 2);
    }
    EXPECT_EQ(settings.GetErrorText(), QStringLiteral("CMacroParamFile::Save保存出错"));
}
