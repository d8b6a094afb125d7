#include "CMacroDataManager.h"

#include "CDBFactory.h"
#include "CDataServiceAbsolute.h"
#include "CMacroParamManager.h"
#include "CSqlQuoteGuard.h"
#include "NDbDataSet.h"

#include <vector>

namespace {

const QString kCrLf = QStringLiteral("\r\n");

CDataServiceAbsolute* Service()
{
    return CDBFactory::GetSingle(CDBFactory::kSystemDatabase);
}

bool Execute(const QString& sql)
{
    CDataServiceAbsolute* db = Service();
    return db && db->ExecuteNonQuery(sql);
}

// The row statements splice name and description; one holding a quote is
// never sent and fails as it would have failed.
bool ExecuteRowStatement(const CMacro& macro, const QString& sql)
{
    return CSqlQuoteGuard::IsSafe(macro.GetName()) && CSqlQuoteGuard::IsSafe(macro.GetDescription()) && Execute(sql);
}

void DeclareMacroFields(NDbDataSet& set, int descriptionWidth)
{
    set.AddField(QStringLiteral("id"), FT_Integer, 32);
    set.AddField(QStringLiteral("name"), FT_String, 200);
    set.AddField(QStringLiteral("type"), FT_Integer, 32);
    set.AddField(QStringLiteral("description"), FT_String, descriptionWidth);
    set.AddField(QStringLiteral("content"), FT_LongString, 10000);
    set.SetFieldPK(0, true);
    set.SetTableName(QStringLiteral("SC_MACRO_DEFINE"));
}

} // namespace

CMacroDataManager::~CMacroDataManager() = default;

bool CMacroDataManager::Connect(const QString& connection, const QString& user, const QString& password)
{
    CDataServiceAbsolute* db = Service();
    return db && db->Init() && db->Connect(connection, user, password);
}

int CMacroDataManager::GetMaxMacroId()
{
    CDataServiceAbsolute* db = Service();
    QString max;
    if (!db || !db->Retrieve(QStringLiteral("select max(id) from SC_MACRO_DEFINE"), max))
        return -1;
    return max.toInt();
}

bool CMacroDataManager::WriteScript(int id, const QString& script)
{
    const QString sql = QStringLiteral("update SC_MACRO_DEFINE set CONTENT = '") + script
                        + QStringLiteral("' where ID=") + QString::number(id);
    // Only the low byte of each character reaches the blob; kept on purpose.
    std::vector<unsigned char> bytes(static_cast<size_t>(script.size()) + 1, 0);
    for (qsizetype i = 0; i < script.size(); ++i)
        bytes[static_cast<size_t>(i)] = static_cast<unsigned char>(script.at(i).unicode() & 0xFF);
    CDataServiceAbsolute* db = Service();
    return db && db->UpdateBlob(sql, bytes.data(), static_cast<int>(script.size()));
}

int CMacroDataManager::InsertMacro(const CMacro& macro)
{
    const int max = GetMaxMacroId();
    if (max == -1)
        return -1;
    const int id = max + 1;
    const QString sql = QStringLiteral("insert into SC_MACRO_DEFINE ") + kCrLf + QStringLiteral(" values(")
                        + QString::number(id) + QLatin1Char(',') + kCrLf + QLatin1Char('\'') + macro.GetName()
                        + QStringLiteral("',") + kCrLf + QStringLiteral("'',") + kCrLf
                        + QString::number(macro.GetType()) + QLatin1Char(',') + kCrLf + QLatin1Char('\'')
                        + macro.GetDescription() + QStringLiteral("')") + kCrLf;
    if (!ExecuteRowStatement(macro, sql) || !WriteScript(id, macro.GetContent()))
        return -1;
    if (!SaveMacroParams(id, macro.InputParams(), macro.OutputParams()))
        return -1;
    return id;
}

int CMacroDataManager::UpdateMacro(int id, const CMacro& macro)
{
    const QString sql = QStringLiteral("update SC_MACRO_DEFINE ") + kCrLf + QStringLiteral(" set name = '")
                        + macro.GetName() + QStringLiteral("',") + kCrLf + QStringLiteral(" description = '")
                        + macro.GetDescription() + QStringLiteral("',") + kCrLf
                        + QStringLiteral(" content = '',") + kCrLf + QStringLiteral(" type = ")
                        + QString::number(macro.GetType()) + kCrLf + QStringLiteral(" where ID=")
                        + QString::number(id);
    if (!ExecuteRowStatement(macro, sql))
        return 0;
    const bool done = WriteScript(id, macro.GetContent()) && DeleteMacroParams(id)
                      && SaveMacroParams(id, macro.InputParams(), macro.OutputParams());
    return done ? 1 : -1;
}

bool CMacroDataManager::DeleteMacro(int id)
{
    if (!Execute(QStringLiteral("delete from SC_MACRO_DEFINE where ID=") + QString::number(id)))
        return false;
    return DeleteMacroParams(id);
}

bool CMacroDataManager::DeleteMacroParams(int id)
{
    return Execute(QStringLiteral("delete from SC_MACROPARAM where MACROID = ") + QString::number(id));
}

bool CMacroDataManager::SaveMacroParams(int id, const CArray<CMacroParam>& inputs, const CArray<CMacroParam>& outputs)
{
    CMacroParamManager params;
    for (const CMacroParam& param : inputs) {
        if (params.InsertInputParam(id, param) == -1)
            return false;
    }
    for (const CMacroParam& param : outputs) {
        if (params.InsertOutputParam(id, param) == -1)
            return false;
    }
    return true;
}

bool CMacroDataManager::LoadMacro(int id, CMacro& macro)
{
    NDbDataSet set(Service());
    DeclareMacroFields(set, 400);
    set.SetWhere(QString::asprintf("where ID =%d", id), 1);
    set.ParseSQL();
    if (set.RetrieveByXml() == -1)
        return false;
    macro.SetId(id);
    macro.SetName(set.GetAsString(1, 1));
    macro.SetType(set.GetAsInteger(2, 1));
    macro.SetDescription(set.GetAsString(3, 1));
    macro.SetContent(set.GetAsString(4, 1));
    CMacroParamManager params;
    return params.LoadInputParams(id, macro.InputParams()) && params.LoadOutputParams(id, macro.OutputParams());
}

bool CMacroDataManager::LoadAllMacros(CArray<CMacro>& macros)
{
    NDbDataSet set(Service());
    DeclareMacroFields(set, 200);
    set.ParseSQL();
    if (set.RetrieveByXml() == -1)
        return false;
    macros.RemoveAll();
    for (int row = 1; row <= set.GetRowCount(); ++row) {
        CMacro macro(set.GetAsInteger(2, row), set.GetAsString(1, row), set.GetAsString(3, row),
                     set.GetAsString(4, row));
        macro.SetId(set.GetAsInteger(0, row));
        macros.Add(macro);
    }
    return true;
}
