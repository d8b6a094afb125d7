#include "CDataSetXmlCodec.h"

#include "CDataSetTableBuilder.h"
#include "CDataSetXmlScanner.h"

#include <QByteArray>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace {

const QString kRoot = QStringLiteral("DataSet");

QByteArray Utf16LeBytes(const QString& text)
{
    QByteArray bytes;
    bytes.reserve(text.size() * 2);
    for (QChar c : text)
    {
        bytes.append(char(c.unicode() & 0xFF));
        bytes.append(char(c.unicode() >> 8));
    }
    return bytes;
}

// Literal CRs would come back as LF (XML end-of-line handling), so each one
// goes out as a character reference.
void WriteCellText(QXmlStreamWriter& w, const QString& text)
{
    if (!CDataSetXmlCodec::IsXmlSafe(text))
    {
        w.writeAttribute(QStringLiteral("encoding"), CDataSetXmlCodec::kBase64.toString());
        w.writeCharacters(QString::fromLatin1(Utf16LeBytes(text).toBase64()));
        return;
    }
    const QStringList pieces = text.split(QLatin1Char('\r'));
    for (qsizetype i = 0; i < pieces.size(); ++i)
    {
        if (i > 0)
            w.writeEntityReference(QStringLiteral("#13"));
        if (!pieces[i].isEmpty())
            w.writeCharacters(pieces[i]);
    }
}

void WriteRows(QXmlStreamWriter& w, const NDataModelDataSet& table)
{
    w.writeStartElement(QStringLiteral("Rows"));
    for (int row = 1; row <= table.GetRowCount(); ++row)
    {
        w.writeStartElement(QStringLiteral("Row"));
        for (int column = 0; column < table.GetFieldCount(); ++column)
        {
            if (table.IsNull(column, row))
                continue;
            w.writeStartElement(QStringLiteral("Cell"));
            w.writeAttribute(QStringLiteral("field"), table.GetFieldName(column));
            WriteCellText(w, table.GetAsString(column, row));
            w.writeEndElement();
        }
        w.writeEndElement();
    }
    w.writeEndElement();
}

// A strict walk over the document with a general XML parser: every element,
// attribute and text must be where the layout puts it.
class Parser
{
public:
    Parser(const QString& xml, CDataSetXmlCodec::Table& out) : m_r(xml), m_table(out) {}

    bool Run()
    {
        if (!NextElement() || m_r.name() != kRoot || !m_table.Root(Attr("version"), Attr("table")))
            return false;
        if (!NextElement() || m_r.name() != u"Fields" || !ReadFields())
            return false;
        if (!NextElement() || m_r.name() != u"Rows" || !ReadRows())
            return false;
        return AtEndOfElement() && AtEndOfDocument();
    }

private:
    std::optional<QStringView> Attr(const char* name) const
    {
        const QLatin1StringView key(name);
        if (!m_r.attributes().hasAttribute(key))
            return std::nullopt;
        return m_r.attributes().value(key);
    }

    // Moves to the next start element of the current level; false at the
    // level's end element, on stray text, or on a syntax error.
    bool NextElement()
    {
        while (Advance())
        {
            if (m_r.isStartElement())
                return true;
            if (m_r.isEndElement())
                return false;
        }
        return false;
    }

    // Skips what may stand between elements: whitespace, comments,
    // processing instructions. Anything else ends the walk.
    bool Advance()
    {
        m_r.readNext();
        while (!m_r.hasError() && !m_r.isStartElement() && !m_r.isEndElement())
        {
            const bool ignorable = m_r.isWhitespace() || m_r.isComment() || m_r.isProcessingInstruction()
                || m_r.isStartDocument();
            if (!ignorable)
                return false;
            m_r.readNext();
        }
        return !m_r.hasError();
    }

    bool AtEndOfElement() { return !NextElement() && !m_r.hasError() && m_r.isEndElement(); }

    bool AtEndOfDocument()
    {
        while (!m_r.atEnd())
        {
            m_r.readNext();
            const bool ignorable = m_r.isWhitespace() || m_r.isComment() || m_r.isProcessingInstruction()
                || m_r.isEndDocument();
            if (!ignorable && !m_r.hasError())
                return false;
        }
        return !m_r.hasError();
    }

    bool ReadFields()
    {
        while (NextElement())
        {
            if (m_r.name() != u"Field" || !m_table.Field(Attr("name"), Attr("type"), Attr("width")) || !AtEndOfElement())
                return false;
        }
        return !m_r.hasError() && m_r.isEndElement();
    }

