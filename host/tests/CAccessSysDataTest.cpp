#include "CAccessSysData_MacrosTable.h"
#include "CAccessSysData_MacrosV2Table.h"
#include "CComDB.h"
#include "CDBFactory.h"
#include "CSysMacrosTable.h"
#include "DataSetTestTables.h"
#include "DbBackendTest.h"
#include "HostContext.h"

#include <algorithm>

using namespace Qt::StringLiterals;

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

template <class Table> constexpr TableApi Api(const char* name)
{
    return {name, &Table::GetDataSet, &Table::GetMacroContent, &Table::SetMacroContent};
}
const TableApi kTables[] = {Api<CAccessSysData_MacrosTable>("Macros"), Api<CAccessSysData_MacrosV2Table>("MacrosV2")};
const TableApi &kMacros = kTables[0], &kMacrosV2 = kTables[1];

using AccessSysDataTest = DbBackendTest;

TEST_P(AccessSysDataTest, UnknownKeyIsNotFoundEmptyKeyIsRefusedAndTablesAreSeparate)
{
    for (const TableApi& api : kTables) {
        SCOPED_TRACE(api.table);
        QString content = u"kept"_s;
        EXPECT_FALSE(api.get(u"nope.js"_s, content));
        EXPECT_EQ(content, u"kept"_s);
        EXPECT_FALSE(api.set(QString(), u"x"_s));
        EXPECT_EQ(CountRows(QLatin1String(api.table)), 0);
    }
    ASSERT_TRUE(kMacros.set(u"梁\\x.js"_s, u"first"_s));
    QString content;
    EXPECT_FALSE(kMacrosV2.get(u"梁\\x.js"_s, content));
    ASSERT_TRUE(kMacrosV2.set(u"梁\\x.js"_s, u"second"_s));
    ASSERT_TRUE(kMacros.get(u"梁\\x.js"_s, content));
    EXPECT_EQ(content, u"first"_s);
    // One table unreadable leaves the other working.
    ASSERT_TRUE(SystemDb()->ExecuteNonQuery(u"drop table MacrosV2"_s));
    EXPECT_EQ(kMacrosV2.getDataSet(), nullptr);
    EXPECT_FALSE(kMacrosV2.set(u"a.js"_s, u"x"_s));
    EXPECT_NE(kMacros.getDataSet(), nullptr);
}

TEST_P(AccessSysDataTest, AnyKeyOrTextRoundTripsAndSettingAgainReplaces)
{
    const QString big = u"var 长度 = 2 * (b + h);\r\n"_s.repeated(50000); // over 1 MB
    const QString cases[][2] = {
        {"通用脚本\\钢筋重量.js", "// 钢筋 'kg/m'\r\nvar W = 0.00617 * d * d;\r\n"}, {"it's.js", "x = 'y';"},
        {"a'; drop table Macros; --", "'); delete from MacrosV2; --"}, {"?:name", ":name ? $1"},
        {"back\\slash\\", "\\'\\\""}, {" spaced ", ""}, {"big.js", big}, {"it's.js", "replaced"}};
    for (const TableApi& api : kTables) {
        SCOPED_TRACE(api.table);
        for (const auto& c : cases) {
            ASSERT_TRUE(api.set(c[0], c[1])) << c[0].toStdString();
            QString content = u"stale"_s;
            ASSERT_TRUE(api.get(c[0], content)) << c[0].toStdString();
            EXPECT_TRUE(content == c[1]) << c[0].toStdString();
        }
        EXPECT_EQ(CountRows(QLatin1String(api.table)), int(std::size(cases)) - 1);
    }
}

TEST_P(AccessSysDataTest, DataSetListsEveryScriptInKeyOrder)
{
    for (const TableApi& api : kTables) {
        SCOPED_TRACE(api.table);
        EXPECT_EQ(api.getDataSet()->GetRowCount(), 0);
        QStringList keys{"板\\b.js", "A.js", "梁\\a.js", "a.js", "B.js"};
        for (const QString& key : keys)
            ASSERT_TRUE(api.set(key, key + u"!"_s));
        auto set = api.getDataSet();
        std::sort(keys.begin(), keys.end());
        EXPECT_EQ(Column(*set, Fields::key_ch), keys.join(u' '));
        EXPECT_EQ(Column(*set, Fields::content), keys.join(u"! "_s) + u"!"_s);
        EXPECT_EQ(Column(*set, Fields::key_en), u"    "_s);
    }
}

VELMORA_INSTANTIATE_DB_BACKENDS(AccessSysDataTest);

using AccessSysDataOnAccessFileTest = AccessFixtureTest;

TEST_F(AccessSysDataOnAccessFileTest, ReadsButNeverWritesAnAccessSystemDatabase)
{
    HostContext::Instance().SetSystemDatabase(m_path);
    auto set = CAccessSysData_MacrosTable::GetDataSet();
    ASSERT_NE(set, nullptr);
    ASSERT_EQ(set->GetRowCount(), 4);
    EXPECT_EQ(set->GetAsString(Fields::key_ch, 1), u"板\\分布筋.js"_s);
    EXPECT_TRUE(set->IsNull(3, 1)); // its description
    EXPECT_EQ(set->GetAsString(Fields::content, 4), u"// 钢筋每米重量 (kg/m)\r\nvar W = 0.00617 * d * d;\r\n"_s);
    QString content;
    ASSERT_TRUE(CAccessSysData_MacrosTable::GetMacroContent(u"空"_s, content));
    EXPECT_EQ(content, QString());
    EXPECT_FALSE(CAccessSysData_MacrosTable::SetMacroContent(u"空"_s, u"x"_s));
    EXPECT_FALSE(CAccessSysData_MacrosTable::SetMacroContent(u"new.js"_s, u"x"_s));
    EXPECT_EQ(CAccessSysData_MacrosV2Table::GetDataSet(), nullptr);
    CDBFactory::ReleaseThread();
    EXPECT_EQ(ReadBytes(m_path), m_original);
}

} // namespace
