#pragma once
#include <QList>
#include <QMap>
#include <QPair>
#include <QString>
#include <QStringList>

class CDataServiceAbsolute;

// The estimating project the stand-in host computes: its members (beams,
// columns, slabs with their dimensions and bar diameters) in the table
// "ProjectMembers" of the system database, and in "MemberScripts" which
// stored scripts each member type runs, in which order, with which inputs.
//
// An input is "name=source": the source is a member field, an output of a
// script that ran before for the same member, or a number. A script's
// weight is a script expression over its variables after the run (kg).
//
// Both tables are made and filled with a small sample project the first time
// they are missing, as the sample scripts are seeded into a new home.
// Works on the calling thread's system database.
class CSampleProject
{
public:
    struct Member
    {
        QString name;
        QString kind;
        QMap<QString, QString> values; // member field -> number as text
    };
    struct ScriptUse
    {
        QString kind;
        QString key;
        QList<QPair<QString, QString>> inputs;
        QStringList outputs;
        QString weight;
    };

    static inline const QString kMembersTable = QStringLiteral("ProjectMembers");
    static inline const QString kScriptsTable = QStringLiteral("MemberScripts");
    // The number fields of a member, in column order.
    static const QStringList& MemberFields();

    // Reads the project, seeding both tables when missing. False with Error().
    bool Load();
    // Appends members after the existing ones, in one transaction.
    bool AddMembers(const QList<Member>& members);

    const QList<Member>& Members() const { return m_members; }
    const QList<ScriptUse>& Uses() const { return m_uses; }
    // The uses of one member type, in their order.
    QList<ScriptUse> UsesOf(const QString& kind) const;
    bool Seeded() const { return m_seeded; }
    QString Error() const { return m_error; }

    // "a=b;c=1.5" -> (a,b), (c,1.5); blanks around names are dropped, pieces
    // without exactly one "=" or with an empty side are skipped.
    static QList<QPair<QString, QString>> ParseInputs(const QString& text);
    static QList<Member> SampleMembers();

private:
    bool EnsureTables(CDataServiceAbsolute& db);
    bool InsertMembers(CDataServiceAbsolute& db, const QList<Member>& members, int firstId);
    bool ReadMembers(CDataServiceAbsolute& db);
    bool ReadUses(CDataServiceAbsolute& db);
    bool Fail(const QString& what, const CDataServiceAbsolute& db);

    QList<Member> m_members;
    QList<ScriptUse> m_uses;
    bool m_seeded = false;
    QString m_error;
};
