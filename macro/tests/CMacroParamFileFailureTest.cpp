#include "CMacroParamFile.h"
#include "TestEnvironment.h"
#include "UIFunction.h"

#include <QDir>

class CMacroParamFileFailureTest : public TempHomeTest
{
protected:
    QString Settings(const QByteArray& xml, const QString& name = QStringLiteral("m.xml"))
    {
        const QString path = HomeFile(name);
        EXPECT_TRUE(WriteBytes(path, xml));
        return path;
    }
    QString Script(const QByteArray& bytes, const QString& name = QStringLiteral("s.js"))
    {
        EXPECT_TRUE(WriteBytes(HomeFile("drives/c/") + name, bytes));
        return QStringLiteral("C:\\") + name;
    }
    // A file object that holds something in every field.
    void Fill(CMacroParamFile& file)
    {
        const QString script = Script("old script", QStringLiteral("old.js"));
        const QByteArray xml = "<Script><ScriptFile Name=\"" + script.toUtf8()
            + "\"/><ParamsInput><Param Name=\"a\"/></ParamsInput><ParamsOutput><Param Name=\"b\"/></ParamsOutput></Script>";
        ASSERT_TRUE(file.Read(Settings(xml, QStringLiteral("old.xml"))));
        file.SetErrorText(QStringLiteral("earlier"));
    }
    static void ExpectCleared(const CMacroParamFile& file)
    {
        CArray<CMacroParam> in, out;
        in.Add(CMacroParam());
        out.Add(CMacroParam());
        file.GetInputParams(in);
        file.GetOutputParams(out);
        EXPECT_TRUE(in.IsEmpty());
        EXPECT_TRUE(out.IsEmpty());
        EXPECT_TRUE(file.GetErrorText().isEmpty());
        EXPECT_TRUE(file.GetFilePath().isEmpty());
        EXPECT_TRUE(file.GetScript().isEmpty());
        EXPECT_TRUE(file.GetScriptFile().isEmpty());
    }
};

TEST_F(CMacroParamFileFailureTest, UnloadableDocumentsClearEverythingWithoutMessage)
{
    const QByteArray bodies[] = {
        QByteArray(),                                   // empty file
        QByteArray("not xml at all"),
        QByteArray("<Script><ParamsInput></Script>"),   // not well-formed
        QByteArray("<?xml version=\"1.0\"?>"),          // no element
        QByteArray("<!-- only a comment -->"),
        QByteArray("<Script/><Script/>"),
        QByteArray("\xFF\xFE<\0S\0/\0", 8),                // UTF-16 cut short
        QByteArray("<Script>\xFF</Script>"),            // not UTF-8
        QByteArray("<Script>&undefined;</Script>"),
    };
    for (const QByteArray& body : bodies) {
        CMacroParamFile file;
        Fill(file);
        Ui().Clear();
        EXPECT_FALSE(file.Read(Settings(body))) << body.toHex().toStdString();
        ExpectCleared(file);
        EXPECT_TRUE(Ui().calls.isEmpty()) << body.toHex().toStdString();
    }
}

TEST_F(CMacroParamFileFailureTest, MissingSettingsFileClearsEverything)
{
    const QString paths[] = {HomeFile("missing.xml"), QStringLiteral("Z:\\nowhere\\m.xml"), QString(), Home(),
                             QStringLiteral("/dev/zero")};
    for (const QString& path : paths) {
        CMacroParamFile file;
        Fill(file);
        EXPECT_FALSE(file.Read(path));
        ExpectCleared(file);
    }
    EXPECT_TRUE(Ui().calls.isEmpty());
}

TEST_F(CMacroParamFileFailureTest, MissingScriptFileShowsMessageAndKeepsLists)
{
    const QByteArray xml = "<Script><ScriptFile Name=\"C:\\js\\gone.js\"/><ParamsInput><Param Name=\"L\" Type=\"1\"/>"
                           "</ParamsInput><ParamsOutput><Param Name=\"W\"/></ParamsOutput></Script>";
    const QString path = Settings(xml);
    CMacroParamFile file;
    EXPECT_FALSE(file.Read(path));
    EXPECT_EQ(file.GetErrorText(), QStringLiteral("CMacroParamFile::Read出错:文件C:\\js\\gone.js读取失败"));
    ASSERT_EQ(Ui().calls.size(), 1);
    EXPECT_EQ(Ui().calls[0].text, QStringLiteral("不存在文件C:\\js\\gone.js"));
    EXPECT_TRUE(Ui().calls[0].caption.isEmpty());
    EXPECT_EQ(Ui().calls[0].style, UIFunction::MB_OK);
    CArray<CMacroParam> in, out;
    file.GetInputParams(in);
    file.GetOutputParams(out);
    ASSERT_EQ(in.GetSize(), 1);
    EXPECT_EQ(in[0].GetName(), QStringLiteral("L"));
    ASSERT_EQ(out.GetSize(), 1);
    EXPECT_EQ(file.GetFilePath(), path);
    EXPECT_EQ(file.GetScriptFile(), QStringLiteral("C:\\js\\gone.js"));
    EXPECT_TRUE(file.GetScript().isEmpty());
}

