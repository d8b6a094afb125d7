#include "CMacroParamFile.h"
#include "TestEnvironment.h"
#include "UIFunction.h"

#include <QDir>
#include <climits>

namespace {

CMacroParam Param(const QString& name, const QString& value, const QString& description, std::uint32_t type)
{
    CMacroParam param(name, value, description);
    param.SetDataType(type);
    return param;
}

QString Utf8(const char* text)
{
    return QString::fromUtf8(text);
}

} // namespace

class CMacroParamFileTest : public TempHomeTest
{
protected:
    // Writes a settings file under the home and returns its path.
    QString Settings(const char* xml, const QString& name = QStringLiteral("m.xml"))
    {
        const QString path = HomeFile(name);
        EXPECT_TRUE(WriteBytes(path, QByteArray(xml)));
        return path;
    }
    // A script file on drive C in the code page; returns its Windows-style path.
    QString Script(const QByteArray& bytes, const QString& name = QStringLiteral("s.js"))
    {
        EXPECT_TRUE(WriteBytes(HomeFile("drives/c/") + name, bytes));
        return QStringLiteral("C:\\") + name;
    }
    static QString ScriptXml(const QString& scriptFile, const QString& body)
    {
        return QStringLiteral("<Script><ScriptFile Name=\"") + scriptFile + QStringLiteral("\"/>") + body
            + QStringLiteral("</Script>");
    }
    QString SettingsText(const QString& xml, const QString& name = QStringLiteral("m.xml"))
    {
        return Settings(xml.toUtf8().constData(), name);
    }
    static void ExpectParams(const CArray<CMacroParam>& actual, const CArray<CMacroParam>& expected)
    {
        ASSERT_EQ(actual.GetSize(), expected.GetSize());
        for (int i = 0; i < actual.GetSize(); ++i) {
            EXPECT_EQ(actual[i].GetName(), expected[i].GetName()) << i;
            EXPECT_EQ(actual[i].GetValue(), expected[i].GetValue()) << i;
            EXPECT_EQ(actual[i].GetDescription(), expected[i].GetDescription()) << i;
            EXPECT_EQ(actual[i].GetDataType(), expected[i].GetDataType()) << i;
        }
    }
    static CArray<CMacroParam> Inputs(const CMacroParamFile& file)
    {
        CArray<CMacroParam> params;
        file.GetInputParams(params);
        return params;
    }
    static CArray<CMacroParam> Outputs(const CMacroParamFile& file)
    {
        CArray<CMacroParam> params;
        file.GetOutputParams(params);
        return params;
    }
};

TEST_F(CMacroParamFileTest, SaveWritesTheExactDocumentAndHalvedScript)
{
    ASSERT_TRUE(QDir().mkpath(HomeFile("drives/d/js")));
    CArray<CMacroParam> inputs;
    inputs.Add(Param(QStringLiteral("L"), QStringLiteral("1200"), QStringLiteral("长度"), 1));
    CArray<CMacroParam> outputs;
    outputs.Add(Param(QStringLiteral("W"), QString(), QString(), 1));
    CMacroParamFile file;
    file.SetFilePath(QStringLiteral("D:\\js\\w.xml"));
    ASSERT_TRUE(file.Save(inputs, outputs, QStringLiteral("D:\\js\\w.js"), QStringLiteral("W = L;")));

    const QByteArray expected = Utf8("<Script><ScriptFile Name=\"D:\\js\\w.js\"/><ParamsInput>"
                                     "<Param Name=\"L\" Value=\"1200\" Description=\"长度\" Type=\"1\"/></ParamsInput>"
                                     "<ParamsOutput><Param Name=\"W\" Value=\"\" Description=\"\" Type=\"1\"/>"
                                     "</ParamsOutput></Script>")
                                    .toUtf8();
    EXPECT_EQ(ReadBytes(HomeFile("drives/d/js/w.xml")), expected);
    EXPECT_EQ(ReadBytes(HomeFile("drives/d/js/w.js")), QByteArray("W\0 \0=\0", 6));
    EXPECT_TRUE(file.GetErrorText().isEmpty());
}

