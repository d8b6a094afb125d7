#pragma once
#include "NDataModelDataSet.h"

#include <QString>
#include <QStringView>
#include <optional>
#include <vector>

// The XML text form of NDataModelDataSet (layout documented in
// NDataModelDataSet.h). Writing reads the table through its public getters;
// reading parses the whole buffer into a Table first, so that a damaged
// buffer is detected before anything is applied.
class CDataSetXmlCodec
{
public:
    static constexpr QStringView kVersion = u"1";
    static constexpr QStringView kBase64 = u"base64";

    struct Field
    {
        QString name;
        FieldType type = FT_String;
        int width = 0;
        bool operator==(const Field&) const = default;
    };
    struct Table
    {
        QString name;
        std::vector<Field> fields;
        // One entry per buffer field, in field order; nullopt = no value.
        std::vector<std::vector<std::optional<QString>>> rows;
        bool operator==(const Table&) const = default;
    };

    // False when a name cannot be carried by XML (control characters).
    static bool Write(const NDataModelDataSet& table, QString& xml);
    // False on any structural, syntax or value error; `out` is then undefined.
    static bool Read(const QString& xml, Table& out);
    // The same with the general XML parser alone (Read's fallback).
    static bool ReadWithXmlParser(const QString& xml, Table& out);

    static bool IsKnownType(int type);
    // True when every character can appear literally in an XML 1.0 document.
    static bool IsXmlSafe(const QString& text);
    // Whether XML 1.0 allows the code point at all (literally or as a reference).
    static bool IsXmlChar(char32_t c);
};