    bool ReadRows()
    {
        while (NextElement())
        {
            if (m_r.name() != u"Row" || !ReadRow())
                return false;
        }
        return !m_r.hasError() && m_r.isEndElement();
    }

    bool ReadRow()
    {
        m_table.BeginRow();
        while (NextElement())
        {
            if (m_r.name() != u"Cell")
                return false;
            const std::optional<QStringView> field = Attr("field"), encoding = Attr("encoding");
            // Copied: reading on moves the reader's attributes.
            const std::optional<QString> fieldText = field ? std::optional(field->toString()) : std::nullopt;
            const std::optional<QString> encodingText = encoding ? std::optional(encoding->toString()) : std::nullopt;
            QString raw;
            if (!ReadCellText(raw) || !m_table.Cell(fieldText, encodingText, raw))
                return false;
        }
        if (m_r.hasError() || !m_r.isEndElement())
            return false;
        m_table.EndRow();
        return true;
    }

    // Text of the current Cell up to its end element; no child elements.
    bool ReadCellText(QString& raw)
    {
        for (m_r.readNext(); !m_r.hasError() && !m_r.isEndElement(); m_r.readNext())
        {
            if (m_r.isCharacters())
                raw += m_r.text();
            else if (!m_r.isComment() && !m_r.isProcessingInstruction())
                return false;
        }
        return !m_r.hasError();
    }

    QXmlStreamReader m_r;
    CDataSetTableBuilder m_table;
};

} // namespace

bool CDataSetXmlCodec::IsKnownType(int type)
{
    return type == FT_String || type == FT_Integer || type == FT_Double || type == FT_LongString;
}

bool CDataSetXmlCodec::IsXmlChar(char32_t c)
{
    return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) || (c >= 0xE000 && c <= 0xFFFD)
        || (c >= 0x10000 && c <= 0x10FFFF);
}

bool CDataSetXmlCodec::IsXmlSafe(const QString& text)
{
    for (qsizetype i = 0; i < text.size(); ++i)
    {
        char32_t c = text[i].unicode();
        if (QChar::isHighSurrogate(c) && i + 1 < text.size() && text[i + 1].isLowSurrogate())
        {
            c = QChar::surrogateToUcs4(text[i].unicode(), text[i + 1].unicode());
            ++i;
        }
        // A surrogate left alone is no character at all.
        if (!IsXmlChar(c))
            return false;
    }
    return true;
}

bool CDataSetXmlCodec::Write(const NDataModelDataSet& table, QString& xml)
{
    if (!IsXmlSafe(table.GetTableName()))
        return false;
    for (int column = 0; column < table.GetFieldCount(); ++column)
    {
        if (!IsXmlSafe(table.GetFieldName(column)))
            return false;
    }
    QString text;
    QXmlStreamWriter w(&text);
    w.setAutoFormatting(true);
    w.setAutoFormattingIndent(1);
    w.writeStartElement(kRoot);
    w.writeAttribute(QStringLiteral("version"), kVersion.toString());
    w.writeAttribute(QStringLiteral("table"), table.GetTableName());
    w.writeStartElement(QStringLiteral("Fields"));
    for (int column = 0; column < table.GetFieldCount(); ++column)
    {
        w.writeEmptyElement(QStringLiteral("Field"));
        w.writeAttribute(QStringLiteral("name"), table.GetFieldName(column));
        w.writeAttribute(QStringLiteral("type"), QString::number(int(table.GetFieldDataType(column))));
        w.writeAttribute(QStringLiteral("width"), QString::number(table.GetFieldWidth(column)));
    }
    w.writeEndElement();
    WriteRows(w, table);
    w.writeEndElement();
    if (w.hasError())
        return false;
    xml = text.trimmed() + QLatin1Char('\n');
    return true;
}

bool CDataSetXmlCodec::Read(const QString& xml, Table& out)
{
    // Nearly every buffer is in the form Write gives it; the general parser
    // takes what the scanner leaves.
    out = Table();
    if (CDataSetXmlScanner::Read(xml, out))
        return true;
    return ReadWithXmlParser(xml, out);
}

bool CDataSetXmlCodec::ReadWithXmlParser(const QString& xml, Table& out)
{
    out = Table();
    Parser parser(xml, out);
    return parser.Run();
}
