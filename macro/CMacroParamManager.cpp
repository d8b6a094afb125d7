#include "CMacroParamManager.h"

#include "CDBFactory.h"
#include "CDataServiceAbsolute.h"
#include "CSqlQuoteGuard.h"
#include "NDbDataSet.h"

namespace {

const QString kCrLf = QStringLiteral("\r\n");

QString Quoted(const QString& text)
{
    return QLatin1Char('\'') + text + QStringLiteral("',") + kCrLf;
}

} // namespace

CMacroParamManager::~CMacroParamManager() = default;

int CMacroParamManager::GetMaxParamId()
{
    CDataServiceAbsolute* db = CDBFactory::GetSingle(CDBFactory::kSystemDatabase);
    QString max;
    if (!db || !db->Retrieve(QStringLiteral("select max(id) from SC_MACROPARAM"), max))
        return -1;
    return max.toInt();
}

int CMacroParamManager::InsertInputParam(int macroId, const CMacroParam& param)
{
    return InsertParam(macroId, param, 0);
}

int CMacroParamManager::InsertOutputParam(int macroId, const CMacroParam& param)
{
    return InsertParam(macroId, param, 1);
}

int CMacroParamManager::InsertParam(int macroId, const CMacroParam& param, int direction)
{
    const int max = GetMaxParamId();
    if (max == -1)
        return -1;
    const QString sql = QStringLiteral("insert into SC_MACROPARAM ") + kCrLf + QStringLiteral(" values(")
                        + QString::number(max + 1) + QLatin1Char(',') + kCrLf + Quoted(param.GetName())
                        + Quoted(param.GetValue()) + Quoted(param.GetDescription())
                        + QString::number(direction) + QLatin1Char(',') + kCrLf + QString::number(macroId)
                        + QLatin1Char(',') + kCrLf + QString::number(param.GetDataType()) + kCrLf
                        + QLatin1Char(')');
    CDataServiceAbsolute* db = CDBFactory::GetSingle(CDBFactory::kSystemDatabase);
    if (!CSqlQuoteGuard::IsSafe(param) || !db || !db->ExecuteNonQuery(sql))
        return -1;
    return max;
}

bool CMacroParamManager::LoadInputParams(int macroId, CArray<CMacroParam>& params)
{
    return LoadParams(macroId, 0, params);
}

bool CMacroParamManager::LoadOutputParams(int macroId, CArray<CMacroParam>& params)
{
    return LoadParams(macroId, 1, params);
}

bool CMacroParamManager::LoadParams(int macroId, int direction, CArray<CMacroParam>& params)
{
    NDbDataSet set(CDBFactory::GetSingle(CDBFactory::kSystemDatabase));
    set.AddField(QStringLiteral("name"), FT_String, 200);
    set.AddField(QStringLiteral("value"), FT_String, 200);
    set.AddField(QStringLiteral("description"), FT_String, 200);
    set.AddField(QStringLiteral("datatype"), FT_Integer, 32);
    set.SetFieldPK(0, true);
    set.SetTableName(QStringLiteral("SC_MACROPARAM"));
    set.SetWhere(QString::asprintf(direction == 0 ? "where MACROID =%d AND TYPE=0" : "where MACROID =%d AND TYPE=1",
                                   macroId),
                 1);
    set.ParseSQL();
    // Only an empty result counts as failure here; a failed query (-1) gives
    // an empty list and true.
    if (set.RetrieveByXml() == 0)
        return false;
    params.RemoveAll();
    for (int row = 1; row <= set.GetRowCount(); ++row) {
        CMacroParam param(set.GetAsString(0, row), set.GetAsString(1, row), set.GetAsString(2, row));
        param.SetDataType(static_cast<std::uint32_t>(set.GetAsInteger(3, row)));
        params.Add(param);
    }
    return true;
}
