#pragma once
#include <QString>

// One named value of a parameter collection (CParms): name, value as text, a
// type number and a description. Type 0 is text, rendered quoted in
// JavaScript; any other type is a literal, rendered as it stands.
class CParm
{
public:
    CParm() = default;
    CParm(const QString& name, const QString& value, int type = 0, const QString& description = QString());
    virtual ~CParm() = default;

    const QString& GetParmName() const { return m_name; }
    const QString& GetParmValue() const { return m_value; }
    int GetType() const { return m_type; }
    const QString& GetDes() const { return m_description; }

    void SetParmName(const QString& name) { m_name = name; }
    void SetParmValue(const QString& value) { m_value = value; }
    void SetType(int type) { m_type = type; }
    void SetDes(const QString& description) { m_description = description; }

    // "var name = value;" (value in double quotes for type 0), unescaped.
    QString GetJsDeclaration() const;

private:
    QString m_name;
    QString m_value;
    int m_type = 0;
    QString m_description;
};
