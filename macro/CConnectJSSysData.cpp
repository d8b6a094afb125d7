#include "CConnectJSSysData.h"

#include "CComDB.h"
#include "QxMfcFun.h"
#include "UIFunction.h"

#include <mutex>
#include <vector>

namespace {

// Database objects handed out here live until the process ends.
CComDB* MakeProcessLongDatabase()
{
    static std::mutex guard;
    static auto* kept = new std::vector<CComDB*>();
    std::lock_guard<std::mutex> lock(guard);
    kept->push_back(new CComDB());
    return kept->back();
}

} // namespace

CConnectJSSysData::CConnectJSSysData() = default;

CConnectJSSysData::~CConnectJSSysData()
{
    Disconnect();
}

bool CConnectJSSysData::ConnectDatabase(const QString& path)
{
    if (!QxMfc::Fun::CheckFile(path))
        UIFunction::QXMessageBox(QStringLiteral("没有找到连接的数据库!"), QString(), UIFunction::MB_ICONINFORMATION);
    m_connectionString = QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=\"") + path + QLatin1Char('"');
    if (!m_database)
        m_database = MakeProcessLongDatabase();
    m_database->Init();
    if (!m_database->Connect(m_connectionString, QString(), QString())) {
        UIFunction::QXMessageBox(QStringLiteral("连接到") + path + QStringLiteral("失败"), QString(),
                                 UIFunction::MB_ICONINFORMATION);
        return false;
    }
    m_databasePath = path;
    // No backslash counts as position 0: the folder becomes empty.
    m_databaseFolder = path.left(qMax<qsizetype>(0, path.lastIndexOf(QLatin1Char('\\'))));
    return true;
}

void CConnectJSSysData::Disconnect()
{
    if (m_database)
        m_database->DisConnect();
    m_databasePath = QStringLiteral("error");
    m_databaseFolder = QStringLiteral("error");
}
