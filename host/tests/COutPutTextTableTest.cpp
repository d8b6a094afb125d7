#include "COutPutTextTable.h"
#include "CodePage.h"
#include "HostContext.h"
#include "TestEnvironment.h"

using COutPutTextTableTest = TempHomeTest;

namespace {

COutPutTextTable Table(std::initializer_list<const char*> titles, std::initializer_list<const char*> values)
{
    COutPutTextTable table;
    for (const char* title : titles)
        table.AddTextNode(QString::fromUtf8(title));
    for (const char* value : values)
        table.AddNodeValue(QString::fromUtf8(value));
    return table;
}

} // namespace

TEST(COutPutTextTableWidthTest, WideCharactersCountTwo)
{
    const struct { QString text; int width; } cases[] = {
        {QString(), 0}, {QStringLiteral("abc"), 3}, {QStringLiteral("钢筋"), 4}, {QStringLiteral("a钢b"), 4},
        {QStringLiteral("，。！"), 6}, // full-width punctuation
        {QStringLiteral("ＡＢ"), 4},   // full-width Latin
        {QStringLiteral("한글"), 4}, {QStringLiteral("é"), 1},
        {QStringLiteral("ｶﾀ"), 2},          // half-width katakana stays narrow
        {QStringLiteral("\U00020000"), 2}, // CJK extension B, a surrogate pair
    };
    for (const auto& c : cases)
        EXPECT_EQ(COutPutTextTable::DisplayWidth(c.text), c.width) << c.text.toStdString();
}

TEST(COutPutTextTableLayoutTest, LayoutTable)
{
    const struct { COutPutTextTable table; int rows; const char* text; } cases[] = {
        {Table({"ParmName", "ParmValue", "NewParmValue"}, {"d", "25", "25.0", "钢筋重量", "原测试中没有此参数", "3.853"}), 2,
         "+----------+--------------------+--------------+\r\n"
         "| ParmName | ParmValue          | NewParmValue |\r\n"
         "+----------+--------------------+--------------+\r\n"
         "| d        | 25                 | 25.0         |\r\n"
         "| 钢筋重量 | 原测试中没有此参数 | 3.853        |\r\n"
         "+----------+--------------------+--------------+\r\n"},
        {Table({"a", "b\r\n"}, {"x\ty", "1", "only"}), 2, // partial rows and control characters
         "+------+-----+\r\n| a    | b   |\r\n+------+-----+\r\n| x y  | 1   |\r\n| only |     |\r\n+------+-----+\r\n"},
        {Table({"ParmName", "ParmValue", "NewParmValue"}, {}), 0,
         "+----------+-----------+--------------+\r\n"
         "| ParmName | ParmValue | NewParmValue |\r\n"
         "+----------+-----------+--------------+\r\n"},
        {Table({}, {"lost"}), 0, ""},
    };
    for (const auto& c : cases) {
        const QString text = c.table.ToText();
        EXPECT_EQ(text, QString::fromUtf8(c.text));
        EXPECT_EQ(c.table.GetRowCount(), c.rows) << c.text;
        // Every line has the same display width, so the borders meet.
        for (const QString& line : text.split(QStringLiteral("\r\n"), Qt::SkipEmptyParts))
            EXPECT_EQ(COutPutTextTable::DisplayWidth(line), text.indexOf(u'\r')) << line.toStdString();
    }
    COutPutTextTable cleared = Table({"a"}, {});
    cleared.Clear();
    EXPECT_EQ(cleared.GetColumnCount(), 0);
}

TEST_F(COutPutTextTableTest, Print2FileAppendsInTheCodePageAndFailsForAMissingFolder)
{
    const QString path = QStringLiteral("C:\\结果.txt");
    const QString native = HostContext::Instance().DriveRoot(QLatin1Char('C')) + QStringLiteral("/结果.txt");
    ASSERT_TRUE(WriteBytes(native, QByteArrayLiteral("line before\r\n")));
    const COutPutTextTable table = Table({"名称"}, {"x"});
    ASSERT_TRUE(table.Print2File(path));
    ASSERT_TRUE(table.Print2File(path));
    const QByteArray once = CodePage::FromUnicode(table.ToText());
    EXPECT_EQ(ReadBytes(native), QByteArrayLiteral("line before\r\n") + once + once);
    EXPECT_TRUE(once.contains(QByteArray("\xC3\xFB\xB3\xC6"))); // GBK: two bytes per Chinese character
    EXPECT_FALSE(table.Print2File(QStringLiteral("C:\\no such folder\\r.txt")));
}
