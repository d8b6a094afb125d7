#include "CMacroParamFile.h"
#include "TestEnvironment.h"
#include "UIFunction.h"

#include <QDir>

namespace {

CMacroParam Param(const char* name, const char* value, const char* description, std::uint32_t type)
{
    CMacroParam param(QString::fromUtf8(name), QString::fromUtf8(value), QString::fromUtf8(description));
    param.SetDataType(type);
    return param;
}

// Names, values, descriptions and types of a list, one line each.
QStringList Fields(const CArray<CMacroParam>& params)
{
    QStringList lines;
    for (const CMacroParam& p : params)
        lines << QStringLiteral("%1|%2|%3|%4").arg(p.GetName(), p.GetValue(), p.GetDescription()).arg(p.GetDataType());
    return lines;
}

} // namespace

class CMacroParamFileTest : public TempHomeTest
{
protected:
    QString Settings(const QByteArray& xml, const QString& name = QStringLiteral("m.xml"))
    {
        EXPECT_TRUE(WriteBytes(HomeFile(name), xml));
        return HomeFile(name);
    }
    // A script file on drive C; returns its Windows-style path.
    QString Script(const QByteArray& bytes, const QString& name = QStringLiteral("s.js"))
    {
        EXPECT_TRUE(WriteBytes(HomeFile("drives/c/") + name, bytes));
        return QStringLiteral("C:\\") + name;
    }
    static QStringList Inputs(const CMacroParamFile& file, CArray<CMacroParam> params = {})
    {
        file.GetInputParams(params);
        return Fields(params);
    }
    static QStringList Outputs(const CMacroParamFile& file, CArray<CMacroParam> params = {})
    {
        file.GetOutputParams(params);
        return Fields(params);
    }
    // A file object that holds something in every field.
    void Fill(CMacroParamFile& file)
    {
        const QByteArray xml = "<Script><ScriptFile Name=\"" + Script("old script", QStringLiteral("old.js")).toUtf8()
            + "\"/><ParamsInput><Param Name=\"a\"/></ParamsInput><ParamsOutput><Param Name=\"b\"/></ParamsOutput></Script>";
        ASSERT_TRUE(file.Read(Settings(xml, QStringLiteral("old.xml"))));
        file.SetErrorText(QStringLiteral("earlier"));
    }
    static void ExpectCleared(const CMacroParamFile& file)
    {
        CArray<CMacroParam> stale;
        stale.Add(CMacroParam());
        EXPECT_TRUE(Inputs(file, stale).isEmpty());
        EXPECT_TRUE(Outputs(file, stale).isEmpty());
        EXPECT_TRUE(file.GetErrorText().isEmpty());
        EXPECT_TRUE(file.GetFilePath().isEmpty());
        EXPECT_TRUE(file.GetScript().isEmpty());
        EXPECT_TRUE(file.GetScriptFile().isEmpty());
    }
};

TEST_F(CMacroParamFileTest, SaveWritesTheExactDocumentAndHalvedScript)
{
    ASSERT_TRUE(QDir().mkpath(HomeFile("drives/d/js")));
    CArray<CMacroParam> inputs, outputs;
    inputs.Add(Param("L", "1200", "长度", 1));
    outputs.Add(Param("W", "", "", 1));
    CMacroParamFile file;
    file.SetFilePath(QStringLiteral("D:\\js\\w.xml"));
    ASSERT_TRUE(file.Save(inputs, outputs, QStringLiteral("D:\\js\\w.js"), QStringLiteral("W = L;")));
    EXPECT_EQ(ReadBytes(HomeFile("drives/d/js/w.xml")),
              QStringLiteral("<Script><ScriptFile Name=\"D:\\js\\w.js\"/><ParamsInput>"
                             "<Param Name=\"L\" Value=\"1200\" Description=\"长度\" Type=\"1\"/></ParamsInput>"
                             "<ParamsOutput><Param Name=\"W\" Value=\"\" Description=\"\" Type=\"1\"/>"
                             "</ParamsOutput></Script>").toUtf8());
    EXPECT_EQ(ReadBytes(HomeFile("drives/d/js/w.js")), QByteArray("W\0 \0=\0", 6));
    EXPECT_TRUE(file.GetErrorText().isEmpty());
    // Empty lists are empty elements; a script file that cannot be written is no failure.
    file.SetFilePath(HomeFile("e.xml"));
    ASSERT_TRUE(file.Save({}, {}, QStringLiteral("C:\\missing\\folder\\s.js"), QStringLiteral("x")));
    EXPECT_EQ(ReadBytes(HomeFile("e.xml")),
              QByteArray("<Script><ScriptFile Name=\"C:\\missing\\folder\\s.js\"/><ParamsInput/><ParamsOutput/></Script>"));
    EXPECT_TRUE(file.GetErrorText().isEmpty());
}

