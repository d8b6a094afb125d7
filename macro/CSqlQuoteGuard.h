#pragma once
#include "CArray.h"
#include "CMacroParam.h"

#include <QString>

// The stores splice text values between single quotes without escaping. A
// value holding a quote would break (or rewrite) its statement, so such an
// operation is refused before any statement runs.
class CSqlQuoteGuard
{
public:
    static bool IsSafe(const QString& text);
    // Name, value and description.
    static bool IsSafe(const CMacroParam& param);
    static bool IsSafe(const CArray<CMacroParam>& params);
};
