#include "QxMfcFun.h"
#include "TestEnvironment.h"

#include <QDir>

using namespace Qt::StringLiterals;
using QxMfc::Fun;
using QxMfcFunTest = TempHomeTest;

TEST_F(QxMfcFunTest, AppendCreatesThenAppendsSaveReplacesAllInTheCodePage)
{
    const QString path = HomeFile("a.txt");
    ASSERT_TRUE(Fun::AppendCString2File(path, u"L="_s));
    ASSERT_TRUE(Fun::AppendCString2File(path, u"长度"_s));
    EXPECT_EQ(ReadBytes(path), QByteArray("L=\xB3\xA4\xB6\xC8")); // GBK, not UTF-8
    const QString text = u"var L = 1200; // 长度\r\n第二行"_s;
    ASSERT_TRUE(Fun::SaveFileContent(path, text));
    QString back;
    ASSERT_TRUE(Fun::File2CString(path, back));
    EXPECT_EQ(back, text);
    const QString large = QString(40000, u'x') + u"长"_s; // more than one read
    ASSERT_TRUE(Fun::SaveFileContent(path, large));
    ASSERT_TRUE(Fun::File2CString(path, back));
    EXPECT_EQ(back, large);
    ASSERT_TRUE(Fun::SaveFileContent(path, u"new"_s)); // a shorter text cuts the file
    EXPECT_EQ(ReadBytes(path), QByteArray("new"));
    ASSERT_TRUE(Fun::SaveFileContent(u"C:\\hello.txt"_s, u"hi"_s));
    EXPECT_TRUE(Fun::CheckFile(u"c:\\hello.txt"_s));
    EXPECT_EQ(ReadBytes(HomeFile("drives/c/hello.txt")), QByteArray("hi"));
}

TEST_F(QxMfcFunTest, MissingFilesAndFoldersFailCleanly)
{
    QString text = u"unchanged"_s;
    EXPECT_FALSE(Fun::File2CString(HomeFile("missing.txt"), text));
    ASSERT_TRUE(QDir().mkpath(HomeFile("a folder")));
    EXPECT_FALSE(Fun::File2CString(HomeFile("a folder"), text));
    EXPECT_EQ(text, u"unchanged"_s);
    EXPECT_FALSE(Fun::SaveFileContent(HomeFile("no/such/folder/x.txt"), u"x"_s));
    EXPECT_FALSE(Fun::AppendCString2File(HomeFile("no/such/folder/x.txt"), u"x"_s));
    EXPECT_FALSE(Fun::CheckFile(QString()));
    CArray<QString> names;
    names.Add(u"stale"_s);
    EXPECT_FALSE(Fun::ScanFolder_HasExtendName(HomeFile("nofolder"), u"*.tx"_s, names));
    EXPECT_TRUE(names.IsEmpty());
    // Only the exact extension, in name order.
    ASSERT_TRUE(QDir().mkpath(HomeFile("cases")));
    for (const char* name : {"b.tx", "a.tx", "GlobalFun.txt", "c.TX", "d.tx.bak", "用例.tx"})
        ASSERT_TRUE(Fun::SaveFileContent(HomeFile("cases/" + QString::fromUtf8(name)), u"x"_s));
    ASSERT_TRUE(Fun::ScanFolder_HasExtendName(HomeFile("cases"), u"*.tx"_s, names));
    EXPECT_EQ(QStringList(names.begin(), names.end()).join(u' '), u"a.tx b.tx 用例.tx"_s);
}

TEST_F(QxMfcFunTest, SplitDropsEmptyPiecesSplitCStringKeepsThem)
{
    const struct { QString text; int split, splitCString; } cases[] = {
        {u"a@@b"_s, 2, 2}, {u"@@a@@@@b@@"_s, 2, 5}, {u"abc"_s, 1, 1}, {QString(), 0, 1}, {u"@@"_s, 0, 2}};
    for (const auto& c : cases) {
        CArray<QString> pieces;
        EXPECT_EQ(Fun::Split(c.text, u"@@"_s, pieces), c.split) << c.text.toStdString();
        EXPECT_EQ(pieces.GetSize(), c.split);
        EXPECT_EQ(Fun::SplitCString(c.text, u"@@"_s, pieces), c.splitCString) << c.text.toStdString();
    }
}
