#include "NDataModelDataSet.h"

#include "CDataSetXmlCodec.h"

#include <QHash>
#include <QLocale>
#include <algorithm>
#include <cmath>
#include <limits>

struct NDataModelDataSet::Impl
{
    struct Field
    {
        QString name;
        FieldType type = FT_String;
        int width = 0;
    };
    // A cell holds a QString for text fields, an int or a double for number
    // fields; an invalid QVariant is a cell never set.
    using Row = std::vector<QVariant>;

    bool fieldsCreated = false;
    QString tableName;
    std::vector<Field> fields;
    QHash<QString, int> columnOf;
    std::vector<Row> rows;

    bool ValidCell(int column, int row) const
    {
        return column >= 0 && column < int(fields.size()) && row >= 1 && row <= int(rows.size());
    }
    QVariant& Cell(int column, int row) { return rows[size_t(row - 1)][size_t(column)]; }
    const QVariant& Cell(int column, int row) const { return rows[size_t(row - 1)][size_t(column)]; }
};

namespace {

bool IsText(FieldType type)
{
    return type != FT_Integer && type != FT_Double;
}

// Shortest text that reads back as the same double; Qt drops the sign of -0.
QString DoubleText(double value)
{
    if (value == 0.0 && std::signbit(value))
        return QStringLiteral("-0");
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

// Converts text to the storage of a field type. Empty text clears a number
// cell; text that is not a number of the field's kind is refused.
bool TextToCell(FieldType type, const QString& text, QVariant& cell)
{
    if (IsText(type))
    {
        cell = text;
        return true;
    }
    if (text.isEmpty())
    {
        cell = QVariant();
        return true;
    }
    bool ok = false;
    if (type == FT_Integer)
    {
        const int value = text.toInt(&ok);
        if (ok)
            cell = value;
        return ok;
    }
    const double value = text.toDouble(&ok);
    if (ok)
        cell = value;
    return ok;
}

QString CellToText(const QVariant& cell)
{
    if (!cell.isValid())
        return QString();
    if (cell.typeId() == QMetaType::Double)
        return DoubleText(cell.toDouble());
    return cell.toString();
}

double CellToDouble(const QVariant& cell)
{
    if (!cell.isValid())
        return 0.0;
    if (cell.typeId() == QMetaType::QString)
    {
        bool ok = false;
        const double value = cell.toString().toDouble(&ok);
        return ok ? value : 0.0;
    }
    return cell.toDouble();
}

int CellToInteger(const QVariant& cell)
{
    if (cell.typeId() == QMetaType::Int)
        return cell.toInt();
    bool ok = false;
    if (cell.typeId() == QMetaType::QString)
    {
        const int value = cell.toString().toInt(&ok);
        if (ok)
            return value;
    }
    const double value = CellToDouble(cell);
    const bool fits = std::isfinite(value) && value > double(std::numeric_limits<int>::min()) - 1.0
        && value < double(std::numeric_limits<int>::max()) + 1.0;
    return fits ? int(value) : 0;
}

// Sort key order: never-set cells first, then values; NaN after every number
// so that the order stays a strict weak one.
int NumberRank(const QVariant& cell)
{
    if (!cell.isValid())
        return 0;
    return std::isnan(cell.toDouble()) ? 2 : 1;
}

bool CellLess(FieldType type, const QVariant& a, const QVariant& b)
{
    if (!a.isValid() || !b.isValid())
        return !a.isValid() && b.isValid();
    if (IsText(type))
        return a.toString() < b.toString();
    const int ra = NumberRank(a);
    const int rb = NumberRank(b);
    if (ra != rb || ra != 1)
        return ra < rb;
    return a.toDouble() < b.toDouble();
}

} // namespace

NDataModelDataSet::NDataModelDataSet() : d(std::make_unique<Impl>()) {}

NDataModelDataSet::~NDataModelDataSet() = default;

int NDataModelDataSet::CreateFields()
{
    return GetFieldCount();
}

void NDataModelDataSet::EnsureFields() const
{
    if (d->fieldsCreated)
        return;
    // Set first: CreateFields calls AddField, which comes back here.
    d->fieldsCreated = true;
    const_cast<NDataModelDataSet*>(this)->CreateFields();
}

int NDataModelDataSet::AddField(const QString& name, FieldType type, int width)
{
    EnsureFields();
    if (name.isEmpty() || !CDataSetXmlCodec::IsKnownType(type))
        return -1;
    const auto found = d->columnOf.constFind(name);
    if (found != d->columnOf.constEnd())
        return found.value();
    d->fields.push_back({name, type, width});
    const int column = int(d->fields.size()) - 1;
    d->columnOf.insert(name, column);
    for (Impl::Row& row : d->rows)
        row.emplace_back();
    return column;
}

int NDataModelDataSet::GetFieldCount() const
{
    EnsureFields();
    return int(d->fields.size());
}

QString NDataModelDataSet::GetFieldName(int column) const
{
    EnsureFields();
    return column >= 0 && column < int(d->fields.size()) ? d->fields[size_t(column)].name : QString();
}

int NDataModelDataSet::GetFieldIndex(const QString& name) const
{
    EnsureFields();
    return d->columnOf.value(name, -1);
}

FieldType NDataModelDataSet::GetFieldDataType(int column) const
{
    EnsureFields();
    return column >= 0 && column < int(d->fields.size()) ? d->fields[size_t(column)].type : FT_String;
}

int NDataModelDataSet::GetFieldWidth(int column) const
{
    EnsureFields();
    return column >= 0 && column < int(d->fields.size()) ? d->fields[size_t(column)].width : 0;
}

void NDataModelDataSet::SetTableName(const QString& name)
{
    d->tableName = name;
}

QString NDataModelDataSet::GetTableName() const
{
    EnsureFields();
    return d->tableName;
}

int NDataModelDataSet::GetRowCount() const
{
    return int(d->rows.size());
}

int NDataModelDataSet::InsertRow(int row)
{
    EnsureFields();
    Impl::Row empty(d->fields.size());
    if (row <= 0 || row > int(d->rows.size()))
    {
        d->rows.push_back(std::move(empty));
        return int(d->rows.size());
    }
    d->rows.insert(d->rows.begin() + (row - 1), std::move(empty));
    return row;
}

bool NDataModelDataSet::DeleteRow(int row)
{
    if (row < 1 || row > int(d->rows.size()))
        return false;
    d->rows.erase(d->rows.begin() + (row - 1));
    return true;
}

void NDataModelDataSet::Reset()
{
    d->rows.clear();
}

std::unique_ptr<NDataModelDataSet> NDataModelDataSet::Clone() const
{
    EnsureFields();
    auto copy = std::make_unique<NDataModelDataSet>();
    *copy->d = *d;
    return copy;
}

QString NDataModelDataSet::GetAsString(int column, int row) const
{
    EnsureFields();
    return d->ValidCell(column, row) ? CellToText(d->Cell(column, row)) : QString();
}

QString NDataModelDataSet::GetAsString(const QString& field, int row) const
{
    return GetAsString(GetFieldIndex(field), row);
}

int NDataModelDataSet::GetAsInteger(int column, int row) const
{
    EnsureFields();
    return d->ValidCell(column, row) ? CellToInteger(d->Cell(column, row)) : 0;
}

int NDataModelDataSet::GetAsInteger(const QString& field, int row) const
{
    return GetAsInteger(GetFieldIndex(field), row);
}

double NDataModelDataSet::GetAsDouble(int column, int row) const
{
    EnsureFields();
    return d->ValidCell(column, row) ? CellToDouble(d->Cell(column, row)) : 0.0;
}

double NDataModelDataSet::GetAsDouble(const QString& field, int row) const
{
    return GetAsDouble(GetFieldIndex(field), row);
}

bool NDataModelDataSet::IsNull(int column, int row) const
{
    EnsureFields();
    return !d->ValidCell(column, row) || !d->Cell(column, row).isValid();
}

bool NDataModelDataSet::SetAsString(int column, int row, const QString& value)
{
    EnsureFields();
    if (!d->ValidCell(column, row))
        return false;
    QVariant cell;
    if (!TextToCell(GetFieldDataType(column), value, cell))
        return false;
    d->Cell(column, row) = cell;
    return true;
}

bool NDataModelDataSet::SetAsString(const QString& field, int row, const QString& value)
{
    return SetAsString(GetFieldIndex(field), row, value);
}

bool NDataModelDataSet::SetAsInteger(int column, int row, int value)
{
    EnsureFields();
    if (!d->ValidCell(column, row))
        return false;
    const FieldType type = GetFieldDataType(column);
    QVariant& cell = d->Cell(column, row);
    if (IsText(type))
        cell = QString::number(value);
    else if (type == FT_Integer)
        cell = value;
    else
        cell = double(value);
    return true;
}

bool NDataModelDataSet::SetAsInteger(const QString& field, int row, int value)
{
    return SetAsInteger(GetFieldIndex(field), row, value);
}

// A double goes into an integer field only when it is a whole number in range.
bool NDataModelDataSet::SetAsDouble(int column, int row, double value)
{
    EnsureFields();
    if (!d->ValidCell(column, row))
        return false;
    const FieldType type = GetFieldDataType(column);
    QVariant& cell = d->Cell(column, row);
    if (IsText(type))
    {
        cell = DoubleText(value);
        return true;
    }
    if (type == FT_Double)
    {
        cell = value;
        return true;
    }
    const bool whole = std::isfinite(value) && std::trunc(value) == value
        && value >= double(std::numeric_limits<int>::min()) && value <= double(std::numeric_limits<int>::max());
    if (!whole)
        return false;
    cell = int(value);
    return true;
}

bool NDataModelDataSet::SetAsDouble(const QString& field, int row, double value)
{
    return SetAsDouble(GetFieldIndex(field), row, value);
}

bool NDataModelDataSet::Sort(const QString& field, bool ascending)
{
    const int column = GetFieldIndex(field);
    if (column < 0)
        return false;
    const FieldType type = GetFieldDataType(column);
    const size_t c = size_t(column);
    std::stable_sort(d->rows.begin(), d->rows.end(), [&](const Impl::Row& a, const Impl::Row& b) {
        return ascending ? CellLess(type, a[c], b[c]) : CellLess(type, b[c], a[c]);
    });
    return true;
}

bool NDataModelDataSet::SaveDataSetXMLBuf_NoDelete(QString& xml) const
{
    EnsureFields();
    return CDataSetXmlCodec::Write(*this, xml);
}

// Everything is parsed and converted before the first change, so a buffer
// that fails anywhere leaves the table as it was.
bool NDataModelDataSet::LoadDataSetXMLBuf_NoDataBefore(const QString& xml, int /*flags*/)
{
    EnsureFields();
    CDataSetXmlCodec::Table parsed;
    if (!CDataSetXmlCodec::Read(xml, parsed))
        return false;

    std::vector<FieldType> targetType(parsed.fields.size());
    for (size_t i = 0; i < parsed.fields.size(); ++i)
    {
        const int column = GetFieldIndex(parsed.fields[i].name);
        targetType[i] = column >= 0 ? GetFieldDataType(column) : parsed.fields[i].type;
    }
    std::vector<std::vector<QVariant>> converted;
    converted.reserve(parsed.rows.size());
    for (const auto& row : parsed.rows)
    {
        std::vector<QVariant> cells(row.size());
        for (size_t i = 0; i < row.size(); ++i)
        {
            if (row[i] && !TextToCell(targetType[i], *row[i], cells[i]))
                return false;
        }
        converted.push_back(std::move(cells));
    }

    std::vector<int> columns;
    for (const CDataSetXmlCodec::Field& field : parsed.fields)
        columns.push_back(AddField(field.name, field.type, field.width));
    if (d->tableName.isEmpty())
        d->tableName = parsed.name;
    for (const auto& cells : converted)
    {
        Impl::Row row(d->fields.size());
        for (size_t i = 0; i < cells.size(); ++i)
            row[size_t(columns[i])] = cells[i];
        d->rows.push_back(std::move(row));
    }
    return true;
}
