#pragma once
#include <QSet>
#include <QString>

// What can be read off one piece of a text that runs joined with others,
// without the engine: its line breaks, the words it mentions, and whether
// its first or last token could read differently once the pieces are joined.
class CJsPieceText
{
public:
    // JavaScript line terminators, CR LF counting as one.
    static int LineBreaks(const QString& text);

    // Every maximal run of identifier characters, in code, strings and
    // comments alike: a superset of the names the piece can mention.
    static QSet<QString> Words(const QString& text);

    // True when the first token, after blanks and comments, could continue
    // the statement an earlier piece ends with (no automatic semicolon
    // before "(", "[", "+", a template, "in", ...) or is a string, which at
    // the head of a piece of its own would be a directive such as
    // "use strict" and in the whole is none.
    static bool StartsAmbiguously(const QString& text);
    static bool StartsWithString(const QString& text);

    // True when the last token may be "let", which joined with a name on the
    // next line becomes a declaration.
    static bool MayEndWithLet(const QString& text, const QSet<QString>& words);

private:
    // Index of the first character after blanks, line breaks and comments.
    static qsizetype FirstSignificant(const QString& text);
};
