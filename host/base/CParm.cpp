#include "CParm.h"

CParm::CParm(const QString& name, const QString& value, int type, const QString& description)
    : m_name(name), m_value(value), m_type(type), m_description(description)
{
}

QString CParm::GetJsDeclaration() const
{
    if (m_type != 0)
        return QStringLiteral("var ") + m_name + QStringLiteral(" = ") + m_value + QLatin1Char(';');
    return QStringLiteral("var ") + m_name + QStringLiteral(" = \"") + m_value + QStringLiteral("\";");
}
