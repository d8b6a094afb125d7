#pragma once
#include "CArray.h"
#include "CMacroParam.h"

#include <QStringList>
#include <initializer_list>
#include <ostream>

// Lets GoogleTest show QString values as text in failure messages.
inline void PrintTo(const QString& text, std::ostream* out) { *out << '"' << text.toStdString() << '"'; }
inline QString U8(const char* text) { return QString::fromUtf8(text); }

// A macro parameter of the given type (1: number, 0: text).
inline CMacroParam Param(const QString& name, const QString& value, int type = 1)
{
    CMacroParam param(name, value, QStringLiteral("说明"));
    param.SetDataType(static_cast<std::uint32_t>(type));
    return param;
}

struct ParamSpec
{
    QString name, value;
    int type = 1;
};
inline CArray<CMacroParam> Inputs(std::initializer_list<ParamSpec> specs)
{
    CArray<CMacroParam> params;
    for (const ParamSpec& spec : specs)
        params.Add(Param(spec.name, spec.value, spec.type));
    return params;
}

inline CArray<CMacroParam> Outputs(const QStringList& names, const QString& value = QStringLiteral("old"))
{
    CArray<CMacroParam> outputs;
    for (const QString& name : names)
        outputs.Add(Param(name, value));
    return outputs;
}

inline QStringList Values(const CArray<CMacroParam>& params)
{
    QStringList values;
    for (const CMacroParam& param : params)
        values << param.GetValue();
    return values;
}