TEST_F(CMacroParamFileTest, ParametersRoundTripWithAwkwardValues)
{
    CArray<CMacroParam> inputs, outputs;
    inputs.Add(Param("q", "say \"hi\" & 'bye'", "<tag>", 0));
    inputs.Add(Param("长", "钢筋 HRB400", "中文说明", 1));
    inputs.Add(Param("ws", " a\tb\r\nc ", "  ", 2));
    inputs.Add(Param("neg", "-1", "", 0xFFFFFFFFu));
    inputs.Add(Param("", "", "", 0));
    outputs.Add(Param("A", "1}{2", "a]]>b", 1));
    outputs.Add(Param("B", "x", "", 2147483647));
    const QString script = Script("placeholder");
    CMacroParamFile writer, reader;
    writer.SetFilePath(HomeFile("r.xml"));
    ASSERT_TRUE(writer.Save(inputs, outputs, script, QStringLiteral("var x = 1;")));
    ASSERT_TRUE(reader.Read(HomeFile("r.xml")));
    EXPECT_EQ(Inputs(reader), Fields(inputs));
    EXPECT_EQ(Outputs(reader), Fields(outputs));
    EXPECT_EQ(reader.GetScriptFile(), script);
    // The halved write leaves "v\0a\0r\0..."; the read stops at the first zero byte.
    EXPECT_EQ(reader.GetScript(), QStringLiteral("v"));
    EXPECT_TRUE(Ui().calls.isEmpty());
}

TEST_F(CMacroParamFileTest, ReadTakesAnyRootListsTypesAndTheGbkScript)
{
    const char* types[][2] = { // Type attribute (null: absent), value read
        {"12abc", "12"}, {"x", "0"}, {nullptr, "0"}, {"-3", "-3"}, {"+5", "5"}, {" 7", "7"}, {"1.9", "1"},
        {"99999999999", "2147483647"}, {"-99999999999", "-2147483648"}, {"１２", "0"}, {"- 4", "0"},
    };
    QByteArray xml = "<Other><ScriptFile Name=\"" + Script("var a = 1; // \xB3\xA4\xB6\xC8").toUtf8()
        + "\"/><ParamsOutput><Param Name=\"o\"/></ParamsOutput><Unknown><Param Name=\"z\"/></Unknown>"
          "<paramsinput><Param Name=\"lc\"/></paramsinput><ParamsInput>\n";
    QStringList expected;
    for (const auto& t : types) {
        xml += QByteArray("<Param Name=\"n\"") + (t[0] ? QByteArray(" Type=\"") + t[0] + '"' : QByteArray()) + "/>";
        expected << QStringLiteral("n|||") + QString::fromUtf8(t[1]);
    }
    xml += "<Other V=\"x\"/><Param Name=\"a\"><Param Name=\"nested\"/></Param></ParamsInput>"
           "<ParamsInput><Param Name=\"b\"/></ParamsInput></Other>";
    expected << QStringLiteral("|||0") << QStringLiteral("a|||0") << QStringLiteral("b|||0"); // any child counts
    CMacroParamFile file;
    ASSERT_TRUE(file.Read(Settings(xml)));
    EXPECT_EQ(Inputs(file), expected);
    EXPECT_EQ(Outputs(file), QStringList{QStringLiteral("o|||0")});
    EXPECT_EQ(file.GetScript(), QStringLiteral("var a = 1; // 长度"));
    EXPECT_EQ(file.GetScriptFile(), QStringLiteral("C:\\s.js"));
}

TEST_F(CMacroParamFileTest, UnloadableDocumentsClearEverythingWithoutMessage)
{
    const QByteArray bodies[] = {
        QByteArray(), QByteArray("not xml at all"), QByteArray("<Script><ParamsInput></Script>"),
        QByteArray("<?xml version=\"1.0\"?>"), QByteArray("<Script/><Script/>"),
        QByteArray("\xFF\xFE<\0S\0/\0", 8), QByteArray("<Script>\xFF</Script>"), QByteArray("<Script>&undefined;</Script>"),
    };
    QStringList paths = {HomeFile("missing.xml"), QStringLiteral("Z:\\nowhere\\m.xml"), QString(), Home(),
                         QStringLiteral("/dev/zero")};
    for (const QByteArray& body : bodies)
        paths << Settings(body, QString::fromLatin1(body.toHex()) + QStringLiteral(".xml"));
    for (const QString& path : paths) {
        CMacroParamFile file;
        Fill(file);
        EXPECT_FALSE(file.Read(path)) << path.toStdString();
        ExpectCleared(file);
    }
    CMacroParamFile file;
    Fill(file);
    file.Clear();
    ExpectCleared(file);
    EXPECT_TRUE(Ui().calls.isEmpty());
}

