#pragma once
#include "CDataSetXmlCodec.h"

#include <QHash>
#include <QString>
#include <QStringView>
#include <optional>
#include <vector>

// Checks and collects the parts of a data-set document in the order a reader
// meets them. Both readers of the XML form feed it, so what they accept and
// what they make of it cannot drift apart. Attributes come as found; nullopt
// stands for one that is missing.
class CDataSetTableBuilder
{
public:
    explicit CDataSetTableBuilder(CDataSetXmlCodec::Table& out) : m_out(out) {}

    bool Root(std::optional<QStringView> version, std::optional<QStringView> table);
    bool Field(std::optional<QStringView> name, std::optional<QStringView> type, std::optional<QStringView> width);
    void BeginRow();
    // `raw` is the cell's text as the document has it, before any base64 decoding.
    bool Cell(std::optional<QStringView> field, std::optional<QStringView> encoding, const QString& raw);
    void EndRow();

private:
    CDataSetXmlCodec::Table& m_out;
    QHash<QString, int> m_columns;
    std::vector<std::optional<QString>> m_row;
};
