#include "CDataSetTableBuilder.h"

#include <QByteArray>

namespace {

bool FromUtf16LeBase64(QStringView encoded, QString& text)
{
    const auto result = QByteArray::fromBase64Encoding(encoded.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    if (!result || result.decoded.size() % 2 != 0)
        return false;
    const QByteArray& bytes = result.decoded;
    text.resize(bytes.size() / 2);
    for (qsizetype i = 0; i < text.size(); ++i)
        text[i] = QChar(char16_t(uchar(bytes[2 * i]) | (uchar(bytes[2 * i + 1]) << 8)));
    return true;
}

} // namespace

bool CDataSetTableBuilder::Root(std::optional<QStringView> version, std::optional<QStringView> table)
{
    if (version.value_or(QStringView()) != CDataSetXmlCodec::kVersion)
        return false;
    m_out.name = table.value_or(QStringView()).toString();
    return true;
}

bool CDataSetTableBuilder::Field(std::optional<QStringView> name, std::optional<QStringView> type,
                                 std::optional<QStringView> width)
{
    CDataSetXmlCodec::Field field;
    field.name = name.value_or(QStringView()).toString();
    bool typeOk = false;
    const int typeNumber = type.value_or(QStringView()).toInt(&typeOk);
    bool widthOk = true;
    if (width)
        field.width = width->toInt(&widthOk);
    if (field.name.isEmpty() || !typeOk || !widthOk || !CDataSetXmlCodec::IsKnownType(typeNumber)
        || m_columns.contains(field.name))
        return false;
    field.type = FieldType(typeNumber);
    m_columns.insert(field.name, int(m_out.fields.size()));
    m_out.fields.push_back(field);
    return true;
}

void CDataSetTableBuilder::BeginRow()
{
    m_row.assign(m_out.fields.size(), std::nullopt);
}

bool CDataSetTableBuilder::Cell(std::optional<QStringView> field, std::optional<QStringView> encoding,
                                const QString& raw)
{
    const int column = m_columns.value(field.value_or(QStringView()).toString(), -1);
    if (column < 0 || m_row[size_t(column)].has_value())
        return false;
    if (!encoding) {
        m_row[size_t(column)] = raw;
        return true;
    }
    QString text;
    if (*encoding != CDataSetXmlCodec::kBase64 || !FromUtf16LeBase64(raw, text))
        return false;
    m_row[size_t(column)] = text;
    return true;
}

void CDataSetTableBuilder::EndRow()
{
    m_out.rows.push_back(std::move(m_row));
    m_row.clear();
}
