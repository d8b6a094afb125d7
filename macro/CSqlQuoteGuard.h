#pragma once
#include "CMacroParam.h"

#include <QString>

// The stores splice text values between single quotes without escaping. A
// value holding a quote would break (or rewrite) its statement, so that one
// statement is refused and counts as failed; nothing injectable is sent.
class CSqlQuoteGuard
{
public:
    static bool IsSafe(const QString& text);
    // Name, value and description.
    static bool IsSafe(const CMacroParam& param);
};
