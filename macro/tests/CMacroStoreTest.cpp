#include "CComDB.h"
#include "CMacroDataManager.h"
#include "CMacroParamManager.h"
#include "DbBackendTest.h"
#include "MacroStoreFixtures.h"

namespace {

class MacroStoreTest : public DbBackendTest
{
protected:
    void ExpectSameParams(const CArray<CMacroParam>& actual, const CArray<CMacroParam>& expected)
    {
        ASSERT_EQ(actual.GetSize(), expected.GetSize());
        for (int i = 0; i < actual.GetSize(); ++i) {
            EXPECT_EQ(actual[i].GetName(), expected[i].GetName());
            EXPECT_EQ(actual[i].GetValue(), expected[i].GetValue());
            EXPECT_EQ(actual[i].GetDescription(), expected[i].GetDescription());
            EXPECT_EQ(actual[i].GetDataType(), expected[i].GetDataType());
        }
    }

    CMacroDataManager m_macros;
    CMacroParamManager m_params;
};

TEST_P(MacroStoreTest, EmptyTablesGiveMaxZeroAndFirstIdsOne)
{
    EXPECT_EQ(m_macros.GetMaxMacroId(), 0);
    EXPECT_EQ(m_params.GetMaxParamId(), 0);
    const CMacro macro = MakeRebarMacro();
    EXPECT_EQ(m_macros.InsertMacro(macro), 1);
    EXPECT_EQ(macro.GetId(), -1);
    EXPECT_EQ(m_macros.GetMaxMacroId(), 1);
    EXPECT_EQ(m_params.GetMaxParamId(), 3);
    EXPECT_EQ(m_macros.InsertMacro(MakeRebarMacro(QStringLiteral("second"))), 2);
    EXPECT_EQ(m_params.GetMaxParamId(), 6);
}

TEST_P(MacroStoreTest, InsertedMacroLoadsBackWhole)
{
    const CMacro macro = MakeRebarMacro();
    const int id = m_macros.InsertMacro(macro);
    ASSERT_EQ(id, 1);
    CMacro loaded;
    ASSERT_TRUE(m_macros.LoadMacro(id, loaded));
    EXPECT_EQ(loaded.GetId(), id);
    EXPECT_EQ(loaded.GetName(), macro.GetName());
    EXPECT_EQ(loaded.GetType(), 3);
    EXPECT_EQ(loaded.GetDescription(), macro.GetDescription());
    EXPECT_EQ(loaded.GetContent(), macro.GetContent());
    ExpectSameParams(loaded.InputParams(), macro.InputParams());
    ExpectSameParams(loaded.OutputParams(), macro.OutputParams());
}

TEST_P(MacroStoreTest, ParameterInsertReturnsTheMaxReadBeforeIt)
{
    const CMacroParam param = MakeParam(QStringLiteral("a"), QStringLiteral("1"), QStringLiteral("d"), 1);
    EXPECT_EQ(m_params.InsertInputParam(7, param), 0);
    EXPECT_EQ(m_params.InsertOutputParam(7, param), 1);
    EXPECT_EQ(m_params.InsertInputParam(8, param), 2);
    EXPECT_EQ(m_params.GetMaxParamId(), 3);
    EXPECT_EQ(CountRows(QStringLiteral("SC_MACROPARAM"), QStringLiteral("where MACROID = 7 and TYPE = 1")), 1);
}

TEST_P(MacroStoreTest, ParameterLoadsKeepInsertionOrderAndFailWhenEmpty)
{
    CArray<CMacroParam> inputs;
    for (const char* name : {"z", "a", "m", "b"})
        inputs.Add(MakeParam(QString::fromUtf8(name), QStringLiteral("v"), QString(""), 0));
    ASSERT_TRUE(m_macros.SaveMacroParams(4, inputs, {}));
    CArray<CMacroParam> loaded;
    loaded.Add(MakeParam(QStringLiteral("old"), QString(), QString(), 0));
    ASSERT_TRUE(m_params.LoadInputParams(4, loaded));
    ExpectSameParams(loaded, inputs);
    CArray<CMacroParam> outputs;
    outputs.Add(MakeParam(QStringLiteral("kept"), QString(), QString(), 0));
    EXPECT_FALSE(m_params.LoadOutputParams(4, outputs));
    ASSERT_EQ(outputs.GetSize(), 1);
    EXPECT_EQ(outputs[0].GetName(), QStringLiteral("kept"));
}

TEST_P(MacroStoreTest, LoadMacroNeedsInputsAndOutputs)
{
    CMacro noOutputs = MakeRebarMacro();
    noOutputs.OutputParams().RemoveAll();
    const int id = m_macros.InsertMacro(noOutputs);
    ASSERT_EQ(id, 1);
    CMacro loaded;
    EXPECT_FALSE(m_macros.LoadMacro(id, loaded));
    EXPECT_EQ(loaded.GetName(), noOutputs.GetName());
    EXPECT_EQ(loaded.InputParams().GetSize(), 2);
    CMacro missing;
    EXPECT_FALSE(m_macros.LoadMacro(99, missing));
    EXPECT_EQ(missing.GetId(), 99);
    EXPECT_EQ(missing.GetName(), QString());
}

TEST_P(MacroStoreTest, UpdateReplacesFieldsScriptAndParameters)
{
    const int id = m_macros.InsertMacro(MakeRebarMacro());
    ASSERT_EQ(m_macros.InsertMacro(MakeRebarMacro(QStringLiteral("neighbour"))), 2);
    CMacro changed(9, QStringLiteral("箍筋长度"), QStringLiteral("new"), QStringLiteral("var L = 2 * (b + h);"));
    changed.InputParams().Add(MakeParam(QStringLiteral("b"), QStringLiteral("300"), QString(""), 1));
    changed.OutputParams().Add(MakeParam(QStringLiteral("L"), QString(""), QString(""), 1));
    changed.OutputParams().Add(MakeParam(QStringLiteral("n"), QString(""), QString(""), 1));
    ASSERT_EQ(m_macros.UpdateMacro(id, changed), 1);
    CMacro loaded;
    ASSERT_TRUE(m_macros.LoadMacro(id, loaded));
    EXPECT_EQ(loaded.GetName(), changed.GetName());
    EXPECT_EQ(loaded.GetType(), 9);
    EXPECT_EQ(loaded.GetDescription(), QStringLiteral("new"));
    EXPECT_EQ(loaded.GetContent(), changed.GetContent());
    ExpectSameParams(loaded.InputParams(), changed.InputParams());
    ExpectSameParams(loaded.OutputParams(), changed.OutputParams());
    CMacro neighbour;
    ASSERT_TRUE(m_macros.LoadMacro(2, neighbour));
    EXPECT_EQ(neighbour.InputParams().GetSize(), 2);
}

TEST_P(MacroStoreTest, UpdatingAMissingMacroFailsAtTheScript)
{
    EXPECT_EQ(m_macros.UpdateMacro(42, MakeRebarMacro()), -1);
    EXPECT_EQ(CountRows(QStringLiteral("SC_MACRO_DEFINE")), 0);
}

TEST_P(MacroStoreTest, DeleteRemovesMacroAndItsParameters)
{
    const int first = m_macros.InsertMacro(MakeRebarMacro());
    const int second = m_macros.InsertMacro(MakeRebarMacro(QStringLiteral("b")));
    ASSERT_TRUE(m_macros.DeleteMacro(first));
    EXPECT_EQ(CountRows(QStringLiteral("SC_MACRO_DEFINE")), 1);
    EXPECT_EQ(CountRows(QStringLiteral("SC_MACROPARAM"), QStringLiteral("where MACROID = 1")), 0);
    EXPECT_EQ(CountRows(QStringLiteral("SC_MACROPARAM"), QStringLiteral("where MACROID = 2")), 3);
    EXPECT_TRUE(m_macros.DeleteMacro(first));
    EXPECT_TRUE(m_macros.DeleteMacroParams(second));
    EXPECT_EQ(CountRows(QStringLiteral("SC_MACROPARAM")), 0);
    EXPECT_EQ(m_macros.InsertMacro(MakeRebarMacro()), 3);
}

TEST_P(MacroStoreTest, LoadAllListsMacrosWithoutParameters)
{
    CArray<CMacro> all;
    ASSERT_TRUE(m_macros.LoadAllMacros(all));
    EXPECT_EQ(all.GetSize(), 0);
    const QString longDescription(300, QLatin1Char('x'));
    CMacro macro = MakeRebarMacro();
    macro.SetDescription(longDescription);
    ASSERT_EQ(m_macros.InsertMacro(macro), 1);
    ASSERT_EQ(m_macros.InsertMacro(MakeRebarMacro(QStringLiteral("二"))), 2);
    all.Add(CMacro());
    ASSERT_TRUE(m_macros.LoadAllMacros(all));
    ASSERT_EQ(all.GetSize(), 2);
    EXPECT_EQ(all[0].GetId(), 1);
    EXPECT_EQ(all[0].GetDescription(), longDescription);
    EXPECT_EQ(all[0].GetContent(), macro.GetContent());
    EXPECT_EQ(all[1].GetId(), 2);
    EXPECT_EQ(all[1].GetName(), QStringLiteral("二"));
    EXPECT_EQ(all[1].InputParams().GetSize(), 0);
    EXPECT_EQ(all[1].OutputParams().GetSize(), 0);
}

struct NarrowCase
{
    const char16_t* script;
    const char16_t* stored;
};

TEST_P(MacroStoreTest, ScriptKeepsOnlyTheLowByteOfEachCharacter)
{
    const NarrowCase cases[] = {
        {u"var a = 1;\r\n", u"var a = 1;\r\n"},
        {u"\u4E2D\u6587", u"\u002D\u0087"},   // 中 0x4E2D, 文 0x6587
        {u"x = '\u00E9\u00FF';", u"x = '\u00E9\u00FF';"},
        {u"ab\u0100cd", u"ab"},               // a low byte of zero ends the text
        {u"", u""},
    };
    for (const NarrowCase& c : cases) {
        CMacro macro = MakeRebarMacro();
        macro.SetContent(QString::fromUtf16(c.script));
        const int id = m_macros.InsertMacro(macro);
        ASSERT_GT(id, 0);
        CMacro loaded;
        ASSERT_TRUE(m_macros.LoadMacro(id, loaded));
        EXPECT_EQ(loaded.GetContent(), QString::fromUtf16(c.stored)) << id;
    }
}

TEST_P(MacroStoreTest, HugeScriptIsStoredWhole)
{
    QString big;
    while (big.size() < (1 << 20))
        big += QStringLiteral("var L = 2 * (b + h) - 8 * c; // 'quoted'\r\n");
    CMacro macro = MakeRebarMacro();
    macro.SetContent(big);
    const int id = m_macros.InsertMacro(macro);
    ASSERT_EQ(id, 1);
    CMacro loaded;
    ASSERT_TRUE(m_macros.LoadMacro(id, loaded));
    EXPECT_EQ(loaded.GetContent().size(), big.size());
    EXPECT_TRUE(loaded.GetContent() == big);
}

VELMORA_INSTANTIATE_DB_BACKENDS(MacroStoreTest);

} // namespace
