#pragma once
#include "CArray.h"
#include "CParm.h"

#include <QString>
#include <deque>

// An ordered collection of named values, as the host's calculation modules
// pass them around. Parameters keep the order in which they were added; the
// pointers handed out by GetParmsArray and FindParm stay valid until the
// collection is cleared or destroyed (adding does not move existing ones).
class CParms
{
public:
    CParms() = default;
    virtual ~CParms() = default;

    // Appends a parameter and returns it. Names are not checked: a repeated
    // name gives a second parameter, and FindParm finds the first.
    CParm* AddParm(const QString& name, const QString& value, int type = 0,
                   const QString& description = QString());
    CParm* AddParm(const CParm& parm);
    void RemoveAll() { m_parms.clear(); }

    int GetCount() const { return static_cast<int>(m_parms.size()); }

    // Fills `parms` (replacing its content) with the parameters in order and
    // returns their number.
    int GetParmsArray(CArray<CParm*>& parms);
    int GetParmsArray(CArray<const CParm*>& parms) const;

    // The first parameter of that exact name, or null.
    CParm* FindParm(const QString& name);
    const CParm* FindParm(const QString& name) const;

    // Every parameter as a JavaScript declaration, each followed by "\r\n",
    // in order; empty for an empty collection.
    QString GetParmMacro() const;

private:
    std::deque<CParm> m_parms;
};
