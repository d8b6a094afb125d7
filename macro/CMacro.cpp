#include "CMacro.h"

CMacro::CMacro(int type, const QString& name, const QString& description, const QString& content)
    : m_name(name), m_description(description), m_type(type), m_content(content)
{
}

CMacro::CMacro(const CMacro& other)
{
    CopyFrom(other);
}

CMacro& CMacro::operator=(const CMacro& other)
{
    if (this != &other)
        CopyFrom(other);
    return *this;
}

// The script file is not copied: it belongs to the record it was loaded into.
void CMacro::CopyFrom(const CMacro& other)
{
    m_id = other.m_id;
    m_type = other.m_type;
    m_name = other.m_name;
    m_description = other.m_description;
    m_content = other.m_content;
    m_inputs.SetSize(0);
    for (const CMacroParam& param : other.m_inputs)
        m_inputs.Add(param);
    m_outputs.SetSize(0);
    for (const CMacroParam& param : other.m_outputs)
        m_outputs.Add(param);
}
