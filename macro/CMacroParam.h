#pragma once
#include <QString>
#include <cstdint>

// One parameter of a macro. Whether it is an input or an output follows from
// the list that holds it. Data type 0 means text (quoted in JavaScript); any
// other value is a literal.
class CMacroParam
{
public:
    CMacroParam() = default;
    CMacroParam(const QString& name, const QString& value, const QString& description);
    CMacroParam(const CMacroParam&) = default;
    CMacroParam& operator=(const CMacroParam&) = default;
    virtual ~CMacroParam() = default;

    // "var name = value;" with the value in double quotes for text; nothing is
    // escaped and no line break is added.
    QString ToJsDeclaration() const;

    const QString& GetName() const { return m_name; }
    const QString& GetValue() const { return m_value; }
    const QString& GetDescription() const { return m_description; }
    int GetDataType() const { return m_dataType; }
    void SetName(const QString& name) { m_name = name; }
    void SetValue(const QString& value) { m_value = value; }
    void SetDescription(const QString& description) { m_description = description; }
    void SetDataType(std::uint32_t type) { m_dataType = static_cast<std::int32_t>(type); }

private:
    QString m_name;
    QString m_value;
    QString m_description;
    std::int32_t m_dataType = 0;
};
