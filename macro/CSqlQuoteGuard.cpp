#include "CSqlQuoteGuard.h"

bool CSqlQuoteGuard::IsSafe(const QString& text)
{
    return !text.contains(QLatin1Char('\''));
}

bool CSqlQuoteGuard::IsSafe(const CMacroParam& param)
{
    return IsSafe(param.GetName()) && IsSafe(param.GetValue()) && IsSafe(param.GetDescription());
}
