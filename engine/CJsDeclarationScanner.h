#pragma once
#include <QString>

#include <vector>

// Cuts a text made of function declarations only into its declarations,
// without the engine: a fast guess that the engine's parser then confirms on
// a skeleton of the text (each body blanked out), so that a large library is
// never parsed into a syntax tree whole. Strings, comments, template
// literals and regular expressions are stepped over; a slash is taken for a
// regular expression where an operand is expected. Anything else at the top
// (a statement, an expression, a class) makes the answer no.
class CJsDeclarationScanner
{
public:
    struct Declaration
    {
        QString name;
        qsizetype from = 0; // where the comments and blanks in front of it start
        qsizetype bodyOpen = 0; // the body's "{"
        qsizetype to = 0; // just past the body's "}"
    };

    static bool Scan(const QString& text, std::vector<Declaration>& declarations);
    // The text with every body's inside blanked, line breaks kept: the same
    // declarations at the same places, for the parser to check cheaply.
    static QString Skeleton(const QString& text, const std::vector<Declaration>& declarations);

private:
    explicit CJsDeclarationScanner(const QString& text) : m_text(text) {}
    bool ReadDeclaration(Declaration& declaration);
    // Steps over a balanced group that starts at the current "(" or "{".
    bool Group();
    void SkipBlanksAndComments();
    bool SkipString(QChar quote);
    bool SkipTemplate();
    bool SkipRegExp();
    QString Word();
    bool RegExpMayStart() const;

    const QString& m_text;
    qsizetype m_at = 0;
    QString m_lastWord; // the last word or punctuator stepped over
    QChar m_lastPunctuator = u'{';
};
