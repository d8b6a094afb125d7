#pragma once
#include <QString>

// Rewriting of plain formulas (sin, sqrt, PI ...) into script form, and
// evaluation of plain arithmetic. Offered as a library; kept with their exact
// stepping rules.

// Whole-word replace: an occurrence counts only when the characters touching it
// on either side are not ASCII letters, "_" or ".". After a replacement the
// search start moves on by the length of the word, counted from the old search
// start, so a replaced stretch may be looked at again (and rejected by the
// same boundary test). An empty word replaces nothing. A replacement that
// holds the word standing alone would feed on its own output without end;
// the rewrite stops after as many replacements as the text had characters,
// plus one.
void ReplaceWord(QString& text, const QString& word, const QString& replacement);

// Drops a "Math." that stands alone, then puts "Math." before PI, sin, cos,
// tan, ctan and sqrt (case-sensitive) where they stand alone. The argument is
// not changed. ctan becomes Math.ctan, which the Math object does not have.
QString AddMathPrefix(const QString& expression);

// The value of the arithmetic text from qxcommon::Calc, unchanged (NaN when
// the text does not parse).
double CalcExpression(const QString& expression);
