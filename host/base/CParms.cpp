#include "CParms.h"

CParm* CParms::AddParm(const QString& name, const QString& value, int type, const QString& description)
{
    return AddParm(CParm(name, value, type, description));
}

CParm* CParms::AddParm(const CParm& parm)
{
    m_parms.push_back(parm);
    return &m_parms.back();
}

int CParms::GetParmsArray(CArray<CParm*>& parms)
{
    parms.SetSize(0);
    for (CParm& parm : m_parms)
        parms.Add(&parm);
    return parms.GetSize();
}

int CParms::GetParmsArray(CArray<const CParm*>& parms) const
{
    parms.SetSize(0);
    for (const CParm& parm : m_parms)
        parms.Add(&parm);
    return parms.GetSize();
}

CParm* CParms::FindParm(const QString& name)
{
    for (CParm& parm : m_parms) {
        if (parm.GetParmName() == name)
            return &parm;
    }
    return nullptr;
}

const CParm* CParms::FindParm(const QString& name) const
{
    return const_cast<CParms*>(this)->FindParm(name);
}

QString CParms::GetParmMacro() const
{
    QString text;
    for (const CParm& parm : m_parms) {
        text += parm.GetJsDeclaration();
        text += QStringLiteral("\r\n");
    }
    return text;
}