TEST_F(CMacroParamFileTest, EmptyListsAreWrittenAsEmptyElements)
{
    CMacroParamFile file;
    file.SetFilePath(HomeFile("e.xml"));
    ASSERT_TRUE(file.Save({}, {}, QString(), QString()));
    EXPECT_EQ(ReadBytes(HomeFile("e.xml")),
              QByteArray("<Script><ScriptFile Name=\"\"/><ParamsInput/><ParamsOutput/></Script>"));
}

TEST_F(CMacroParamFileTest, ParametersRoundTripWithAwkwardValues)
{
    CArray<CMacroParam> inputs;
    inputs.Add(Param(QStringLiteral("q"), QStringLiteral("say \"hi\" & 'bye'"), QStringLiteral("<tag>"), 0));
    inputs.Add(Param(QStringLiteral("长"), QStringLiteral("钢筋 HRB400"), QStringLiteral("中文说明"), 1));
    inputs.Add(Param(QStringLiteral("ws"), QStringLiteral(" a\tb\r\nc "), QStringLiteral("  "), 2));
    inputs.Add(Param(QStringLiteral("neg"), QStringLiteral("-1"), QString(), 0xFFFFFFFFu));
    inputs.Add(Param(QString(), QString(), QString(), 0));
    CArray<CMacroParam> outputs;
    outputs.Add(Param(QStringLiteral("A"), QStringLiteral("1}{2"), QStringLiteral("a]]>b"), 1));
    outputs.Add(Param(QStringLiteral("B"), QStringLiteral("x"), QString(), 2147483647));

    const QString script = Script("placeholder");
    CMacroParamFile writer;
    writer.SetFilePath(HomeFile("r.xml"));
    ASSERT_TRUE(writer.Save(inputs, outputs, script, QStringLiteral("var x = 1;")));

    CMacroParamFile reader;
    ASSERT_TRUE(reader.Read(HomeFile("r.xml")));
    ExpectParams(Inputs(reader), inputs);
    ExpectParams(Outputs(reader), outputs);
    EXPECT_EQ(reader.GetScriptFile(), script);
    EXPECT_EQ(reader.GetFilePath(), HomeFile("r.xml"));
    // The halved write leaves "v\0a\0r\0..."; the read stops at the first zero byte.
    EXPECT_EQ(reader.GetScript(), QStringLiteral("v"));
    EXPECT_TRUE(Ui().calls.isEmpty());
}

TEST_F(CMacroParamFileTest, ReadTakesListsScriptFileAndCodePageScript)
{
    const QString script = Script("var a = 1; // \xB3\xA4\xB6\xC8");
    const QString path = SettingsText(ScriptXml(script,
        Utf8("<ParamsInput><Param Name=\"L\" Value=\"1200\" Description=\"长度\" Type=\"1\"/>"
             "<Param Name=\"s\" Value=\"t\" Description=\"\" Type=\"0\"/></ParamsInput>"
             "<ParamsOutput><Param Name=\"W\" Value=\"\" Description=\"\" Type=\"1\"/></ParamsOutput>")));
    CMacroParamFile file;
    ASSERT_TRUE(file.Read(path));
    CArray<CMacroParam> expectedIn;
    expectedIn.Add(Param(QStringLiteral("L"), QStringLiteral("1200"), QStringLiteral("长度"), 1));
    expectedIn.Add(Param(QStringLiteral("s"), QStringLiteral("t"), QString(), 0));
    CArray<CMacroParam> expectedOut;
    expectedOut.Add(Param(QStringLiteral("W"), QString(), QString(), 1));
    ExpectParams(Inputs(file), expectedIn);
    ExpectParams(Outputs(file), expectedOut);
    EXPECT_EQ(file.GetScript(), QStringLiteral("var a = 1; // 长度"));
    EXPECT_EQ(file.GetScriptFile(), script);
}

