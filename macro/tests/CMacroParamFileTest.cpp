#include "CMacroParamFile.h"
#include "MacroParamFields.h"
#include "TestEnvironment.h"
#include "UIFunction.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace {

struct P { const char *name, *value, *description; std::uint32_t type; };
CArray<CMacroParam> List(std::initializer_list<P> specs)
{
    CArray<CMacroParam> list;
    for (const P& p : specs)
        list.Add(MakeParam(QString::fromUtf8(p.name), QString::fromUtf8(p.value), QString::fromUtf8(p.description), int(p.type)));
    return list;
}

} // namespace

class CMacroParamFileTest : public TempHomeTest
{
protected:
    QString Settings(const QByteArray& xml, const QString& name = u"m.xml"_s)
    {
        EXPECT_TRUE(WriteBytes(HomeFile(name), xml));
        return HomeFile(name);
    }
    // A script file on drive C; returns its Windows-style path.
    QString Script(const QByteArray& bytes, const QString& name = u"s.js"_s)
    {
        EXPECT_TRUE(WriteBytes(HomeFile("drives/c/") + name, bytes));
        return u"C:\\"_s + name;
    }
    // The inputs, "->", then the outputs; the lists handed in are emptied first.
    static QStringList Lists(const CMacroParamFile& file, CArray<CMacroParam> in = {}, CArray<CMacroParam> out = {})
    {
        file.GetInputParams(in);
        file.GetOutputParams(out);
        return ParamFields(in) + QStringList{u"->"_s} + ParamFields(out);
    }
    // A file object that holds something in every field.
    void Fill(CMacroParamFile& file)
    {
        const QByteArray xml = "<Script><ScriptFile Name=\"" + Script("old script", u"old.js"_s).toUtf8()
            + "\"/><ParamsInput><Param Name=\"a\"/></ParamsInput><ParamsOutput><Param Name=\"b\"/></ParamsOutput></Script>";
        ASSERT_TRUE(file.Read(Settings(xml, u"old.xml"_s)));
        file.SetErrorText(u"earlier"_s);
    }
    // Error text, settings path, script file and script.
    static QStringList State(const CMacroParamFile& f)
    {
        return {f.GetErrorText(), f.GetFilePath(), f.GetScriptFile(), f.GetScript()};
    }
    // The one message box shown so far: "不存在文件" and the path, no caption, an OK button.
    void ExpectOneMessage(const QString& path)
    {
        EXPECT_EQ(UiCalls(), QStringList{u"MessageBox|不存在文件"_s + path + u"||"_s + QString::number(UIFunction::MB_OK)});
    }
};

TEST_F(CMacroParamFileTest, SaveWritesTheExactDocumentAndHalvedScript)
{
    ASSERT_TRUE(QDir().mkpath(HomeFile("drives/d/js")));
    CMacroParamFile file;
    file.SetFilePath(u"D:\\js\\w.xml"_s);
    ASSERT_TRUE(file.Save(List({{"L", "1200", "长度", 1}}), List({{"W", "", "", 1}}), u"D:\\js\\w.js"_s, u"W = L;"_s));
    EXPECT_EQ(ReadBytes(HomeFile("drives/d/js/w.xml")),
              QStringLiteral("<Script><ScriptFile Name=\"D:\\js\\w.js\"/><ParamsInput>"
                             "<Param Name=\"L\" Value=\"1200\" Description=\"长度\" Type=\"1\"/></ParamsInput>"
                             "<ParamsOutput><Param Name=\"W\" Value=\"\" Description=\"\" Type=\"1\"/>"
                             "</ParamsOutput></Script>").toUtf8());
    EXPECT_EQ(ReadBytes(HomeFile("drives/d/js/w.js")), QByteArray("W\0 \0=\0", 6));
    EXPECT_TRUE(file.GetErrorText().isEmpty());
    // Empty lists are empty elements; a script file that cannot be written is no failure.
    file.SetFilePath(HomeFile("e.xml"));
    ASSERT_TRUE(file.Save({}, {}, u"C:\\missing\\folder\\s.js"_s, u"x"_s));
    EXPECT_EQ(ReadBytes(HomeFile("e.xml")),
              QByteArray("<Script><ScriptFile Name=\"C:\\missing\\folder\\s.js\"/><ParamsInput/><ParamsOutput/></Script>"));
    EXPECT_TRUE(file.GetErrorText().isEmpty());
}

