#include "CMacroParamFile.h"

#include "CAtomicFile.h"
#include "NativePath.h"
#include "TextFile.h"

#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QXmlStreamWriter>
#include <climits>

namespace {

// Like the C runtime's atoi: blanks, an optional sign, then the leading
// decimal digits; no digits give 0, overflow saturates.
int LeadingInteger(const QString& text)
{
    qsizetype i = 0;
    while (i < text.size() && (text[i] == u' ' || (text[i] >= u'\t' && text[i] <= u'\r')))
        ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == u'-' || text[i] == u'+'))
        negative = text[i++] == u'-';
    long long value = 0;
    for (; i < text.size() && text[i] >= u'0' && text[i] <= u'9'; ++i) {
        value = value * 10 + (text[i].unicode() - u'0');
        if (value > static_cast<long long>(INT_MAX) + 1)
            break;
    }
    if (negative)
        value = -value;
    if (value > INT_MAX)
        return INT_MAX;
    if (value < INT_MIN)
        return INT_MIN;
    return static_cast<int>(value);
}

} // namespace

void CMacroParamFile::Clear()
{
    m_errorText.clear();
    m_inputs.SetSize(0);
    m_outputs.SetSize(0);
    m_script.clear();
    m_scriptFile.clear();
    m_filePath.clear();
}

bool CMacroParamFile::Read(const QString& path)
{
    m_filePath = path;
    QDomDocument document;
    const QString native = NativePath::Map(path);
    QFile file(native);
    const bool loaded = !path.isEmpty() && QFileInfo(native).isFile() && file.open(QIODevice::ReadOnly)
        && document.setContent(&file);
    m_inputs.SetSize(0);
    m_outputs.SetSize(0);
    const QDomElement root = document.documentElement();
    if (!loaded || root.isNull()) {
        // A document that did not load has no element to read; the object is
        // reset, and the clear takes the message with it.
        SetErrorText(QStringLiteral("CMacroParamFile::Read保存出错"));
        Clear();
        return false;
    }
    ReadDocumentElement(root);
    if (ReadTextFile(m_scriptFile, m_script))
        return true;
    m_errorText = QStringLiteral("CMacroParamFile::Read出错:文件") + m_scriptFile + QStringLiteral("读取失败");
    return false;
}

void CMacroParamFile::ReadDocumentElement(const QDomElement& root)
{
    if (!root.hasChildNodes())
        return;
    // Only the first child names the script file; one anywhere else is ignored.
    const QDomNode first = root.firstChild();
    if (first.nodeName() == QLatin1String("ScriptFile"))
        m_scriptFile = first.toElement().attribute(QStringLiteral("Name"));
    for (QDomNode child = first; !child.isNull(); child = child.nextSibling()) {
        const QString name = child.nodeName();
        if (name == QLatin1String("ParamsInput"))
            ReadParamList(child.toElement(), m_inputs);
        else if (name == QLatin1String("ParamsOutput"))
            ReadParamList(child.toElement(), m_outputs);
    }
}

void CMacroParamFile::ReadParamList(const QDomElement& list, CArray<CMacroParam>& params)
{
    // Every child counts as a parameter, whatever it is; missing attributes
    // leave the defaults.
    for (QDomNode child = list.firstChild(); !child.isNull(); child = child.nextSibling()) {
        const QDomElement element = child.toElement();
        CMacroParam param(element.attribute(QStringLiteral("Name")), element.attribute(QStringLiteral("Value")),
                          element.attribute(QStringLiteral("Description")));
        param.SetDataType(static_cast<std::uint32_t>(LeadingInteger(element.attribute(QStringLiteral("Type")))));
        params.Add(param);
    }
}

bool CMacroParamFile::Save(const CArray<CMacroParam>& inputs, const CArray<CMacroParam>& outputs,
                           const QString& scriptFile, const QString& script)
{
    m_inputs.Copy(inputs);
    m_outputs.Copy(outputs);
    m_scriptFile = scriptFile;
    m_script = script;
    const QByteArray document = BuildDocument(m_inputs, m_outputs, m_scriptFile);
    if (m_filePath.isEmpty() || !CAtomicFile::Write(NativePath::Map(m_filePath), document)) {
        m_errorText = QStringLiteral("CMacroParamFile::Save保存出错");
        return false;
    }
    WriteTextFile(m_scriptFile, m_script);
    return true;
}

QByteArray CMacroParamFile::BuildDocument(const CArray<CMacroParam>& inputs, const CArray<CMacroParam>& outputs,
                                          const QString& scriptFile)
{
    QByteArray bytes;
    QXmlStreamWriter writer(&bytes);
    writer.setAutoFormatting(false);
    writer.writeStartElement(QStringLiteral("Script"));
    writer.writeEmptyElement(QStringLiteral("ScriptFile"));
    writer.writeAttribute(QStringLiteral("Name"), scriptFile);
    WriteParamList(writer, QStringLiteral("ParamsInput"), inputs);
    WriteParamList(writer, QStringLiteral("ParamsOutput"), outputs);
    writer.writeEndElement();
    return bytes;
}

void CMacroParamFile::WriteParamList(QXmlStreamWriter& writer, const QString& tag, const CArray<CMacroParam>& params)
{
    writer.writeStartElement(tag);
    for (const CMacroParam& param : params) {
        writer.writeEmptyElement(QStringLiteral("Param"));
        writer.writeAttribute(QStringLiteral("Name"), param.GetName());
        writer.writeAttribute(QStringLiteral("Value"), param.GetValue());
        writer.writeAttribute(QStringLiteral("Description"), param.GetDescription());
        writer.writeAttribute(QStringLiteral("Type"), QString::number(param.GetDataType()));
    }
    writer.writeEndElement();
}
