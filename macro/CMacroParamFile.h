#pragma once
#include "CArray.h"
#include "CMacroParam.h"

#include <QString>

class QDomElement;
class QXmlStreamWriter;

// A macro kept outside the database: an XML settings file with the input and
// output parameters and the path of a separate script text file.
//
//   <Script><ScriptFile Name="..."/>
//     <ParamsInput><Param Name=".." Value=".." Description=".." Type="1"/>...</ParamsInput>
//     <ParamsOutput>...</ParamsOutput></Script>
//
// written without declaration or indentation, UTF-8, attributes in that order.
class CMacroParamFile
{
public:
    CMacroParamFile() = default;
    virtual ~CMacroParamFile() = default;

    // Reads the settings file and then its script file. A file that is missing
    // or not XML clears the whole object (error text and path included); a
    // script file that cannot be read keeps the lists and sets the error text.
    bool Read(const QString& path);

    // Writes the settings file to the path held (SetFilePath or an earlier
    // Read), then the script file with WriteTextFile, whose result is not
    // looked at. False with "CMacroParamFile::Save保存出错" when the settings
    // file cannot be written; the given values are kept either way.
    bool Save(const CArray<CMacroParam>& inputs, const CArray<CMacroParam>& outputs,
              const QString& scriptFile, const QString& script);

    void SetFilePath(const QString& path) { m_filePath = path; }
    const QString& GetFilePath() const { return m_filePath; }
    void GetInputParams(CArray<CMacroParam>& params) const { params.Copy(m_inputs); }
    void GetOutputParams(CArray<CMacroParam>& params) const { params.Copy(m_outputs); }
    const QString& GetScript() const { return m_script; }
    const QString& GetScriptFile() const { return m_scriptFile; }
    const QString& GetErrorText() const { return m_errorText; }
    void SetErrorText(const QString& text) { m_errorText = text; }

    void Clear();

    // The document Save writes, as bytes.
    static QByteArray BuildDocument(const CArray<CMacroParam>& inputs, const CArray<CMacroParam>& outputs,
                                    const QString& scriptFile);

private:
    void ReadDocumentElement(const QDomElement& root);
    static void ReadParamList(const QDomElement& list, CArray<CMacroParam>& params);
    static void WriteParamList(QXmlStreamWriter& writer, const QString& tag, const CArray<CMacroParam>& params);

    QString m_filePath;
    QString m_scriptFile;
    QString m_script;
    CArray<CMacroParam> m_inputs;
    CArray<CMacroParam> m_outputs;
    QString m_errorText;
};
