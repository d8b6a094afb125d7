#pragma once
#include "CArray.h"
#include "CMacroParam.h"

#include <QString>
#include <cstdint>

// One macro: a named script with its input and output parameters and the id
// the system database keeps it under (-1: never stored). A copy takes every
// field but the script file, which stays the target's own.
class CMacro
{
public:
    CMacro() = default;
    CMacro(int type, const QString& name, const QString& description, const QString& content);
    CMacro(const CMacro& other);
    CMacro& operator=(const CMacro& other);
    virtual ~CMacro() = default;

    int GetId() const { return m_id; }
    void SetId(int id) { m_id = id; }

    const QString& GetName() const { return m_name; }
    void SetName(const QString& name) { m_name = name; }
    const QString& GetDescription() const { return m_description; }
    void SetDescription(const QString& description) { m_description = description; }
    int GetType() const { return m_type; }
    void SetType(int type) { m_type = type; }
    const QString& GetContent() const { return m_content; }
    void SetContent(const QString& content) { m_content = content; }
    const QString& GetScriptFile() const { return m_scriptFile; }
    void SetScriptFile(const QString& path) { m_scriptFile = path; }

    CArray<CMacroParam>& InputParams() { return m_inputs; }
    const CArray<CMacroParam>& InputParams() const { return m_inputs; }
    CArray<CMacroParam>& OutputParams() { return m_outputs; }
    const CArray<CMacroParam>& OutputParams() const { return m_outputs; }

private:
    void CopyFrom(const CMacro& other);

    QString m_name;
    QString m_description;
    std::int32_t m_type = 0;
    QString m_content;
    CArray<CMacroParam> m_inputs;
    CArray<CMacroParam> m_outputs;
    QString m_scriptFile;
    std::int32_t m_id = -1;
};
