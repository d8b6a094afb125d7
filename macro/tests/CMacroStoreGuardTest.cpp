#include "CComDB.h"
#include "CMacroDataManager.h"
#include "CMacroParamManager.h"
#include "DbBackendTest.h"
#include "MacroStoreFixtures.h"

#include <functional>

namespace {

// One place a quote can hide in a macro.
struct QuoteCase
{
    const char* where;
    std::function<void(CMacro&)> plant;
    int insertResult;
    int updateResult;
};

const QString kQuote = QStringLiteral("O'Brien");

const QuoteCase kQuoteCases[] = {
    {"name", [](CMacro& m) { m.SetName(kQuote); }, -1, 0},
    {"description", [](CMacro& m) { m.SetDescription(kQuote); }, -1, 0},
    {"input name", [](CMacro& m) { m.InputParams()[1].SetName(kQuote); }, -1, -1},
    {"input value", [](CMacro& m) { m.InputParams()[0].SetValue(QStringLiteral("'); delete from SC_MACRO_DEFINE; --")); },
     -1, -1},
    {"output description", [](CMacro& m) { m.OutputParams()[0].SetDescription(kQuote); }, -1, -1},
};

class MacroStoreGuardTest : public DbBackendTest
{
protected:
    void ExpectTablesHold(int macros, int params)
    {
        EXPECT_EQ(CountRows(QStringLiteral("SC_MACRO_DEFINE")), macros);
        EXPECT_EQ(CountRows(QStringLiteral("SC_MACROPARAM")), params);
    }

    CMacroDataManager m_macros;
    CMacroParamManager m_params;
};

TEST_P(MacroStoreGuardTest, QuoteMakesInsertFailWithNothingWritten)
{
    for (const QuoteCase& c : kQuoteCases) {
        SCOPED_TRACE(c.where);
        CMacro macro = MakeRebarMacro();
        c.plant(macro);
        EXPECT_EQ(m_macros.InsertMacro(macro), c.insertResult);
        ExpectTablesHold(0, 0);
    }
}

TEST_P(MacroStoreGuardTest, QuoteMakesUpdateFailWithNothingChanged)
{
    const CMacro original = MakeRebarMacro();
    ASSERT_EQ(m_macros.InsertMacro(original), 1);
    for (const QuoteCase& c : kQuoteCases) {
        SCOPED_TRACE(c.where);
        CMacro macro = MakeRebarMacro(QStringLiteral("changed"));
        macro.SetContent(QStringLiteral("changed"));
        c.plant(macro);
        EXPECT_EQ(m_macros.UpdateMacro(1, macro), c.updateResult);
        CMacro loaded;
        ASSERT_TRUE(m_macros.LoadMacro(1, loaded));
        EXPECT_EQ(loaded.GetName(), original.GetName());
        EXPECT_EQ(loaded.GetContent(), original.GetContent());
        EXPECT_EQ(loaded.InputParams().GetSize(), 2);
    }
    ExpectTablesHold(1, 3);
}

TEST_P(MacroStoreGuardTest, QuoteInAParameterFailsItsInsert)
{
    const CMacroParam bad = MakeParam(QStringLiteral("x"), kQuote, QString(""), 0);
    EXPECT_EQ(m_params.InsertInputParam(1, bad), -1);
    EXPECT_EQ(m_params.InsertOutputParam(1, bad), -1);
    CArray<CMacroParam> inputs;
    inputs.Add(MakeParam(QStringLiteral("good"), QStringLiteral("1"), QString(""), 1));
    CArray<CMacroParam> outputs;
    outputs.Add(bad);
    EXPECT_FALSE(m_macros.SaveMacroParams(1, inputs, outputs));
    ExpectTablesHold(0, 0);
}

TEST_P(MacroStoreGuardTest, DoubleQuotesBackslashesAndSemicolonsAreJustText)
{
    CMacro macro = MakeRebarMacro(QStringLiteral("a \"b\" \\c; d -- e /* f"));
    macro.InputParams()[0].SetValue(QStringLiteral("$$x$$ :name ?"));
    const int id = m_macros.InsertMacro(macro);
    ASSERT_EQ(id, 1);
    CMacro loaded;
    ASSERT_TRUE(m_macros.LoadMacro(id, loaded));
    EXPECT_EQ(loaded.GetName(), macro.GetName());
    EXPECT_EQ(loaded.InputParams()[0].GetValue(), macro.InputParams()[0].GetValue());
}

TEST_P(MacroStoreGuardTest, LockedDatabaseFailsCleanly)
{
    ASSERT_EQ(m_macros.InsertMacro(MakeRebarMacro()), 1);
    ASSERT_TRUE(SystemDb()->SetBusyTimeoutMs(200));
    auto holder = SecondConnection();
    if (GetParam() == DbBackend::SQLite) {
        ASSERT_TRUE(holder->ExecuteNonQuery(QStringLiteral("BEGIN EXCLUSIVE")));
    } else {
        ASSERT_TRUE(holder->ExecuteNonQuery(QStringLiteral("BEGIN")));
        ASSERT_TRUE(holder->ExecuteNonQuery(QStringLiteral("LOCK TABLE SC_MACRO_DEFINE IN ACCESS EXCLUSIVE MODE")));
    }
    EXPECT_EQ(m_macros.InsertMacro(MakeRebarMacro()), -1);
    EXPECT_FALSE(m_macros.DeleteMacro(1));
    EXPECT_EQ(m_macros.UpdateMacro(1, MakeRebarMacro(QStringLiteral("x"))), 0);
    // SQLite's write-ahead log lets readers past a writer's lock; the server's
    // exclusive table lock stops them too.
    CArray<CMacro> all;
    EXPECT_EQ(m_macros.LoadAllMacros(all), GetParam() == DbBackend::SQLite);
    ASSERT_TRUE(holder->ExecuteNonQuery(QStringLiteral("ROLLBACK")));
    ExpectTablesHold(1, 3);
    EXPECT_EQ(m_macros.InsertMacro(MakeRebarMacro()), 2);
}

TEST_P(MacroStoreGuardTest, MissingTablesFailEveryOperation)
{
    auto db = SecondConnection();
    ASSERT_TRUE(db->ExecuteNonQuery(QStringLiteral("drop table SC_MACROPARAM")));
    ASSERT_TRUE(db->ExecuteNonQuery(QStringLiteral("drop table SC_MACRO_DEFINE")));
    EXPECT_EQ(m_macros.GetMaxMacroId(), -1);
    EXPECT_EQ(m_params.GetMaxParamId(), -1);
    EXPECT_EQ(m_macros.InsertMacro(MakeRebarMacro()), -1);
    EXPECT_EQ(m_macros.UpdateMacro(1, MakeRebarMacro()), 0);
    EXPECT_FALSE(m_macros.DeleteMacro(1));
    CMacro macro;
    EXPECT_FALSE(m_macros.LoadMacro(1, macro));
    CArray<CMacro> all;
    EXPECT_FALSE(m_macros.LoadAllMacros(all));
    // The parameter loads only test for an empty result: a failed query passes.
    CArray<CMacroParam> params;
    params.Add(CMacroParam());
    EXPECT_TRUE(m_params.LoadInputParams(1, params));
    EXPECT_EQ(params.GetSize(), 0);
}

VELMORA_INSTANTIATE_DB_BACKENDS(MacroStoreGuardTest);

} // namespace
