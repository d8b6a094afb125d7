#include "CSampleProject.h"

#include "CDBFactory.h"
#include "CDataServiceAbsolute.h"

namespace {

struct UseRow
{
    const char16_t* kind;
    const char16_t* key;
    const char* inputs;
    const char* outputs;
    const char* weight;
};

// Which sample scripts each member type runs. Later inputs may take earlier
// outputs (the column's lap length takes the anchorage length).
const UseRow kSampleUses[] = {
    {u"梁", u"通用脚本\\钢筋每米重量.js", "d=d", "W", ""},
    {u"梁", u"通用脚本\\受拉钢筋锚固长度.js", "d=d", "lab,la", ""},
    {u"梁", u"梁\\弯起钢筋长度.js", "span=length;h=h;c=cover;d=d", "L", "2 * L / 1000 * BarWeightPerMeter(d)"},
    {u"梁", u"梁\\矩形箍筋下料长度.js", "b=b;h=h;c=cover;d=dg;span=length;s=spacing", "L,n",
     "n * L / 1000 * BarWeightPerMeter(d)"},
    {u"柱", u"通用脚本\\受拉钢筋锚固长度.js", "d=d", "lab,la", ""},
    {u"柱", u"通用脚本\\纵向受拉钢筋搭接长度.js", "la=la;percent=50", "zetaL,ll", ""},
    {u"柱", u"柱\\柱纵筋长度.js", "H=length;ll=ll;nb=nb;d=d", "L,W", "W"},
    {u"柱", u"梁\\矩形箍筋下料长度.js", "b=b;h=h;c=cover;d=dg;span=length;s=spacing", "L,n",
     "n * L / 1000 * BarWeightPerMeter(d)"},
    {u"板", u"板\\板分布筋.js", "span=length;s=spacing;width=b;d=dg", "n,L,W", "W"},
    {u"板", u"通用脚本\\钢筋每米重量.js", "d=d", "W", ""},
};

QString Text(const QVariant& value)
{
    return value.isNull() ? QString() : value.toString();
}

} // namespace

const QStringList& CSampleProject::MemberFields()
{
    static const QStringList fields = {QStringLiteral("b"), QStringLiteral("h"), QStringLiteral("length"),
                                       QStringLiteral("cover"), QStringLiteral("d"), QStringLiteral("dg"),
                                       QStringLiteral("spacing"), QStringLiteral("nb")};
    return fields;
}

QList<CSampleProject::Member> CSampleProject::SampleMembers()
{
    // name, kind, then b h length cover d dg spacing nb (mm, count)
    struct Row
    {
        const char16_t* name;
        const char16_t* kind;
        int values[8];
    };
    static const Row rows[] = {
        {u"KL1", u"梁", {300, 600, 6000, 25, 20, 8, 200, 4}}, {u"KL2", u"梁", {250, 500, 4500, 25, 18, 8, 150, 3}},
        {u"L1", u"梁", {200, 400, 3300, 25, 16, 6, 200, 2}},  {u"KZ1", u"柱", {500, 500, 3000, 30, 25, 10, 100, 12}},
        {u"KZ2", u"柱", {400, 400, 3600, 30, 20, 8, 150, 8}}, {u"B1", u"板", {3600, 120, 3000, 15, 10, 6, 250, 0}},
        {u"B2", u"板", {4200, 120, 3300, 15, 8, 6, 200, 0}},
    };
    QList<Member> members;
    for (const Row& row : rows) {
        Member member{QString::fromUtf16(row.name), QString::fromUtf16(row.kind), {}};
        for (int i = 0; i < MemberFields().size(); ++i)
            member.values.insert(MemberFields().at(i), QString::number(row.values[i]));
        members.append(member);
    }
    return members;
}

QList<QPair<QString, QString>> CSampleProject::ParseInputs(const QString& text)
{
    QList<QPair<QString, QString>> inputs;
    for (const QString& piece : text.split(QLatin1Char(';'))) {
        const QStringList sides = piece.split(QLatin1Char('='));
        if (sides.size() != 2 || sides.at(0).trimmed().isEmpty() || sides.at(1).trimmed().isEmpty())
            continue;
        inputs.append({sides.at(0).trimmed(), sides.at(1).trimmed()});
    }
    return inputs;
}

bool CSampleProject::Load()
{
    m_members.clear();
    m_uses.clear();
    m_seeded = false;
    CDataServiceAbsolute* db = CDBFactory::GetSingle(CDBFactory::kSystemDatabase);
    if (!db) {
        m_error = QStringLiteral("没有系统数据库");
        return false;
    }
    return EnsureTables(*db) && ReadMembers(*db) && ReadUses(*db);
}

