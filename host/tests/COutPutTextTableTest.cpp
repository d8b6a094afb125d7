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
        {Table({"Name", "Value"}, {}), 0, "+------+-------+\r\n| Name | Value |\r\n+------+-------+\r\n"},
        {Table({}, {"lost"}), 0, ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.table.ToText(), QString::fromUtf8(c.text));
        EXPECT_EQ(c.table.GetRowCount(), c.rows) << c.text;
    }
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