TEST_F(CMacroParamFileTest, TypeTakesTheLeadingInteger)
{
    struct Case
    {
        const char* attribute; // null: no Type attribute at all
        int type;
    };
    const Case cases[] = {
        {"1", 1}, {"12abc", 12}, {"x", 0}, {"", 0}, {nullptr, 0}, {"-3", -3}, {"+5", 5}, {" 7", 7},
        {"007", 7}, {"1.9", 1}, {"2147483647", INT_MAX}, {"99999999999", INT_MAX}, {"-99999999999", INT_MIN},
        {"１２", 0}, {"- 4", 0},
    };
    const QString script = Script("s");
    QString body = QStringLiteral("<ParamsInput>");
    for (const Case& c : cases) {
        body += QStringLiteral("<Param Name=\"n\"");
        if (c.attribute)
            body += QStringLiteral(" Type=\"") + Utf8(c.attribute) + QLatin1Char('"');
        body += QStringLiteral("/>");
    }
    body += QStringLiteral("</ParamsInput>");
    CMacroParamFile file;
    ASSERT_TRUE(file.Read(SettingsText(ScriptXml(script, body))));
    const CArray<CMacroParam> params = Inputs(file);
    ASSERT_EQ(params.GetSize(), int(std::size(cases)));
    for (int i = 0; i < params.GetSize(); ++i)
        EXPECT_EQ(params[i].GetDataType(), cases[i].type) << (cases[i].attribute ? cases[i].attribute : "(absent)");
}

TEST_F(CMacroParamFileTest, ListShapesTable)
{
    struct Case
    {
        const char* body;
        const char* inputNames;  // joined with ","
        const char* outputNames;
    };
    const Case cases[] = {
        {"<ParamsInput/>", "", ""},
        {"<ParamsInput></ParamsInput><ParamsOutput/>", "", ""},
        {"<ParamsInput><Param Name=\"a\"/></ParamsInput><ParamsInput><Param Name=\"b\"/><Param Name=\"c\"/></ParamsInput>",
         "a,b,c", ""},
        {"<ParamsOutput><Param Name=\"o\"/></ParamsOutput><ParamsInput><Param Name=\"i\"/></ParamsInput>", "i", "o"},
        {"<ParamsInput><Other Name=\"x\"/><Param/><Param Name=\"y\"/></ParamsInput>", "x,,y", ""},  // any child counts
        {"<Unknown><Param Name=\"z\"/></Unknown><paramsinput><Param Name=\"lc\"/></paramsinput>", "", ""},
        {"<ParamsInput>\n  <Param Name=\"a\"/>\n  <Param Name=\"b\"/>\n</ParamsInput>", "a,b", ""},  // blanks ignored
        {"<ParamsInput><Param Name=\"a\"><Param Name=\"nested\"/></Param></ParamsInput>", "a", ""},
    };
    const QString script = Script("s");
    for (const Case& c : cases) {
        CMacroParamFile file;
        ASSERT_TRUE(file.Read(SettingsText(ScriptXml(script, Utf8(c.body))))) << c.body;
        QStringList in, out;
        for (const CMacroParam& p : Inputs(file))
            in << p.GetName();
        for (const CMacroParam& p : Outputs(file))
            out << p.GetName();
        EXPECT_EQ(in.join(QLatin1Char(',')), Utf8(c.inputNames)) << c.body;
        EXPECT_EQ(out.join(QLatin1Char(',')), Utf8(c.outputNames)) << c.body;
    }
}

TEST_F(CMacroParamFileTest, AnyRootNameIsAccepted)
{
    const QString script = Script("ok");
    CMacroParamFile file;
    ASSERT_TRUE(file.Read(SettingsText(QStringLiteral("<Other><ScriptFile Name=\"") + script
                                       + QStringLiteral("\"/><ParamsOutput><Param Name=\"W\" Type=\"1\"/></ParamsOutput></Other>"))));
    EXPECT_EQ(Outputs(file).GetSize(), 1);
    EXPECT_EQ(file.GetScript(), QStringLiteral("ok"));
}
