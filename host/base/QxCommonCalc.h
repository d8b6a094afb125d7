#pragma once
#include <QString>

namespace qxcommon {

// Evaluates a plain arithmetic text with muParser: numbers, + - * / ^,
// parentheses, muParser's functions (sin, cos, tan, sqrt, abs, min, max, ...)
// and constants (_pi, _e: muParser rounds them to 12 decimals), plus PI at
// full precision. No variables. Texts are limited to muParser's 20,000
// characters.
//
// A text that does not parse (unknown names, empty text, unbalanced
// parentheses, characters outside ASCII, several comma-separated results, too
// long) gives a quiet NaN and, when `error`
// is given, muParser's message; on success `error` is emptied. Division by
// zero is no error: it gives an infinity as the arithmetic does. Nothing is
// thrown.
double Calc(const QString& expression, QString* error = nullptr);

} // namespace qxcommon
