#pragma once
// Shared by the macro tests and the settings-file fuzz target.
#include "CMacroParam.h"

#include <QStringList>

inline CMacroParam MakeParam(const QString& name, const QString& value, const QString& description, int dataType)
{
    CMacroParam param(name, value, description);
    param.SetDataType(static_cast<std::uint32_t>(dataType));
    return param;
}

// Every field of every parameter, one "name|value|description|type" line each.
inline QStringList ParamFields(const CArray<CMacroParam>& params)
{
    QStringList lines;
    for (const CMacroParam& p : params)
        lines << QStringLiteral("%1|%2|%3|%4").arg(p.GetName(), p.GetValue(), p.GetDescription()).arg(p.GetDataType());
    return lines;
}
