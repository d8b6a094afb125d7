#pragma once
#include <QString>

// A global function that code loaded into a CScriptHost defines.
class CScriptProcedure
{
public:
    CScriptProcedure() = default;
    explicit CScriptProcedure(const QString& name) : m_name(name) {}

    const QString& Name() const { return m_name; }

private:
    QString m_name;
};