bool CSampleProject::EnsureTables(CDataServiceAbsolute& db)
{
    QString count;
    if (db.Retrieve(QStringLiteral("select count(*) from %1").arg(kMembersTable), count))
        return true;
    const bool made =
        db.ExecuteNonQuery(QStringLiteral("create table %1 (id integer, name varchar(64), kind varchar(16), "
                                          "b double precision, h double precision, length double precision, "
                                          "cover double precision, d double precision, dg double precision, "
                                          "spacing double precision, nb double precision)")
                               .arg(kMembersTable))
        && db.ExecuteNonQuery(QStringLiteral("create table if not exists %1 (kind varchar(16), seq integer, "
                                             "key_ch varchar(255), inputs varchar(255), outputs varchar(255), "
                                             "weight varchar(255))")
                                  .arg(kScriptsTable));
    if (!made)
        return Fail(QStringLiteral("无法建立工程表"), db);
    if (!db.ExecuteNonQuery(QStringLiteral("begin")))
        return Fail(QStringLiteral("无法建立工程表"), db);
    bool ok = InsertMembers(db, SampleMembers(), 1);
    int seq = 0;
    for (const UseRow& row : kSampleUses) {
        ok = ok
             && db.ExecuteBound(QStringLiteral("insert into %1 (kind, seq, key_ch, inputs, outputs, weight) "
                                               "values (?, ?, ?, ?, ?, ?)")
                                    .arg(kScriptsTable),
                                {QString::fromUtf16(row.kind), ++seq, QString::fromUtf16(row.key),
                                 QString::fromLatin1(row.inputs), QString::fromLatin1(row.outputs),
                                 QString::fromLatin1(row.weight)});
    }
    if (!ok || !db.ExecuteNonQuery(QStringLiteral("commit"))) {
        const QString error = db.GetError();
        db.ExecuteNonQuery(QStringLiteral("rollback"));
        m_error = QStringLiteral("无法写入示例工程: ") + error;
        return false;
    }
    m_seeded = true;
    return true;
}

bool CSampleProject::InsertMembers(CDataServiceAbsolute& db, const QList<Member>& members, int firstId)
{
    const QString sql = QStringLiteral("insert into %1 (id, name, kind, %2) values (?, ?, ?, %3)")
                            .arg(kMembersTable, MemberFields().join(QStringLiteral(", ")),
                                 QStringList(MemberFields().size(), QStringLiteral("?")).join(QStringLiteral(", ")));
    int id = firstId;
    for (const Member& member : members) {
        QVariantList params = {id++, member.name, member.kind};
        for (const QString& field : MemberFields())
            params.append(member.values.value(field, QStringLiteral("0")).toDouble());
        if (!db.ExecuteBound(sql, params))
            return false;
    }
    return true;
}

bool CSampleProject::AddMembers(const QList<Member>& members)
{
    if (!Load())
        return false;
    CDataServiceAbsolute* db = CDBFactory::GetSingle(CDBFactory::kSystemDatabase);
    QString maxId;
    db->Retrieve(QStringLiteral("select max(id) from %1").arg(kMembersTable), maxId);
    if (!db->ExecuteNonQuery(QStringLiteral("begin")))
        return Fail(QStringLiteral("无法写入构件"), *db);
    if (!InsertMembers(*db, members, maxId.toInt() + 1) || !db->ExecuteNonQuery(QStringLiteral("commit"))) {
        Fail(QStringLiteral("无法写入构件"), *db);
        db->ExecuteNonQuery(QStringLiteral("rollback"));
        return false;
    }
    return Load();
}

bool CSampleProject::ReadMembers(CDataServiceAbsolute& db)
{
    QList<QVariantList> rows;
    if (!db.Query(QStringLiteral("select name, kind, %1 from %2 order by id")
                      .arg(MemberFields().join(QStringLiteral(", ")), kMembersTable),
                  {}, rows))
        return Fail(QStringLiteral("无法读取构件表"), db);
    for (const QVariantList& row : rows) {
        Member member{Text(row.value(0)), Text(row.value(1)), {}};
        for (int i = 0; i < MemberFields().size(); ++i)
            member.values.insert(MemberFields().at(i), QString::number(row.value(i + 2).toDouble()));
        m_members.append(member);
    }
    return true;
}

bool CSampleProject::ReadUses(CDataServiceAbsolute& db)
{
    QList<QVariantList> rows;
    if (!db.Query(QStringLiteral("select kind, key_ch, inputs, outputs, weight from %1 order by kind, seq")
                      .arg(kScriptsTable),
                  {}, rows))
        return Fail(QStringLiteral("无法读取构件脚本表"), db);
    for (const QVariantList& row : rows) {
        ScriptUse use{Text(row.value(0)), Text(row.value(1)), ParseInputs(Text(row.value(2))), {},
                      Text(row.value(4)).trimmed()};
        for (const QString& name : Text(row.value(3)).split(QLatin1Char(','), Qt::SkipEmptyParts))
            use.outputs.append(name.trimmed());
        m_uses.append(use);
    }
    return true;
}

QList<CSampleProject::ScriptUse> CSampleProject::UsesOf(const QString& kind) const
{
    QList<ScriptUse> uses;
    for (const ScriptUse& use : m_uses)
        if (use.kind == kind)
            uses.append(use);
    return uses;
}

bool CSampleProject::Fail(const QString& what, const CDataServiceAbsolute& db)
{
    m_error = what + QStringLiteral(": ") + db.GetError();
    return false;
}