TEST_F(CMacroParamFileFailureTest, ScriptFileOnlyCountsAsFirstChild)
{
    const QByteArray notFirst[] = {
        "<Script><ParamsInput/><ScriptFile Name=\"C:\\s.js\"/></Script>",
        "<Script><!-- c --><ScriptFile Name=\"C:\\s.js\"/></Script>",
        "<Script><scriptfile Name=\"C:\\s.js\"/></Script>",
        "<Script/>",
        "<Script>text<ScriptFile Name=\"C:\\s.js\"/></Script>",
    };
    Script("exists");
    for (const QByteArray& xml : notFirst) {
        CMacroParamFile file;
        Ui().Clear();
        EXPECT_FALSE(file.Read(Settings(xml))) << xml.constData();
        EXPECT_EQ(file.GetErrorText(), QStringLiteral("CMacroParamFile::Read出错:文件读取失败"));
        EXPECT_TRUE(file.GetScriptFile().isEmpty());
        ASSERT_EQ(Ui().calls.size(), 1);
        EXPECT_EQ(Ui().calls[0].text, QStringLiteral("不存在文件"));
    }
}

TEST_F(CMacroParamFileFailureTest, ScriptFilePathFromBeforeIsKeptWhenTheFirstChildIsNotScriptFile)
{
    CMacroParamFile file;
    Fill(file); // script file C:\old.js
    const QString path = Settings("<Script><ParamsInput><Param Name=\"n\"/></ParamsInput></Script>");
    EXPECT_TRUE(file.Read(path));
    EXPECT_EQ(file.GetScriptFile(), QStringLiteral("C:\\old.js"));
    EXPECT_EQ(file.GetScript(), QStringLiteral("old script"));
    CArray<CMacroParam> in, out;
    file.GetInputParams(in);
    file.GetOutputParams(out);
    ASSERT_EQ(in.GetSize(), 1);
    EXPECT_EQ(in[0].GetName(), QStringLiteral("n"));
    EXPECT_TRUE(out.IsEmpty()); // lists are emptied before the walk
    EXPECT_EQ(file.GetErrorText(), QStringLiteral("earlier")); // a success does not clear it
}

TEST_F(CMacroParamFileFailureTest, SaveFailureKeepsWhatWasGiven)
{
    CArray<CMacroParam> inputs;
    inputs.Add(CMacroParam(QStringLiteral("L"), QStringLiteral("1"), QString()));
    const QString targets[] = {HomeFile("no/such/folder/m.xml"), QString(), Home()};
    for (const QString& target : targets) {
        CMacroParamFile file;
        file.SetFilePath(target);
        EXPECT_FALSE(file.Save(inputs, {}, QStringLiteral("C:\\never.js"), QStringLiteral("script")));
        EXPECT_EQ(file.GetErrorText(), QStringLiteral("CMacroParamFile::Save保存出错"));
        EXPECT_EQ(file.GetScript(), QStringLiteral("script"));
        EXPECT_EQ(file.GetScriptFile(), QStringLiteral("C:\\never.js"));
        CArray<CMacroParam> in;
        file.GetInputParams(in);
        ASSERT_EQ(in.GetSize(), 1);
        EXPECT_FALSE(QFile::exists(HomeFile("drives/c/never.js"))); // the script is not written
    }
}

TEST_F(CMacroParamFileFailureTest, SaveSucceedsWhenOnlyTheScriptFileCannotBeWritten)
{
    CMacroParamFile file;
    file.SetFilePath(HomeFile("ok.xml"));
    EXPECT_TRUE(file.Save({}, {}, QStringLiteral("C:\\missing\\folder\\s.js"), QStringLiteral("x")));
    EXPECT_TRUE(file.GetErrorText().isEmpty());
    EXPECT_FALSE(ReadBytes(HomeFile("ok.xml")).isEmpty());
}

TEST_F(CMacroParamFileFailureTest, ClearEmptiesEveryField)
{
    CMacroParamFile file;
    Fill(file);
    file.Clear();
    ExpectCleared(file);
}
