#include "CJoinedTextLines.h"

#include <QRegularExpression>

int CJoinedTextLines::CountLines(const QString& text)
{
    int lines = 1;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text.at(i).unicode();
        if (c == u'\r' && i + 1 < text.size() && text.at(i + 1) == QLatin1Char('\n'))
            ++i;
        if (c == u'\r' || c == u'\n' || c == 0x2028 || c == 0x2029)
            ++lines;
    }
    return lines;
}

void CJoinedTextLines::Add(const QString& label, const QString& text)
{
    const int lines = CountLines(text);
    m_pieces.append({label, m_nextLine, lines});
    m_nextLine += lines;
}

QString CJoinedTextLines::Locate(int line) const
{
    for (const Piece& piece : m_pieces) {
        if (line >= piece.firstLine && line < piece.firstLine + piece.lines)
            return QStringLiteral("%1 line %2").arg(piece.label).arg(line - piece.firstLine + 1);
    }
    return QString();
}

int CJoinedTextLines::ErrorLine(const QString& error)
{
    static const QRegularExpression tail(QStringLiteral("; in line (\\d+)$"));
    const QRegularExpressionMatch match = tail.match(error);
    return match.hasMatch() ? match.captured(1).toInt() : 0;
}
