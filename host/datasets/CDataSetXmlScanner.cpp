#include "CDataSetXmlScanner.h"

#include "CDataSetTableBuilder.h"

#include <algorithm>
#include <cctype>

namespace {

bool IsBlank(char16_t c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r';
}

// Needs no look at its neighbours: most characters of a document.
bool IsPlain(char16_t c)
{
    return (c >= 0x20 && c < 0xD800 && c != u'<' && c != u'&' && c != u'>' && c != u'"' && c != u'\'')
        || (c >= 0xE000 && c < 0xFFFE);
}

std::optional<QStringView> View(const std::optional<QString>& value)
{
    return value ? std::optional<QStringView>(*value) : std::nullopt;
}

} // namespace

bool CDataSetXmlScanner::Read(const QString& xml, CDataSetXmlCodec::Table& out)
{
    out = CDataSetXmlCodec::Table();
    CDataSetTableBuilder table(out);
    CDataSetXmlScanner scanner(xml);
    return scanner.Document(table);
}

bool CDataSetXmlScanner::Document(CDataSetTableBuilder& table)
{
    Attributes root, none;
    bool empty = false;
    SkipBlanks();
    if (!StartTag(u"DataSet", {u"version", u"table"}, root, empty) || empty
        || !table.Root(View(root.values[0]), View(root.values[1])))
        return false;
    SkipBlanks();
    if (!StartTag(u"Fields", {}, none, empty) || (!empty && !FieldList(table)))
        return false;
    SkipBlanks();
    if (!StartTag(u"Rows", {}, none, empty) || (!empty && !RowList(table)))
        return false;
    SkipBlanks();
    if (!EndTag(u"DataSet"))
        return false;
    SkipBlanks();
    return m_at == m_text.size();
}

bool CDataSetXmlScanner::FieldList(CDataSetTableBuilder& table)
{
    for (SkipBlanks(); !At(u"</"); SkipBlanks())
    {
        Attributes field;
        bool empty = false;
        if (!StartTag(u"Field", {u"name", u"type", u"width"}, field, empty)
            || !table.Field(View(field.values[0]), View(field.values[1]), View(field.values[2])))
            return false;
        if (!empty && (SkipBlanks(), !EndTag(u"Field")))
            return false;
    }
    return EndTag(u"Fields");
}

bool CDataSetXmlScanner::RowList(CDataSetTableBuilder& table)
{
    for (SkipBlanks(); !At(u"</"); SkipBlanks())
    {
        if (!Row(table))
            return false;
    }
    return EndTag(u"Rows");
}

bool CDataSetXmlScanner::Row(CDataSetTableBuilder& table)
{
    Attributes none;
    bool empty = false;
    if (!StartTag(u"Row", {}, none, empty))
        return false;
    table.BeginRow();
    for (SkipBlanks(); !empty && !At(u"</"); SkipBlanks())
    {
        Attributes cell;
        bool emptyCell = false;
        QString text;
        if (!StartTag(u"Cell", {u"field", u"encoding"}, cell, emptyCell)
            || (!emptyCell && (!Text(text) || !EndTag(u"Cell")))
            || !table.Cell(View(cell.values[0]), View(cell.values[1]), text))
            return false;
    }
    if (!empty && !EndTag(u"Row"))
        return false;
    table.EndRow();
    return true;
}

void CDataSetXmlScanner::SkipBlanks()
{
    while (m_at < m_text.size() && IsBlank(m_text[m_at].unicode()))
        ++m_at;
}

bool CDataSetXmlScanner::At(QStringView what) const
{
    return m_text.sliced(m_at).startsWith(what);
}

bool CDataSetXmlScanner::StartTag(QStringView name, std::initializer_list<QStringView> names,
                                  Attributes& attributes, bool& empty)
{
    if (!At(u"<") || !m_text.sliced(m_at + 1).startsWith(name))
        return false;
    m_at += 1 + name.size();
    for (;;)
    {
        const qsizetype blanksFrom = m_at;
        SkipBlanks();
        if (At(u">") || At(u"/>"))
        {
            empty = At(u"/>");
            m_at += empty ? 2 : 1;
            return true;
        }
        // Attributes stand apart from the name and from each other.
        if (m_at == blanksFrom)
            return false;
        qsizetype end = m_at;
        while (end < m_text.size() && m_text[end] != u'=' && !IsBlank(m_text[end].unicode()) && m_text[end] != u'>'
               && m_text[end] != u'/')
            ++end;
        const QStringView attribute = m_text.sliced(m_at, end - m_at);
        std::size_t index = 0;
        while (index < names.size() && names.begin()[index] != attribute)
            ++index;
        if (index == names.size() || attributes.values[index])
            return false;
        m_at = end;
        SkipBlanks();
        if (!At(u"="))
            return false;
        ++m_at;
        SkipBlanks();
        QString value;
        if (!Value(value))
            return false;
        attributes.values[index] = value;
    }
}