TEST_F(CMacroParamFileTest, ParametersRoundTripWithAwkwardValues)
{
    const CArray<CMacroParam> inputs = List({{"q", "say \"hi\" & 'bye'", "<tag>", 0}, {"长", "钢筋 HRB400", "中文说明", 1},
                                             {"ws", " a\tb\r\nc ", "  ", 2}, {"neg", "-1", "", 0xFFFFFFFFu}, {"", "", "", 0}});
    const CArray<CMacroParam> outputs = List({{"A", "1}{2", "a]]>b", 1}, {"B", "x", "", 2147483647}});
    const QString script = Script("placeholder");
    CMacroParamFile writer, reader;
    writer.SetFilePath(HomeFile("r.xml"));
    ASSERT_TRUE(writer.Save(inputs, outputs, script, u"var x = 1;"_s));
    ASSERT_TRUE(reader.Read(HomeFile("r.xml")));
    EXPECT_EQ(Lists(reader), ParamFields(inputs) + QStringList{u"->"_s} + ParamFields(outputs));
    // The halved write leaves "v\0a\0r\0..."; the read stops at the first zero byte.
    EXPECT_EQ(State(reader), (QStringList{QString(), HomeFile("r.xml"), script, u"v"_s}));
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
        expected << u"n|||"_s + QString::fromUtf8(t[1]);
    }
    xml += "<Other V=\"x\"/><Param Name=\"a\"><Param Name=\"nested\"/></Param></ParamsInput>"
           "<ParamsInput><Param Name=\"b\"/></ParamsInput></Other>";
    expected << u"|||0"_s << u"a|||0"_s << u"b|||0"_s; // any child counts
    CMacroParamFile file;
    ASSERT_TRUE(file.Read(Settings(xml)));
    EXPECT_EQ(Lists(file), (expected + QStringList{u"->"_s, u"o|||0"_s}));
    EXPECT_EQ(State(file), (QStringList{QString(), HomeFile("m.xml"), u"C:\\s.js"_s, u"var a = 1; // 长度"_s}));
}

TEST_F(CMacroParamFileTest, UnloadableDocumentsClearEverythingWithoutMessage)
{
    const QByteArray bodies[] = {
        QByteArray(), QByteArray("not xml at all"), QByteArray("<Script><ParamsInput></Script>"),
        QByteArray("<Script/><Script/>"), QByteArray("\xFF\xFE<\0S\0/\0", 8), QByteArray("<Script>\xFF</Script>"),
    };
    QStringList paths = {HomeFile("missing.xml"), u"Z:\\nowhere\\m.xml"_s, QString(), Home(), u"/dev/zero"_s};
    for (const QByteArray& body : bodies)
        paths << Settings(body, QString::fromLatin1(body.toHex()) + u".xml"_s);
    const CArray<CMacroParam> stale = List({{"x", "1", "d", 1}});
    for (const QString& path : paths + QStringList{u"Clear"_s}) {
        CMacroParamFile file;
        Fill(file);
        if (path == u"Clear"_s)
            file.Clear();
        else
            EXPECT_FALSE(file.Read(path)) << path.toStdString();
        EXPECT_EQ(Lists(file, stale, stale), QStringList{u"->"_s});
        EXPECT_EQ(State(file), QStringList(4, QString()));
    }
    EXPECT_TRUE(Ui().calls.isEmpty());
}

TEST_F(CMacroParamFileTest, MissingScriptFileShowsMessageAndKeepsLists)
{
    const QString path = Settings("<Script><ScriptFile Name=\"C:\\js\\gone.js\"/><ParamsInput><Param Name=\"L\" Type=\"1\"/>"
                                  "</ParamsInput><ParamsOutput><Param Name=\"W\"/></ParamsOutput></Script>");
    CMacroParamFile file;
    EXPECT_FALSE(file.Read(path));
    ExpectOneMessage(u"C:\\js\\gone.js"_s);
    EXPECT_EQ(Lists(file), (QStringList{u"L|||1"_s, u"->"_s, u"W|||0"_s}));
    EXPECT_EQ(State(file), (QStringList{u"CMacroParamFile::Read出错:文件C:\\js\\gone.js读取失败"_s, path,
                                        u"C:\\js\\gone.js"_s, QString()}));
}

TEST_F(CMacroParamFileTest, ScriptFileOnlyCountsAsFirstChild)
{
    const QByteArray notFirst[] = {"<ParamsInput/><ScriptFile", "<!-- c --><ScriptFile", "<scriptfile", "text<ScriptFile"};
    Script("exists");
    for (const QByteArray& xml : notFirst) {
        CMacroParamFile file;
        Ui().Clear();
        EXPECT_FALSE(file.Read(Settings("<Script>" + xml + " Name=\"C:\\s.js\"/></Script>"))) << xml.constData();
        EXPECT_EQ(file.GetErrorText(), u"CMacroParamFile::Read出错:文件读取失败"_s);
        ExpectOneMessage(QString());
    }
    // A script file read before stays, with its script; the lists are emptied first.
    CMacroParamFile file;
    Fill(file);
    EXPECT_TRUE(file.Read(Settings("<Script><ParamsInput><Param Name=\"n\"/></ParamsInput></Script>")));
    EXPECT_EQ(Lists(file), (QStringList{u"n|||0"_s, u"->"_s}));
    // A success does not clear the error text.
    EXPECT_EQ(State(file), (QStringList{u"earlier"_s, HomeFile("m.xml"), u"C:\\old.js"_s, u"old script"_s}));
}

TEST_F(CMacroParamFileTest, SaveFailureKeepsWhatWasGiven)
{
    const CArray<CMacroParam> inputs = List({{"L", "1", "", 0}});
    for (const QString& target : {HomeFile("no/such/folder/m.xml"), QString(), Home()}) {
        CMacroParamFile file;
        file.SetFilePath(target);
        EXPECT_FALSE(file.Save(inputs, {}, u"C:\\never.js"_s, u"script"_s));
        EXPECT_EQ(State(file), (QStringList{u"CMacroParamFile::Save保存出错"_s, target, u"C:\\never.js"_s, u"script"_s}));
        EXPECT_EQ(Lists(file), (QStringList{u"L|1||0"_s, u"->"_s}));
        EXPECT_FALSE(QFile::exists(HomeFile("drives/c/never.js"))); // the script is not written
    }
}
