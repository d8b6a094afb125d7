#pragma once
#include "CMacroParam.h"
#include "CArray.h"

#include <QString>
#include <QStringList>
#include <ostream>

// Lets GoogleTest show QString values as text in failure messages.
inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}

inline QString U8(const char* text)
{
    return QString::fromUtf8(text);
}

// A macro parameter of the given type (1: number, 0: text).
inline CMacroParam Param(const QString& name, const QString& value, int type = 1)
{
    CMacroParam param(name, value, QStringLiteral("说明"));
    param.SetDataType(static_cast<std::uint32_t>(type));
    return param;
}

inline CArray<CMacroParam> Outputs(const QStringList& names, const QString& value = QStringLiteral("old"))
{
    CArray<CMacroParam> outputs;
    for (const QString& name : names)
        outputs.Add(Param(name, value));
    return outputs;
}
