#include "CJsPieceText.h"

namespace
{
bool IsLineBreak(QChar c)
{
    return c == u'\n' || c == u'\r' || c == QChar(0x2028) || c == QChar(0x2029);
}

bool IsWordChar(QChar c)
{
    return c.isLetterOrNumber() || c == u'_' || c == u'$' || c.isMark() || c.isSurrogate() || c == QChar(0x200c)
           || c == QChar(0x200d);
}

bool IsBlank(QChar c)
{
    return c.isSpace() || c == QChar(0xfeff);
}
} // namespace

int CJsPieceText::LineBreaks(const QString& text)
{
    int count = 0;
    for (qsizetype i = 0; i < text.size(); ++i)
    {
        if (!IsLineBreak(text[i]))
            continue;
        if (text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n')
            ++i;
        ++count;
    }
    return count;
}

QSet<QString> CJsPieceText::Words(const QString& text)
{
    QSet<QString> words;
    qsizetype i = 0;
    while (i < text.size())
    {
        if (!IsWordChar(text[i]))
        {
            ++i;
            continue;
        }
        const qsizetype start = i;
        while (i < text.size() && IsWordChar(text[i]))
            ++i;
        // Digits alone are numbers, never names.
        if (!text[start].isDigit())
            words.insert(text.mid(start, i - start));
    }
    return words;
}

qsizetype CJsPieceText::FirstSignificant(const QString& text)
{
    qsizetype i = 0;
    while (i < text.size())
    {
        if (IsBlank(text[i]))
            ++i;
        else if (text.mid(i, 2) == QLatin1String("//"))
        {
            while (i < text.size() && !IsLineBreak(text[i]))
                ++i;
        }
        else if (text.mid(i, 2) == QLatin1String("/*"))
        {
            const qsizetype end = text.indexOf(QLatin1String("*/"), i + 2);
            if (end < 0)
                return i; // unterminated: the piece fails on its own anyway
            i = end + 2;
        }
        else
            break;
    }
    return i;
}

bool CJsPieceText::StartsWithString(const QString& text)
{
    const qsizetype i = FirstSignificant(text);
    return i < text.size() && (text[i] == u'"' || text[i] == u'\'');
}

bool CJsPieceText::StartsAmbiguously(const QString& text)
{
    const qsizetype i = FirstSignificant(text);
    if (i >= text.size())
        return false;
    const QChar c = text[i];
    if (c == u';' || c == u'{' || (IsWordChar(c) && c != u'\\'))
    {
        qsizetype end = i;
        while (end < text.size() && IsWordChar(text[end]))
            ++end;
        const QStringView word = QStringView(text).mid(i, end - i);
        return word == u"in" || word == u"instanceof";
    }
    return true;
}

bool CJsPieceText::MayEndWithLet(const QString& text, const QSet<QString>& words)
{
    qsizetype end = text.size();
    while (end > 0 && IsBlank(text[end - 1]))
        --end;
    const QStringView trimmed = QStringView(text).left(end);
    if (trimmed.endsWith(u"let") && (end == 3 || !IsWordChar(trimmed[end - 4])))
        return true;
    // A comment at the end may hide it; only a piece that mentions "let" at
    // all is in doubt then.
    const qsizetype lineStart = trimmed.lastIndexOf(u'\n') + 1;
    const bool commentAtEnd = trimmed.endsWith(u"*/") || trimmed.mid(lineStart).contains(u"//");
    return commentAtEnd && words.contains(QStringLiteral("let"));
}
