#include "CMacroParam.h"

CMacroParam::CMacroParam(const QString& name, const QString& value, const QString& description)
    : m_name(name), m_value(value), m_description(description)
{
}

QString CMacroParam::ToJsDeclaration() const
{
    // Deliberately unescaped: the value goes into the script as the user typed it.
    if (m_dataType != 0)
        return QStringLiteral("var ") + m_name + QStringLiteral(" = ") + m_value + QLatin1Char(';');
    return QStringLiteral("var ") + m_name + QStringLiteral(" = \"") + m_value + QStringLiteral("\";");
}
