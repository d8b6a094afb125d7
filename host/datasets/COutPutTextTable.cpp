#include "COutPutTextTable.h"

#include "QxMfcFun.h"

namespace {

const QString kEol = QStringLiteral("\r\n");

bool IsWide(char32_t c)
{
    return (c >= 0x1100 && c <= 0x115F) || (c >= 0x2E80 && c <= 0x303E) || (c >= 0x3041 && c <= 0x33FF)
        || (c >= 0x3400 && c <= 0x4DBF) || (c >= 0x4E00 && c <= 0x9FFF) || (c >= 0xA000 && c <= 0xA4CF)
        || (c >= 0xAC00 && c <= 0xD7A3) || (c >= 0xF900 && c <= 0xFAFF) || (c >= 0xFE30 && c <= 0xFE4F)
        || (c >= 0xFF00 && c <= 0xFF60) || (c >= 0xFFE0 && c <= 0xFFE6) || (c >= 0x1F300 && c <= 0x1F64F)
        || (c >= 0x1F900 && c <= 0x1F9FF) || (c >= 0x20000 && c <= 0x2FFFD) || (c >= 0x30000 && c <= 0x3FFFD);
}

QString Printable(const QString& text)
{
    QString out = text;
    for (QChar& c : out)
    {
        if (c.unicode() < 0x20 || c.unicode() == 0x7F)
            c = QLatin1Char(' ');
    }
    return out;
}

QString Border(const QList<int>& widths)
{
    QString line = QStringLiteral("+");
    for (int width : widths)
        line += QString(width + 2, QLatin1Char('-')) + QLatin1Char('+');
    return line + kEol;
}

} // namespace

void COutPutTextTable::AddTextNode(const QString& title)
{
    m_titles.append(Printable(title));
}

void COutPutTextTable::AddNodeValue(const QString& value)
{
    m_values.append(Printable(value));
}

void COutPutTextTable::Clear()
{
    m_titles.clear();
    m_values.clear();
}

int COutPutTextTable::GetRowCount() const
{
    const int columns = GetColumnCount();
    return columns == 0 ? 0 : int((m_values.size() + columns - 1) / columns);
}

int COutPutTextTable::DisplayWidth(const QString& text)
{
    int width = 0;
    for (char32_t c : text.toUcs4())
        width += IsWide(c) ? 2 : 1;
    return width;
}

QString COutPutTextTable::Cell(int row, int column) const
{
    const qsizetype index = qsizetype(row) * GetColumnCount() + column;
    return index < m_values.size() ? m_values[index] : QString();
}

QString COutPutTextTable::Line(const QStringList& cells, const QList<int>& widths) const
{
    QString line = QStringLiteral("|");
    for (qsizetype i = 0; i < widths.size(); ++i)
    {
        const int pad = widths[i] - DisplayWidth(cells[i]);
        line += QLatin1Char(' ') + cells[i] + QString(pad + 1, QLatin1Char(' ')) + QLatin1Char('|');
    }
    return line + kEol;
}

QString COutPutTextTable::ToText() const
{
    const int columns = GetColumnCount();
    if (columns == 0)
        return QString();
    const int rows = GetRowCount();
    QList<int> widths;
    for (int c = 0; c < columns; ++c)
    {
        int width = DisplayWidth(m_titles[c]);
        for (int r = 0; r < rows; ++r)
            width = qMax(width, DisplayWidth(Cell(r, c)));
        widths.append(width);
    }
    const QString border = Border(widths);
    QString text = border + Line(m_titles, widths) + border;
    for (int r = 0; r < rows; ++r)
    {
        QStringList cells;
        for (int c = 0; c < columns; ++c)
            cells.append(Cell(r, c));
        text += Line(cells, widths);
    }
    if (rows > 0)
        text += border;
    return text;
}

bool COutPutTextTable::Print2File(const QString& path) const
{
    return QxMfc::Fun::AppendCString2File(path, ToText());
}
