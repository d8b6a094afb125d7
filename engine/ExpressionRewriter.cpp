#include "ExpressionRewriter.h"

#include "QxCommonCalc.h"

namespace {

// The 8-bit isalpha test of the formulas' origin, on ASCII only.
bool IsWordPart(QChar c)
{
    const char16_t u = c.unicode();
    return (u >= u'a' && u <= u'z') || (u >= u'A' && u <= u'Z') || u == u'_' || u == u'.';
}

} // namespace

void ReplaceWord(QString& text, const QString& word, const QString& replacement)
{
    if (word.isEmpty())
        return;
    qsizetype replacementsLeft = text.size() + 1;
    qsizetype p = 0;
    while (p < text.size()) {
        const qsizetype f = text.indexOf(word, p);
        if (f < 0)
            break; // stepping on one position at a time would find nothing either
        const qsizetype after = f + word.size();
        const bool leftFree = f == 0 || !IsWordPart(text.at(f - 1));
        const bool rightFree = after == text.size() || !IsWordPart(text.at(after));
        if (!(leftFree && rightFree)) {
            // Every start up to f finds this same occurrence and rejects it.
            p = f + 1;
            continue;
        }
        if (replacementsLeft-- == 0)
            break;
        text.replace(f, word.size(), replacement); // left part + replacement + right part
        p += word.size();
    }
}

QString AddMathPrefix(const QString& expression)
{
    QString text = expression;
    ReplaceWord(text, QStringLiteral("Math."), QString());
    static const char16_t* const names[][2] = {
        {u"PI", u"Math.PI"},   {u"sin", u"Math.sin"},   {u"cos", u"Math.cos"},
        {u"tan", u"Math.tan"}, {u"ctan", u"Math.ctan"}, {u"sqrt", u"Math.sqrt"},
    };
    for (const auto& name : names)
        ReplaceWord(text, QString::fromUtf16(name[0]), QString::fromUtf16(name[1]));
    return text;
}

double CalcExpression(const QString& expression)
{
    return qxcommon::Calc(expression);
}
