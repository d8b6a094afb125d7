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

template <class Table>
constexpr TableApi Api(const char* name)
{
    return {name, &Table::GetDataSet, &Table::GetMacroContent, &Table::SetMacroContent};
}
const TableApi kMacros = Api<CAccessSysData_MacrosTable>("Macros");
const TableApi kMacrosV2 = Api<CAccessSysData_MacrosV2Table>("MacrosV2");

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

TEST_P(AccessSysDataTest, UnknownKeyIsNotFoundAndEmptyKeyIsRefused)
{
    Both([this](const TableApi& api) {
        QString content = QStringLiteral("kept");
        EXPECT_FALSE(api.get(QStringLiteral("nope.js"), content));
        EXPECT_EQ(content, QStringLiteral("kept"));
        EXPECT_FALSE(api.set(QString(), QStringLiteral("x")));
        EXPECT_FALSE(api.set(QStringLiteral(""), QStringLiteral("x")));
        EXPECT_EQ(CountRows(QLatin1String(api.table)), 0);
    });
}

TEST_P(AccessSysDataTest, TablesAreSeparateAndFailAlone)
{
    ASSERT_TRUE(kMacros.set(QStringLiteral("梁\\x.js"), QStringLiteral("first")));
    QString content;
    EXPECT_FALSE(kMacrosV2.get(QStringLiteral("梁\\x.js"), content));
    ASSERT_TRUE(kMacrosV2.set(QStringLiteral("梁\\x.js"), QStringLiteral("second")));
    ASSERT_TRUE(kMacros.get(QStringLiteral("梁\\x.js"), content));
    EXPECT_EQ(content, QStringLiteral("first"));
    // One table unreadable leaves the other working.
    ASSERT_TRUE(SystemDb()->ExecuteNonQuery(QStringLiteral("drop table MacrosV2")));
    EXPECT_EQ(CAccessSysData_MacrosV2Table::GetDataSet(), nullptr);
    EXPECT_FALSE(CAccessSysData_MacrosV2Table::SetMacroContent(QStringLiteral("a.js"), QStringLiteral("x")));
    EXPECT_NE(CAccessSysData_MacrosTable::GetDataSet(), nullptr);
}

TEST_P(AccessSysDataTest, AnyKeyOrTextRoundTripsAndSettingAgainReplaces)
{
    QString big;
    while (big.size() < (1 << 20))
        big += QStringLiteral("var 长度 = 2 * (b + h);\r\n");
    const QString cases[][2] = {
        {"通用脚本\\钢筋重量.js", "// 钢筋 'kg/m'\r\nvar W = 0.00617 * d * d;\r\n"}, {"it's.js", "x = 'y';"},
        {"a'; drop table Macros; --", "'); delete from MacrosV2; --"}, {"?:name", ":name ? $1"},
        {"back\\slash\\", "\\'\\\""}, {" spaced ", ""}, {"big.js", big}, {"it's.js", "replaced"}};
    Both([&](const TableApi& api) {
        for (const auto& c : cases) {
            ASSERT_TRUE(api.set(c[0], c[1])) << c[0].toStdString();
            QString content = QStringLiteral("stale");
            ASSERT_TRUE(api.get(c[0], content)) << c[0].toStdString();
            EXPECT_EQ(content.size(), c[1].size()) << c[0].toStdString();
            EXPECT_TRUE(content == c[1]) << c[0].toStdString();
        }
        EXPECT_EQ(CountRows(QLatin1String(api.table)), int(std::size(cases)) - 1);
    });
}

TEST_P(AccessSysDataTest, DataSetListsEveryScriptInKeyOrder)
{
    Both([](const TableApi& api) {
        auto empty = api.getDataSet();
        ASSERT_NE(empty, nullptr);
        EXPECT_EQ(empty->GetRowCount(), 0);
        EXPECT_EQ(empty->GetFieldCount(), 4);
        const QStringList keys{"板\\b.js", "A.js", "梁\\a.js", "a.js", "B.js"};
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

VELMORA_INSTANTIATE_DB_BACKENDS(AccessSysDataTest);

using AccessSysDataOnAccessFileTest = AccessFixtureTest;

TEST_F(AccessSysDataOnAccessFileTest, ReadsButNeverWritesAnAccessSystemDatabase)
{
    HostContext::Instance().SetSystemDatabase(m_path);
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
    EXPECT_EQ(ReadBytes(m_path), m_original);
}

} // namespace
