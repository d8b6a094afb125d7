#pragma once
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <memory>

// An MS Access (.mdb/.accdb) file opened read-only through mdbtools' libmdb.
// Whole tables are read at once; nothing is ever written to the file.
class CMdbDatabase
{
public:
    CMdbDatabase();
    ~CMdbDatabase();
    CMdbDatabase(const CMdbDatabase&) = delete;
    CMdbDatabase& operator=(const CMdbDatabase&) = delete;

    bool Open(const QString& nativePath);
    void Close();
    bool IsOpen() const;
    const QString& GetError() const { return m_error; }

    QStringList GetTableNames();
    // Column names in table order and every row in storage order. Text comes
    // as QString, whole numbers as qlonglong, other numbers as double, NULL as
    // a null QVariant. The table name is matched without regard to case.
    bool ReadTable(const QString& name, QStringList& columns, QList<QVariantList>& rows);

    // Longest text or memo value read in full; longer ones are cut.
    static constexpr int kMaxValueBytes = 4 * 1024 * 1024;

private:
    struct Impl;
    std::unique_ptr<Impl> d;
    QString m_error;
};
