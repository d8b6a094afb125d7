#include "COutPutTextTable.h"
#include "CodePage.h"
#include "HostContext.h"
#include "TestEnvironment.h"

class COutPutTextTableTest : public TempHomeTest
{
};

namespace {

COutPutTextTable CompareTable()
{
    COutPutTextTable table;
    for (const char* title : {"ParmName", "ParmValue", "NewParmValue"})
        table.AddTextNode(QString::fromLatin1(title));
    return table;
}

} // namespace

TEST(COutPutTextTableWidthTest, WideCharactersCountTwo)
{
    const struct
    {
        QString text;
        int width;
    } cases[] = {
        {QString(), 0},
        {QStringLiteral("abc"), 3},
        {QStringLiteral("钢筋"), 4},
        {QStringLiteral("a钢b"), 4},
        {QStringLiteral("，。！"), 6}, // full-width punctuation
        {QStringLiteral("ＡＢ"), 4},   // full-width Latin
        {QStringLiteral("한글"), 4},
        {QStringLiteral("ｶﾀ"), 2}, // half-width katakana stays narrow
        {QStringLiteral("é"), 1},
        {QStringLiteral("\U00020000"), 2}, // CJK extension B, a surrogate pair
    };
    for (const auto& c : cases)
        EXPECT_EQ(COutPutTextTable::DisplayWidth(c.text), c.width) << c.text.toStdString();
}

TEST(COutPutTextTableLayoutTest, MixedChineseAndAsciiLineUp)
{
    COutPutTextTable table = CompareTable();
    for (const char* value : {"d", "25", "25.0", "钢筋重量", "原测试中没有此参数", "3.853"})
        table.AddNodeValue(QString::fromUtf8(value));
    const QString expected = QStringLiteral(
        "+----------+--------------------+--------------+\r\n"
        "| ParmName | ParmValue          | NewParmValue |\r\n"
        "+----------+--------------------+--------------+\r\n"
        "| d        | 25                 | 25.0         |\r\n"
        "| 钢筋重量 | 原测试中没有此参数 | 3.853        |\r\n"
        "+----------+--------------------+--------------+\r\n");
    EXPECT_EQ(table.ToText(), expected);
    EXPECT_EQ(table.GetRowCount(), 2);

    // Every line has the same display width, so the borders meet.
    for (const QString& line : table.ToText().split(QStringLiteral("\r\n"), Qt::SkipEmptyParts))
        EXPECT_EQ(COutPutTextTable::DisplayWidth(line), 48) << line.toStdString();
}

TEST(COutPutTextTableLayoutTest, PartialRowsAndControlCharacters)
{
    COutPutTextTable table;
    table.AddTextNode(QStringLiteral("a"));
    table.AddTextNode(QStringLiteral("b\r\n"));
    table.AddNodeValue(QStringLiteral("x\ty"));
    table.AddNodeValue(QStringLiteral("1"));
    table.AddNodeValue(QStringLiteral("only"));
    EXPECT_EQ(table.GetRowCount(), 2);
    EXPECT_EQ(table.ToText(), QStringLiteral("+------+-----+\r\n"
                                             "| a    | b   |\r\n"
                                             "+------+-----+\r\n"
                                             "| x y  | 1   |\r\n"
                                             "| only |     |\r\n"
                                             "+------+-----+\r\n"));
}

TEST(COutPutTextTableLayoutTest, TitlesOnlyAndNoColumns)
{
    COutPutTextTable table = CompareTable();
    EXPECT_EQ(table.ToText(), QStringLiteral("+----------+-----------+--------------+\r\n"
                                             "| ParmName | ParmValue | NewParmValue |\r\n"
                                             "+----------+-----------+--------------+\r\n"));
    COutPutTextTable none;
    none.AddNodeValue(QStringLiteral("lost"));
    EXPECT_EQ(none.GetRowCount(), 0);
    EXPECT_EQ(none.ToText(), QString());
    table.Clear();
    EXPECT_EQ(table.GetColumnCount(), 0);
}

TEST_F(COutPutTextTableTest, Print2FileAppendsInTheCodePageAndFailsForAMissingFolder)
{
    const QString path = QStringLiteral("C:\\结果.txt");
    const QString native = HostContext::Instance().DriveRoot(QLatin1Char('C')) + QStringLiteral("/结果.txt");
    ASSERT_TRUE(WriteBytes(native, QByteArrayLiteral("line before\r\n")));
    COutPutTextTable table;
    table.AddTextNode(QStringLiteral("名称"));
    table.AddNodeValue(QStringLiteral("x"));
    ASSERT_TRUE(table.Print2File(path));
    ASSERT_TRUE(table.Print2File(path));
    const QByteArray once = CodePage::FromUnicode(table.ToText());
    EXPECT_EQ(ReadBytes(native), QByteArrayLiteral("line before\r\n") + once + once);
    // GBK: each Chinese character is two bytes, no UTF-8.
    EXPECT_TRUE(once.contains(QByteArray("\xC3\xFB\xB3\xC6")));
    EXPECT_FALSE(table.Print2File(QStringLiteral("C:\\no such folder\\r.txt")));
}
