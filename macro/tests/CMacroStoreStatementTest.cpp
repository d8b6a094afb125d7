#include "CComDB.h"
#include "CDBFactory.h"
#include "MacroStoreFixtures.h"
#include "RecordingDataService.h"

namespace {

// The stores' statements, seen through a recording service over the real database that can fail a chosen call.
class MacroStoreStatementTest : public MacroStoreFixture
{
protected:
    void Prepare() override
    {
        auto inner = std::make_unique<CComDB>();
        ASSERT_TRUE(CDBFactory::OpenSystemDatabase(*inner, Target())) << inner->GetError().toStdString();
        auto recorder = std::make_unique<RecordingDataService>(std::move(inner));
        m_recorder = recorder.get();
        CDBFactory::InstallForThread(std::move(recorder));
    }

    // Runs statements past the recorder, through a second connection.
    void Run(std::initializer_list<const char*> statements)
    {
        auto db = SecondConnection();
        for (const char* sql : statements)
            ASSERT_TRUE(db->ExecuteNonQuery(QString::fromUtf8(sql))) << sql;
    }

    // Fails the `step`-th call from now; the number of calls made so far.
    int FailStep(int step)
    {
        const int before = m_recorder->Calls().size();
        m_recorder->FailCall(before + step);
        return before;
    }

    static CMacro SmallMacro()
    {
        CMacro macro(2, QStringLiteral("m"), QStringLiteral("d"), QStringLiteral("x=1;"));
        macro.InputParams().Add(MakeParam(QStringLiteral("a"), QStringLiteral("1"), QStringLiteral("in"), 1));
        macro.OutputParams().Add(MakeParam(QStringLiteral("x"), QString(""), QStringLiteral("out"), 0));
        return macro;
    }

    RecordingDataService* m_recorder = nullptr;
};

// The script goes in by a blob of its low bytes with a terminating zero.
TEST_P(MacroStoreStatementTest, ScriptIsWrittenAsABlobWithATerminator)
{
    ASSERT_EQ(m_macros.InsertMacro(SmallMacro()), 1);
    EXPECT_EQ(m_recorder->BlobBytes(), 4);
    EXPECT_EQ(m_recorder->LastBlob(), QByteArray("x=1;\0", 5));
}

// Each step of an insert failing in turn: what was written before it stays.
TEST_P(MacroStoreStatementTest, InsertFailureKeepsWhatWasWrittenBefore)
{
    const struct { int failCall, macros, params; } steps[] = {
        {1, 0, 0}, {2, 0, 0}, {3, 1, 0}, {4, 1, 0}, {5, 1, 0}, {6, 1, 1}, {7, 1, 1}};
    for (const auto& step : steps) {
        SCOPED_TRACE(step.failCall);
        Run({"delete from SC_MACRO_DEFINE", "delete from SC_MACROPARAM"});
        const int before = FailStep(step.failCall);
        EXPECT_EQ(m_macros.InsertMacro(SmallMacro()), -1);
        EXPECT_EQ(m_recorder->Calls().size(), before + step.failCall);
        ExpectTablesHold(step.macros, step.params);
    }
}

TEST_P(MacroStoreStatementTest, UpdateReportsWhichStepFailed)
{
    ASSERT_EQ(m_macros.InsertMacro(SmallMacro()), 1);
    const struct { int failCall, result, paramsLeft; } steps[] = {
        {1, 0, 2}, {2, -1, 2}, {3, -1, 2}, {4, -1, 0}, {5, -1, 0}, {6, -1, 1}};
    for (const auto& step : steps) {
        SCOPED_TRACE(step.failCall);
        Run({"delete from SC_MACROPARAM",
             "insert into SC_MACROPARAM values (1, 'a', '1', '', 0, 1, 1), (2, 'x', '', '', 1, 1, 0)"});
        const int before = FailStep(step.failCall);
        EXPECT_EQ(m_macros.UpdateMacro(1, SmallMacro()), step.result);
        EXPECT_EQ(m_recorder->Calls().size(), before + step.failCall);
        EXPECT_EQ(CountRows(QStringLiteral("SC_MACROPARAM")), step.paramsLeft);
    }
}

TEST_P(MacroStoreStatementTest, ParametersAreDeletedOnlyAfterTheMacroRow)
{
    ASSERT_EQ(m_macros.InsertMacro(SmallMacro()), 1);
    const int before = FailStep(1);
    EXPECT_FALSE(m_macros.DeleteMacro(1));
    EXPECT_EQ(m_recorder->Calls().size(), before + 1);
    ExpectTablesHold(1, 2);
    m_recorder->FailCall(before + 3);
    EXPECT_FALSE(m_macros.DeleteMacro(1));
    ExpectTablesHold(0, 2);
}

// A statement holding a quote is never sent; the ones before it ran.
TEST_P(MacroStoreStatementTest, QuotedStatementIsNeverSent)
{
    const QString maxParam = QStringLiteral("Retrieve: select max(id) from SC_MACROPARAM");
    CMacro macro = SmallMacro();
    macro.OutputParams()[0].SetValue(QStringLiteral("'"));
    EXPECT_EQ(m_macros.InsertMacro(macro), -1);
    ASSERT_EQ(m_recorder->Calls().size(), 6);
    EXPECT_EQ(m_recorder->Calls().last(), maxParam);
    const int before = m_recorder->Calls().size();
    macro.SetName(QStringLiteral("'"));
    EXPECT_EQ(m_macros.InsertMacro(macro), -1);
    EXPECT_EQ(m_macros.UpdateMacro(1, macro), 0);
    EXPECT_EQ(m_params.InsertInputParam(1, macro.OutputParams()[0]), -1);
    EXPECT_EQ(m_params.InsertOutputParam(1, macro.OutputParams()[0]), -1);
    EXPECT_EQ(m_recorder->Calls().mid(before),
              QStringList({"Retrieve: select max(id) from SC_MACRO_DEFINE", maxParam, maxParam}));
}

TEST_P(MacroStoreStatementTest, ConnectInitsAndConnectsTheSystemService)
{
    const QString other = HomeFile(QStringLiteral("other.db"));
    {
        CComDB maker;
        ASSERT_TRUE(CDBFactory::OpenSystemDatabase(maker, other));
    }
    ASSERT_TRUE(m_macros.Connect(other, QString(), QString()));
    EXPECT_EQ(m_recorder->GetConnectionString(), other);
    EXPECT_EQ(m_macros.InsertMacro(SmallMacro()), 1);
    EXPECT_EQ(CountRows(QStringLiteral("SC_MACRO_DEFINE")), 0);
    EXPECT_FALSE(m_macros.Connect(HomeFile(QStringLiteral("missing.db")), QString(), QString()));
    EXPECT_EQ(m_macros.GetMaxMacroId(), -1);
}

VELMORA_INSTANTIATE_DB_BACKENDS(MacroStoreStatementTest);

} // namespace
