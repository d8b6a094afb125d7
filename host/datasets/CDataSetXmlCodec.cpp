#include "CDataSetXmlCodec.h"

#include <QByteArray>
#include <QHash>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace {

const QString kRoot = QStringLiteral("DataSet");
const QString kVersion = QStringLiteral("1");
const QString kBase64 = QStringLiteral("base64");

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

bool FromUtf16LeBase64(QStringView encoded, QString& text)
{
    const auto result = QByteArray::fromBase64Encoding(encoded.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    if (!result || result.decoded.size() % 2 != 0)
        return false;
    const QByteArray& bytes = result.decoded;
    text.resize(bytes.size() / 2);
    for (qsizetype i = 0; i < text.size(); ++i)
        text[i] = QChar(char16_t(uchar(bytes[2 * i]) | (uchar(bytes[2 * i + 1]) << 8)));
    return true;
}

// Literal CRs would come back as LF (XML end-of-line handling), so each one
// goes out as a character reference.
void WriteCellText(QXmlStreamWriter& w, const QString& text)
{
    if (!CDataSetXmlCodec::IsXmlSafe(text))
    {
        w.writeAttribute(QStringLiteral("encoding"), kBase64);
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

// A strict walk over the document: every element, attribute and text must be
// where the layout puts it.
class Parser
{
public:
    Parser(const QString& xml, CDataSetXmlCodec::Table& out) : m_r(xml), m_out(out) {}

    bool Run()
    {
        if (!NextElement() || m_r.name() != kRoot || Attr("version") != kVersion)
            return false;
        m_out.name = Attr("table").toString();
        if (!NextElement() || m_r.name() != u"Fields" || !ReadFields())
            return false;
        if (!NextElement() || m_r.name() != u"Rows" || !ReadRows())
            return false;
        return AtEndOfElement() && AtEndOfDocument();
    }

private:
    QStringView Attr(const char* name) const { return m_r.attributes().value(QLatin1StringView(name)); }

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
            if (m_r.name() != u"Field" || !ReadField() || !AtEndOfElement())
                return false;
        }
        return !m_r.hasError() && m_r.isEndElement();
    }

    bool ReadField()
    {
        CDataSetXmlCodec::Field field;
        field.name = Attr("name").toString();
        bool typeOk = false;
        const int type = Attr("type").toInt(&typeOk);
        bool widthOk = true;
        if (m_r.attributes().hasAttribute(QStringLiteral("width")))
            field.width = Attr("width").toInt(&widthOk);
        if (field.name.isEmpty() || !typeOk || !widthOk || !CDataSetXmlCodec::IsKnownType(type))
            return false;
        if (m_columns.contains(field.name))
            return false;
        field.type = FieldType(type);
        m_columns.insert(field.name, int(m_out.fields.size()));
        m_out.fields.push_back(field);
        return true;
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
        std::vector<std::optional<QString>> row(m_out.fields.size());
        while (NextElement())
        {
            if (m_r.name() != u"Cell")
                return false;
            const int column = m_columns.value(Attr("field").toString(), -1);
            if (column < 0 || row[size_t(column)].has_value())
                return false;
            const bool base64 = m_r.attributes().hasAttribute(QStringLiteral("encoding"));
            if (base64 && Attr("encoding") != kBase64)
                return false;
            QString text;
            if (!ReadCellText(base64, text))
                return false;
            row[size_t(column)] = text;
        }
        if (m_r.hasError() || !m_r.isEndElement())
            return false;
        m_out.rows.push_back(std::move(row));
        return true;
    }

    // Text of the current Cell up to its end element; no child elements.
    bool ReadCellText(bool base64, QString& text)
    {
        QString raw;
        for (m_r.readNext(); !m_r.hasError() && !m_r.isEndElement(); m_r.readNext())
        {
            if (m_r.isCharacters())
                raw += m_r.text();
            else if (!m_r.isComment() && !m_r.isProcessingInstruction())
                return false;
        }
        if (m_r.hasError())
            return false;
        if (!base64)
        {
            text = raw;
            return true;
        }
        return FromUtf16LeBase64(raw, text);
    }

    QXmlStreamReader m_r;
    CDataSetXmlCodec::Table& m_out;
    QHash<QString, int> m_columns;
};

} // namespace

bool CDataSetXmlCodec::IsKnownType(int type)
{
    return type == FT_String || type == FT_Integer || type == FT_Double || type == FT_LongString;
}

bool CDataSetXmlCodec::IsXmlSafe(const QString& text)
{
    for (qsizetype i = 0; i < text.size(); ++i)
    {
        const char16_t c = text[i].unicode();
        if (c < 0x20 && c != u'\t' && c != u'\n' && c != u'\r')
            return false;
        if (c == 0xFFFE || c == 0xFFFF)
            return false;
        if (QChar::isLowSurrogate(c))
            return false;
        if (QChar::isHighSurrogate(c))
        {
            if (i + 1 >= text.size() || !text[i + 1].isLowSurrogate())
                return false;
            ++i;
        }
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
    w.writeAttribute(QStringLiteral("version"), kVersion);
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
    out = Table();
    Parser parser(xml, out);
    return parser.Run();
}
