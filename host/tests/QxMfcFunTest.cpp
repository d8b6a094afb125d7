#include "QxMfcFun.h"
#include "TestEnvironment.h"

#include <QDir>

using QxMfc::Fun;
using QxMfcFunTest = TempHomeTest;

TEST_F(QxMfcFunTest, AppendCreatesThenAppendsSaveReplacesAllInTheCodePage)
{
    const QString path = HomeFile("a.txt");
    ASSERT_TRUE(Fun::AppendCString2File(path, QStringLiteral("L=")));
    ASSERT_TRUE(Fun::AppendCString2File(path, QStringLiteral("长度")));
    EXPECT_EQ(ReadBytes(path), QByteArray("L=\xB3\xA4\xB6\xC8")); // GBK, not UTF-8
    const QString text = QStringLiteral("var L = 1200; // 长度\r\n第二行");
    ASSERT_TRUE(Fun::SaveFileContent(path, text));
    QString back;
    ASSERT_TRUE(Fun::File2CString(path, back));
    EXPECT_EQ(back, text);
    ASSERT_TRUE(Fun::SaveFileContent(path, QStringLiteral("new"))); // a shorter text cuts the file
    EXPECT_EQ(ReadBytes(path), QByteArray("new"));
    // Windows-style paths reach the drive root.
    ASSERT_TRUE(Fun::SaveFileContent(QStringLiteral("C:\\hello.txt"), QStringLiteral("hi")));
    EXPECT_TRUE(Fun::CheckFile(QStringLiteral("c:\\hello.txt")));
    EXPECT_EQ(ReadBytes(HomeFile("drives/c/hello.txt")), QByteArray("hi"));
}

TEST_F(QxMfcFunTest, MissingFilesAndFoldersFailCleanly)
{
    QString text = QStringLiteral("unchanged");
    EXPECT_FALSE(Fun::File2CString(HomeFile("missing.txt"), text));
    EXPECT_EQ(text, QStringLiteral("unchanged"));
    EXPECT_FALSE(Fun::SaveFileContent(HomeFile("no/such/folder/x.txt"), QStringLiteral("x")));
    EXPECT_FALSE(Fun::AppendCString2File(HomeFile("no/such/folder/x.txt"), QStringLiteral("x")));
    EXPECT_FALSE(Fun::CheckFile(HomeFile("missing.txt")));
    EXPECT_FALSE(Fun::CheckFile(QString()));
    CArray<QString> names;
    names.Add(QStringLiteral("stale"));
    EXPECT_FALSE(Fun::ScanFolder_HasExtendName(HomeFile("nofolder"), QStringLiteral("*.tx"), names));
    EXPECT_TRUE(names.IsEmpty());
}

TEST_F(QxMfcFunTest, ScanListsOnlyTheExactExtensionInNameOrder)
{
    const QString folder = HomeFile("cases");
    ASSERT_TRUE(QDir().mkpath(folder));
    for (const char* name : {"b.tx", "a.tx", "GlobalFun.txt", "GlobalParm.txt", "c.TX", "d.tx.bak", "用例.tx"})
        ASSERT_TRUE(Fun::SaveFileContent(folder + "/" + QString::fromUtf8(name), QStringLiteral("x")));
    CArray<QString> names;
    ASSERT_TRUE(Fun::ScanFolder_HasExtendName(folder, QStringLiteral("*.tx"), names));
    QStringList listed;
    for (int i = 0; i < names.GetSize(); ++i)
        listed << names[i];
    EXPECT_EQ(listed.join(u' '), QStringLiteral("a.tx b.tx 用例.tx"));
}

TEST_F(QxMfcFunTest, SplitDropsEmptyPiecesSplitCStringKeepsThem)
{
    const struct { QString text; int split, splitCString; } cases[] = {
        {QStringLiteral("a@@b"), 2, 2}, {QStringLiteral("@@a@@@@b@@"), 2, 5}, {QStringLiteral("abc"), 1, 1},
        {QString(), 0, 1}, {QStringLiteral("@@"), 0, 2},
    };
    for (const auto& c : cases) {
        CArray<QString> pieces;
        EXPECT_EQ(Fun::Split(c.text, QStringLiteral("@@"), pieces), c.split) << c.text.toStdString();
        EXPECT_EQ(pieces.GetSize(), c.split);
        EXPECT_EQ(Fun::SplitCString(c.text, QStringLiteral("@@"), pieces), c.splitCString) << c.text.toStdString();
    }
}