TEST_F(CMacroParamFileTest, MissingScriptFileShowsMessageAndKeepsLists)
{
    const QString path = Settings("<Script><ScriptFile Name=\"C:\\js\\gone.js\"/><ParamsInput><Param Name=\"L\" Type=\"1\"/>"
                                  "</ParamsInput><ParamsOutput><Param Name=\"W\"/></ParamsOutput></Script>");
    CMacroParamFile file;
    EXPECT_FALSE(file.Read(path));
    EXPECT_EQ(file.GetErrorText(), QStringLiteral("CMacroParamFile::Read出错:文件C:\\js\\gone.js读取失败"));
    ASSERT_EQ(Ui().calls.size(), 1);
    EXPECT_EQ(Ui().calls[0].text, QStringLiteral("不存在文件C:\\js\\gone.js"));
    EXPECT_TRUE(Ui().calls[0].caption.isEmpty());
    EXPECT_EQ(Ui().calls[0].style, UIFunction::MB_OK);
    EXPECT_EQ(Inputs(file), QStringList{QStringLiteral("L|||1")});
    EXPECT_EQ(Outputs(file), QStringList{QStringLiteral("W|||0")});
    EXPECT_EQ(file.GetFilePath(), path);
    EXPECT_EQ(file.GetScriptFile(), QStringLiteral("C:\\js\\gone.js"));
    EXPECT_TRUE(file.GetScript().isEmpty());
}

TEST_F(CMacroParamFileTest, ScriptFileOnlyCountsAsFirstChild)
{
    const QByteArray notFirst[] = {
        "<Script><ParamsInput/><ScriptFile Name=\"C:\\s.js\"/></Script>",
        "<Script><!-- c --><ScriptFile Name=\"C:\\s.js\"/></Script>",
        "<Script><scriptfile Name=\"C:\\s.js\"/></Script>",
        "<Script>text<ScriptFile Name=\"C:\\s.js\"/></Script>",
    };
    Script("exists");
    for (const QByteArray& xml : notFirst) {
        CMacroParamFile file;
        Ui().Clear();
        EXPECT_FALSE(file.Read(Settings(xml))) << xml.constData();
        EXPECT_EQ(file.GetErrorText(), QStringLiteral("CMacroParamFile::Read出错:文件读取失败"));
        ASSERT_EQ(Ui().calls.size(), 1);
        EXPECT_EQ(Ui().calls[0].text, QStringLiteral("不存在文件"));
    }
    // A script file read before stays, with its script; the lists are emptied first.
    CMacroParamFile file;
    Fill(file);
    EXPECT_TRUE(file.Read(Settings("<Script><ParamsInput><Param Name=\"n\"/></ParamsInput></Script>")));
    EXPECT_EQ(file.GetScriptFile(), QStringLiteral("C:\\old.js"));
    EXPECT_EQ(file.GetScript(), QStringLiteral("old script"));
    EXPECT_EQ(Inputs(file), QStringList{QStringLiteral("n|||0")});
    EXPECT_TRUE(Outputs(file).isEmpty());
    EXPECT_EQ(file.GetErrorText(), QStringLiteral("earlier")); // a success does not clear it
}

TEST_F(CMacroParamFileTest, SaveFailureKeepsWhatWasGiven)
{
    CArray<CMacroParam> inputs;
    inputs.Add(Param("L", "1", "", 0));
    for (const QString& target : {HomeFile("no/such/folder/m.xml"), QString(), Home()}) {
        CMacroParamFile file;
        file.SetFilePath(target);
        EXPECT_FALSE(file.Save(inputs, {}, QStringLiteral("C:\\never.js"), QStringLiteral("script")));
        EXPECT_EQ(file.GetErrorText(), QStringLiteral("CMacroParamFile::Save保存出错"));
        EXPECT_EQ(file.GetScript(), QStringLiteral("script"));
        EXPECT_EQ(file.GetScriptFile(), QStringLiteral("C:\\never.js"));
        EXPECT_EQ(Inputs(file), QStringList{QStringLiteral("L|1||0")});
        EXPECT_FALSE(QFile::exists(HomeFile("drives/c/never.js"))); // the script is not written
    }
}
