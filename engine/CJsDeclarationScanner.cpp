#include "CJsDeclarationScanner.h"

#include <QSet>

namespace
{
bool IsLineBreak(QChar c)
{
    return c == u'\n' || c == u'\r' || c == QChar(0x2028) || c == QChar(0x2029);
}

bool IsWordChar(QChar c)
{
    return c.isLetterOrNumber() || c == u'_' || c == u'$' || c == u'\\' || c.isMark() || c.isSurrogate()
           || c == QChar(0x200c) || c == QChar(0x200d);
}

// After these words an operand comes, so a slash starts a regular expression.
const QSet<QString> kOperandWords = {QStringLiteral("return"), QStringLiteral("typeof"), QStringLiteral("case"),
                                     QStringLiteral("do"),     QStringLiteral("else"),   QStringLiteral("in"),
                                     QStringLiteral("of"),     QStringLiteral("new"),    QStringLiteral("delete"),
                                     QStringLiteral("void"),   QStringLiteral("throw"),  QStringLiteral("instanceof"),
                                     QStringLiteral("yield"),  QStringLiteral("await")};
} // namespace

bool CJsDeclarationScanner::Scan(const QString& text, std::vector<Declaration>& declarations)
{
    declarations.clear();
    CJsDeclarationScanner scanner(text);
    qsizetype from = 0;
    for (;;)
    {
        scanner.SkipBlanksAndComments();
        if (scanner.m_at < text.size() && text[scanner.m_at] == u';')
        {
            from = ++scanner.m_at;
            continue;
        }
        if (scanner.m_at >= text.size())
            return !declarations.empty();
        Declaration declaration;
        declaration.from = from;
        if (!scanner.ReadDeclaration(declaration))
            return false;
        from = declaration.to;
        declarations.push_back(declaration);
    }
}

QString CJsDeclarationScanner::Skeleton(const QString& text, const std::vector<Declaration>& declarations)
{
    QString skeleton = text;
    for (const Declaration& d : declarations)
    {
        for (qsizetype i = d.bodyOpen + 1; i + 1 < d.to; ++i)
        {
            if (!IsLineBreak(skeleton[i]))
                skeleton[i] = u' ';
        }
    }
    return skeleton;
}

bool CJsDeclarationScanner::ReadDeclaration(Declaration& declaration)
{
    QString word = Word();
    if (word == u"async")
    {
        SkipBlanksAndComments();
        word = Word();
    }
    if (word != u"function")
        return false;
    SkipBlanksAndComments();
    if (m_at < m_text.size() && m_text[m_at] == u'*')
    {
        ++m_at;
        SkipBlanksAndComments();
    }
    declaration.name = Word();
    SkipBlanksAndComments();
    if (declaration.name.isEmpty() || m_at >= m_text.size() || m_text[m_at] != u'(' || !Group())
        return false;
    SkipBlanksAndComments();
    declaration.bodyOpen = m_at;
    if (m_at >= m_text.size() || m_text[m_at] != u'{' || !Group())
        return false;
    declaration.to = m_at;
    return true;
}

bool CJsDeclarationScanner::Group()
{
    std::vector<QChar> closers;
    do
    {
        const QChar c = m_text[m_at];
        if (c == u'(' || c == u'{' || c == u'[')
        {
            closers.push_back(c == u'(' ? u')' : c == u'{' ? u'}' : u']');
            m_lastPunctuator = c;
            m_lastWord.clear();
            ++m_at;
        }
        else if (c == u')' || c == u'}' || c == u']')
        {
            if (closers.empty() || closers.back() != c)
                return false;
            closers.pop_back();
            m_lastPunctuator = c;
            m_lastWord.clear();
            ++m_at;
        }
        else if (c == u'"' || c == u'\'')
        {
            if (!SkipString(c))
                return false;
        }
        else if (c == u'`')
        {
            if (!SkipTemplate())
                return false;
        }
        else if (c == u'/' && m_at + 1 < m_text.size() && (m_text[m_at + 1] == u'/' || m_text[m_at + 1] == u'*'))
            SkipBlanksAndComments();
        else if (c == u'/' && RegExpMayStart())
        {
            if (!SkipRegExp())
                return false;
        }
        else if (IsWordChar(c))
            m_lastWord = Word();
        else
        {
            if (!c.isSpace() && !IsLineBreak(c))
            {
                m_lastPunctuator = c;
                m_lastWord.clear();
            }
            ++m_at;
        }
    } while (!closers.empty() && m_at < m_text.size());
    return closers.empty();
}

void CJsDeclarationScanner::SkipBlanksAndComments()
{
    while (m_at < m_text.size())
    {
        const QChar c = m_text[m_at];
        if (c.isSpace() || IsLineBreak(c) || c == QChar(0xfeff))
            ++m_at;
        else if (c == u'/' && m_at + 1 < m_text.size() && m_text[m_at + 1] == u'/')
        {
            while (m_at < m_text.size() && !IsLineBreak(m_text[m_at]))
                ++m_at;
        }
        else if (c == u'/' && m_at + 1 < m_text.size() && m_text[m_at + 1] == u'*')
        {
            const qsizetype end = m_text.indexOf(QLatin1String("*/"), m_at + 2);
            m_at = end < 0 ? m_text.size() : end + 2;
        }
        else
            return;
    }
}

bool CJsDeclarationScanner::SkipString(QChar quote)
{
    for (++m_at; m_at < m_text.size(); ++m_at)
    {
        const QChar c = m_text[m_at];
        if (c == u'\\')
            ++m_at;
        else if (c == quote)
        {
            ++m_at;
            m_lastPunctuator = u')'; // an operand: a slash after it divides
            m_lastWord.clear();
            return true;
        }
        else if (c == u'\n' || c == u'\r')
            return false;
    }
    return false;
}

bool CJsDeclarationScanner::SkipTemplate()
{
    for (++m_at; m_at < m_text.size(); ++m_at)
    {
        const QChar c = m_text[m_at];
        if (c == u'\\')
            ++m_at;
        else if (c == u'`')
        {
            ++m_at;
            m_lastPunctuator = u')';
            m_lastWord.clear();
            return true;
        }
        else if (c == u'$' && m_at + 1 < m_text.size() && m_text[m_at + 1] == u'{')
        {
            ++m_at;
            if (!Group())
                return false;
            --m_at; // the loop steps past the "}" Group left behind
        }
    }
    return false;
}

bool CJsDeclarationScanner::SkipRegExp()
{
    bool inClass = false;
    for (++m_at; m_at < m_text.size(); ++m_at)
    {
        const QChar c = m_text[m_at];
        if (c == u'\\')
            ++m_at;
        else if (IsLineBreak(c))
            return false;
        else if (c == u'[')
            inClass = true;
        else if (c == u']')
            inClass = false;
        else if (c == u'/' && !inClass)
        {
            ++m_at;
            while (m_at < m_text.size() && IsWordChar(m_text[m_at]))
                ++m_at;
            m_lastPunctuator = u')';
            m_lastWord.clear();
            return true;
        }
    }
    return false;
}

QString CJsDeclarationScanner::Word()
{
    const qsizetype start = m_at;
    while (m_at < m_text.size() && IsWordChar(m_text[m_at]))
        ++m_at;
    return m_text.mid(start, m_at - start);
}

bool CJsDeclarationScanner::RegExpMayStart() const
{
    if (!m_lastWord.isEmpty())
        return kOperandWords.contains(m_lastWord);
    return QStringLiteral("(,=:[!&|?{};+-*%<>~^").contains(m_lastPunctuator);
}
