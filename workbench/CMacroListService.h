#pragma once
#include "CArray.h"
#include "CMacro.h"

#include <QString>

// What the macro list ("宏列表") does on the database store: list every
// macro, read one whole, add, modify and delete, and write the list as XML.
// Failures are told to the user through the UI services and returned.
class CMacroListService
{
public:
    virtual ~CMacroListService() = default;

    // Every stored macro, without parameters, in id order. False (list kept) when the
    // database cannot be read.
    bool Reload();
    const CArray<CMacro>& Macros() const { return m_macros; }

    // The listed macro at `row` with its content and parameters as stored now.
    bool Open(int row, CMacro& macro);
    // A new macro with these facts (name, type, description) and no script.
    bool Add(const CMacro& facts);
    // New name, type and description for the macro at `row`; its script and
    // parameters stay.
    bool Modify(int row, const CMacro& facts);
    // Asks first (Yes/No); false when declined or when the delete failed.
    bool Delete(int row);

    // <Macros><Macro Name=".." Value="script" Description=".."/>...</Macros>,
    // one element per listed macro in list order, attributes in that order.
    static QByteArray BuildXml(const CArray<CMacro>& macros);
    // Writes BuildXml of the list to `path` (replacing it only once complete).
    bool ExportXml(const QString& path) const;

private:
    bool ValidRow(int row) const { return row >= 0 && row < m_macros.GetSize(); }
    static bool LoadWhole(int id, CMacro& macro);

    CArray<CMacro> m_macros;
};
