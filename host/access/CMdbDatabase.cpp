#include "CMdbDatabase.h"

// mdbtools.h opens an extern "C" block around glib.h; glib must come first so
// its C++ parts are not pulled into that block.
#include <glib.h>
#include <mdbtools.h>

#include <QFile>
#include <QFileInfo>
#include <vector>

struct CMdbDatabase::Impl
{
    MdbHandle* handle = nullptr;
};

namespace {

// Frees a libmdb table definition on every path out of ReadTable.
struct TableGuard
{
    MdbTableDef* table = nullptr;
    ~TableGuard()
    {
        if (table)
            mdb_free_tabledef(table);
    }
};

QVariant ToVariant(int type, const char* text, bool isNull)
{
    if (isNull)
        return QVariant();
    const QString value = QString::fromUtf8(text);
    switch (type) {
    case MDB_BOOL:
    case MDB_BYTE:
    case MDB_INT:
    case MDB_LONGINT:
        return value.toLongLong();
    case MDB_FLOAT:
    case MDB_DOUBLE:
        return value.toDouble();
    default:
        return value;
    }
}

MdbColumn* ColumnAt(MdbTableDef* table, unsigned index)
{
    return static_cast<MdbColumn*>(g_ptr_array_index(table->columns, index));
}

// Which cells of the row just fetched are NULL (the bound text cannot tell a
// NULL from an empty text).
std::vector<bool> NullFlags(MdbTableDef* table)
{
    std::vector<bool> nulls(table->num_cols, false);
    std::vector<MdbField> fields(MDB_MAX_COLS);
    int start = 0;
    size_t size = 0;
    if (table->cur_row == 0 || mdb_find_row(table->entry->mdb, table->cur_row - 1, &start, &size) != 0)
        return nulls;
    const int count = mdb_crack_row(table, start, size, fields.data());
    for (int i = 0; i < count && i < static_cast<int>(table->num_cols); ++i) {
        const int column = fields[i].colnum;
        if (column >= 0 && column < static_cast<int>(table->num_cols))
            nulls[column] = fields[i].is_null != 0;
    }
    return nulls;
}

} // namespace

CMdbDatabase::CMdbDatabase()
    : d(std::make_unique<Impl>())
{
}

CMdbDatabase::~CMdbDatabase()
{
    Close();
}

bool CMdbDatabase::Open(const QString& nativePath)
{
    Close();
    if (!QFileInfo(nativePath).isFile()) {
        m_error = QStringLiteral("file not found: ") + nativePath;
        return false;
    }
    d->handle = mdb_open(QFile::encodeName(nativePath).constData(), MDB_NOFLAGS);
    if (!d->handle) {
        m_error = QStringLiteral("not an MS Access file: ") + nativePath;
        return false;
    }
    mdb_set_bind_size(d->handle, kMaxValueBytes);
    mdb_set_boolean_fmt_numbers(d->handle);
    if (!mdb_read_catalog(d->handle, MDB_TABLE)) {
        m_error = QStringLiteral("cannot read the catalog of ") + nativePath;
        Close();
        return false;
    }
    m_error.clear();
    return true;
}

void CMdbDatabase::Close()
{
    if (d->handle)
        mdb_close(d->handle);
    d->handle = nullptr;
}

bool CMdbDatabase::IsOpen() const
{
    return d->handle != nullptr;
}

QStringList CMdbDatabase::GetTableNames()
{
    QStringList names;
    if (!d->handle || !d->handle->catalog)
        return names;
    for (guint i = 0; i < d->handle->catalog->len; ++i) {
        auto* entry = static_cast<MdbCatalogEntry*>(g_ptr_array_index(d->handle->catalog, i));
        if (entry->object_type == MDB_TABLE && mdb_is_user_table(entry))
            names << QString::fromUtf8(entry->object_name);
    }
    return names;
}

bool CMdbDatabase::ReadTable(const QString& name, QStringList& columns, QList<QVariantList>& rows)
{
    if (!d->handle) {
        m_error = QStringLiteral("no Access file is open");
        return false;
    }
    QString stored;
    for (const QString& table : GetTableNames()) {
        if (table.compare(name, Qt::CaseInsensitive) == 0)
            stored = table;
    }
    QByteArray tableName = stored.toUtf8();
    TableGuard guard;
    if (!stored.isEmpty())
        guard.table = mdb_read_table_by_name(d->handle, tableName.data(), MDB_TABLE);
    if (!guard.table) {
        m_error = QStringLiteral("no such table: ") + name;
        return false;
    }
    MdbTableDef* table = guard.table;
    mdb_read_columns(table);
    mdb_rewind_table(table);

    const unsigned count = table->num_cols;
    std::vector<std::unique_ptr<char[]>> buffers(count);
    std::vector<int> lengths(count, 0);
    columns.clear();
    for (unsigned i = 0; i < count; ++i) {
        buffers[i].reset(new char[kMaxValueBytes + 1]);
        buffers[i][0] = '\0';
        mdb_bind_column(table, static_cast<int>(i) + 1, buffers[i].get(), &lengths[i]);
        columns << QString::fromUtf8(ColumnAt(table, i)->name);
    }
    rows.clear();
    while (mdb_fetch_row(table)) {
        const std::vector<bool> nulls = NullFlags(table);
        QVariantList row;
        for (unsigned i = 0; i < count; ++i)
            row << ToVariant(ColumnAt(table, i)->col_type, buffers[i].get(), nulls[i]);
        rows << row;
    }
    m_error.clear();
    return true;
}
