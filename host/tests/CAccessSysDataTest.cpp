#include "CAccessSysData_MacrosTable.h"
#include "CAccessSysData_MacrosV2Table.h"
#include "CComDB.h"
#include "CSysMacrosTable.h"
#include "DbBackendTest.h"
#include "CDBFactory.h"
#include "HostContext.h"

#include <algorithm>
#include <functional>

namespace {

using Fields = CSysMacrosTable::CFieldInfo;

// Both tables behave alike; each case runs on both and on both backends.
struct TableApi
{
    const char* table;
    std::unique_ptr<NDataModelDataSet> (*getDataSet)();
    bool (*get)(const QString&, QString&);
    bool (*set)(const QString&, const QString&);
};

const TableApi kMacros{"Macros", &CAccessSysData_MacrosTable::GetDataSet, &CAccessSysData_MacrosTable::GetMacroContent,
                       &CAccessSysData_MacrosTable::SetMacroContent};
const TableApi kMacrosV2{"MacrosV2", &CAccessSysData_MacrosV2Table::GetDataSet,
                         &CAccessSysData_MacrosV2Table::GetMacroContent,
                         &CAccessSysData_MacrosV2Table::SetMacroContent};

class AccessSysDataTest : public DbBackendTest
{
protected:
    static void Both(const std::function<void(const TableApi&)>& check)
    {
        for (const TableApi* api : {&kMacros, &kMacrosV2}) {
            SCOPED_TRACE(api->table);
            check(*api);
        }
    }
};

TEST_P(AccessSysDataTest, StoredTextReadsBack)
{
    Both([](const TableApi& api) {
        const QString key = QStringLiteral("通用脚本\\钢筋重量.js");
        const QString text = QStringLiteral("// 钢筋 'kg/m'\r\nvar W = 0.00617 * d * d;\r\n");
        ASSERT_TRUE(api.set(key, text));
        QString content = QStringLiteral("stale");
        ASSERT_TRUE(api.get(key, content));
        EXPECT_EQ(content, text);
    });
}

TEST_P(AccessSysDataTest, UnknownKeyIsNotFoundAndLeavesTheText)
{
    Both([](const TableApi& api) {
        QString content = QStringLiteral("kept");
        EXPECT_FALSE(api.get(QStringLiteral("nope.js"), content));
        EXPECT_EQ(content, QStringLiteral("kept"));
    });
}

TEST_P(AccessSysDataTest, SettingAgainReplacesWithoutAddingARow)
{
    Both([this](const TableApi& api) {
        ASSERT_TRUE(api.set(QStringLiteral("a.js"), QStringLiteral("one")));
        ASSERT_TRUE(api.set(QStringLiteral("a.js"), QStringLiteral("two")));
        QString content;
        ASSERT_TRUE(api.get(QStringLiteral("a.js"), content));
        EXPECT_EQ(content, QStringLiteral("two"));
        EXPECT_EQ(CountRows(QLatin1String(api.table)), 1);
    });
}

TEST_P(AccessSysDataTest, TablesAreSeparate)
{
    ASSERT_TRUE(kMacros.set(QStringLiteral("梁\\x.js"), QStringLiteral("first")));
    QString content;
    EXPECT_FALSE(kMacrosV2.get(QStringLiteral("梁\\x.js"), content));
    ASSERT_TRUE(kMacrosV2.set(QStringLiteral("梁\\x.js"), QStringLiteral("second")));
    ASSERT_TRUE(kMacros.get(QStringLiteral("梁\\x.js"), content));
    EXPECT_EQ(content, QStringLiteral("first"));
}

struct OddKey
{
    const char* key;
    const char* text;
};

TEST_P(AccessSysDataTest, AnyKeyOrTextIsSafe)
{
    const OddKey cases[] = {{"it's.js", "x = 'y';"},
                            {"a'; drop table Macros; --", "'); delete from MacrosV2; --"},
                            {"?:name", ":name ? $1"},
                            {"back\\slash\\", "\\'\\\""},
                            {" spaced ", ""}};
    Both([&](const TableApi& api) {
        for (const OddKey& c : cases) {
            const QString key = QString::fromUtf8(c.key);
            ASSERT_TRUE(api.set(key, QString::fromUtf8(c.text))) << c.key;
            QString content;
            ASSERT_TRUE(api.get(key, content)) << c.key;
            EXPECT_EQ(content, QString::fromUtf8(c.text)) << c.key;
        }
        EXPECT_EQ(CountRows(QLatin1String(api.table)), int(std::size(cases)));
    });
}

TEST_P(AccessSysDataTest, EmptyKeyIsRefused)
{
    Both([this](const TableApi& api) {
        EXPECT_FALSE(api.set(QString(), QStringLiteral("x")));
        EXPECT_FALSE(api.set(QStringLiteral(""), QStringLiteral("x")));
        EXPECT_EQ(CountRows(QLatin1String(api.table)), 0);
    });
}

TEST_P(AccessSysDataTest, HugeScriptRoundTrips)
{
    QString big;
    while (big.size() < (1 << 20))
        big += QStringLiteral("var 长度 = 2 * (b + h);\r\n");
    Both([&](const TableApi& api) {
        ASSERT_TRUE(api.set(QStringLiteral("big.js"), big));
        QString content;
        ASSERT_TRUE(api.get(QStringLiteral("big.js"), content));
        EXPECT_EQ(content.size(), big.size());
        EXPECT_TRUE(content == big);
    });
}

TEST_P(AccessSysDataTest, DataSetListsEveryScriptInKeyOrder)
{
    Both([](const TableApi& api) {
        const QStringList keys{QStringLiteral("板\\b.js"), QStringLiteral("A.js"), QStringLiteral("梁\\a.js"),
                               QStringLiteral("a.js"), QStringLiteral("B.js")};
        for (const QString& key : keys)
            ASSERT_TRUE(api.set(key, QStringLiteral("text of ") + key));
        auto set = api.getDataSet();
        ASSERT_NE(set, nullptr);
        ASSERT_EQ(set->GetRowCount(), keys.size());
        EXPECT_EQ(set->GetFieldName(0), Fields::key_ch);
        EXPECT_EQ(set->GetFieldIndex(Fields::content), 2);
        QStringList sorted = keys;
        std::sort(sorted.begin(), sorted.end());
        for (int row = 1; row <= set->GetRowCount(); ++row) {
            EXPECT_EQ(set->GetAsString(Fields::key_ch, row), sorted.at(row - 1));
            EXPECT_EQ(set->GetAsString(Fields::content, row), QStringLiteral("text of ") + sorted.at(row - 1));
            EXPECT_EQ(set->GetAsString(Fields::key_en, row), QString());
        }
    });
}

TEST_P(AccessSysDataTest, EmptyTableGivesAnEmptyDataSet)
{
    Both([](const TableApi& api) {
        auto set = api.getDataSet();
        ASSERT_NE(set, nullptr);
        EXPECT_EQ(set->GetRowCount(), 0);
        EXPECT_EQ(set->GetFieldCount(), 4);
    });
}

TEST_P(AccessSysDataTest, UnreadableTableGivesNoDataSet)
{
    ASSERT_TRUE(SystemDb()->ExecuteNonQuery(QStringLiteral("drop table MacrosV2")));
    EXPECT_EQ(CAccessSysData_MacrosV2Table::GetDataSet(), nullptr);
    EXPECT_FALSE(CAccessSysData_MacrosV2Table::SetMacroContent(QStringLiteral("a.js"), QStringLiteral("x")));
    EXPECT_NE(CAccessSysData_MacrosTable::GetDataSet(), nullptr);
}

VELMORA_INSTANTIATE_DB_BACKENDS(AccessSysDataTest);

class AccessSysDataOnAccessFileTest : public TempHomeTest
{
};

TEST_F(AccessSysDataOnAccessFileTest, ReadsButNeverWritesAnAccessSystemDatabase)
{
    const QString path = CopyAccessFixture(Home());
    ASSERT_FALSE(path.isEmpty());
    const QByteArray original = ReadBytes(path);
    HostContext::Instance().SetSystemDatabase(path);
    auto set = CAccessSysData_MacrosTable::GetDataSet();
    ASSERT_NE(set, nullptr);
    ASSERT_EQ(set->GetRowCount(), 4);
    EXPECT_EQ(set->GetAsString(Fields::key_ch, 1), QStringLiteral("板\\分布筋.js"));
    QString content;
    ASSERT_TRUE(CAccessSysData_MacrosTable::GetMacroContent(QStringLiteral("空"), content));
    EXPECT_EQ(content, QString());
    EXPECT_FALSE(CAccessSysData_MacrosTable::SetMacroContent(QStringLiteral("空"), QStringLiteral("x")));
    EXPECT_FALSE(CAccessSysData_MacrosTable::SetMacroContent(QStringLiteral("new.js"), QStringLiteral("x")));
    EXPECT_EQ(CAccessSysData_MacrosV2Table::GetDataSet(), nullptr);
    CDBFactory::ReleaseThread();
    EXPECT_EQ(ReadBytes(path), original);
}

} // namespace