bool CDataSetXmlScanner::EndTag(QStringView name)
{
    if (!At(u"</") || !m_text.sliced(m_at + 2).startsWith(name))
        return false;
    m_at += 2 + name.size();
    SkipBlanks();
    if (!At(u">"))
        return false;
    ++m_at;
    return true;
}

bool CDataSetXmlScanner::Value(QString& value)
{
    if (m_at >= m_text.size() || (m_text[m_at] != u'"' && m_text[m_at] != u'\''))
        return false;
    const QChar quote = m_text[m_at++];
    while (AppendPlain(value), m_at < m_text.size() && m_text[m_at] != quote)
    {
        const char16_t c = m_text[m_at].unicode();
        // XML turns tabs and line ends in attribute values into spaces.
        if (c == u'<' || c == u'\t' || c == u'\n' || c == u'\r')
            return false;
        if (!(c == u'&' ? Reference(value) : Character(value)))
            return false;
    }
    if (m_at >= m_text.size())
        return false;
    ++m_at;
    return true;
}

bool CDataSetXmlScanner::Text(QString& text)
{
    while (AppendPlain(text), m_at < m_text.size() && m_text[m_at] != u'<')
    {
        const char16_t c = m_text[m_at].unicode();
        // A literal CR would come back as LF; "]]>" is not allowed in text.
        if (c == u'\r' || (c == u'>' && m_at >= 2 && m_text[m_at - 1] == u']' && m_text[m_at - 2] == u']'))
            return false;
        if (!(c == u'&' ? Reference(text) : Character(text)))
            return false;
    }
    return m_at < m_text.size();
}

void CDataSetXmlScanner::AppendPlain(QString& text)
{
    qsizetype end = m_at;
    while (end < m_text.size() && IsPlain(m_text[end].unicode()))
        ++end;
    text.append(m_text.sliced(m_at, end - m_at));
    m_at = end;
}

bool CDataSetXmlScanner::Reference(QString& text)
{
    // The longest reference read here is "&#x10FFFF;": looking no further
    // keeps a text of many "&" and no ";" from being scanned again and again.
    const qsizetype semicolon = m_text.sliced(m_at, std::min<qsizetype>(11, m_text.size() - m_at)).indexOf(u';');
    if (semicolon < 0)
        return false;
    const QStringView name = m_text.sliced(m_at + 1, semicolon - 1);
    static constexpr struct { QStringView name; char16_t c; } kNamed[] = {
        {u"lt", u'<'}, {u"gt", u'>'}, {u"amp", u'&'}, {u"quot", u'"'}, {u"apos", u'\''}};
    char32_t code = 0;
    bool ok = false;
    for (const auto& named : kNamed)
    {
        if (name == named.name)
        {
            code = named.c;
            ok = true;
        }
    }
    if (!ok && name.startsWith(u'#'))
    {
        // Digits only: toUInt would also take signs and blanks.
        const bool hex = name.startsWith(u"#x");
        const QStringView digits = name.sliced(hex ? 2 : 1);
        ok = !digits.isEmpty() && std::all_of(digits.begin(), digits.end(), [hex](QChar c) {
            return c.unicode() < 0x80 && (hex ? std::isxdigit(c.unicode()) : std::isdigit(c.unicode()));
        });
        if (ok)
            code = digits.toUInt(&ok, hex ? 16 : 10);
    }
    if (!ok || !CDataSetXmlCodec::IsXmlChar(code))
        return false;
    text += QString::fromUcs4(&code, 1);
    m_at += semicolon + 1;
    return true;
}

bool CDataSetXmlScanner::Character(QString& text)
{
    char32_t code = m_text[m_at].unicode();
    qsizetype units = 1;
    if (QChar::isHighSurrogate(code) && m_at + 1 < m_text.size() && m_text[m_at + 1].isLowSurrogate())
    {
        code = QChar::surrogateToUcs4(m_text[m_at].unicode(), m_text[m_at + 1].unicode());
        units = 2;
    }
    // A surrogate left alone is no character at all.
    if (!CDataSetXmlCodec::IsXmlChar(code))
        return false;
    text.append(m_text.sliced(m_at, units));
    m_at += units;
    return true;
}
