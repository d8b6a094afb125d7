#pragma once
#include "CDataSetXmlCodec.h"

#include <QString>
#include <QStringView>
#include <optional>

class CDataSetTableBuilder;

// Reads the data-set XML in the form CDataSetXmlCodec::Write gives it, give
// or take blanks between elements and in tags, attribute order, quotes and
// character references, without a general XML parser: that parser was most
// of the cost of loading a test case. Whatever lies outside that form
// (comments, processing instructions, CDATA, a DOCTYPE, other names,
// prefixes, line ends XML would normalise, characters XML forbids) it leaves
// to the general parser, and so decides nothing about it.
class CDataSetXmlScanner
{
public:
    // True when `xml` is in that form and holds a valid table, now in `out`;
    // false says only that the general parser must read it.
    static bool Read(const QString& xml, CDataSetXmlCodec::Table& out);

private:
    // The attributes an element of the layout may have, by position.
    struct Attributes
    {
        std::optional<QString> values[3];
    };

    explicit CDataSetXmlScanner(QStringView text) : m_text(text) {}

    bool Document(CDataSetTableBuilder& table);
    bool FieldList(CDataSetTableBuilder& table);
    bool RowList(CDataSetTableBuilder& table);
    bool Row(CDataSetTableBuilder& table);

    void SkipBlanks();
    bool At(QStringView what) const;
    // "<name" and its attributes up to ">" or "/>" (`empty`); `names` are the
    // attributes the element may have, in the order of Attributes::values.
    bool StartTag(QStringView name, std::initializer_list<QStringView> names, Attributes& attributes, bool& empty);
    bool EndTag(QStringView name);
    bool Value(QString& value);
    bool Text(QString& text);
    bool Reference(QString& text);
    // Appends the characters from the cursor on that need no check.
    void AppendPlain(QString& text);
    // Appends the character at the cursor when XML allows it literally.
    bool Character(QString& text);

    QStringView m_text;
    qsizetype m_at = 0;
};
