#include "CConnectionString.h"

#include "NativePath.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>
#include <QUrlQuery>

namespace {

enum class FileKind { Unknown, SQLite, Access };

FileKind SniffFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return FileKind::Unknown;
    const QByteArray head = file.read(32);
    if (head.startsWith(QByteArrayLiteral("SQLite format 3")))
        return FileKind::SQLite;
    const QByteArray magic = head.mid(4, 15);
    if (magic == "Standard Jet DB" || magic == "Standard ACE DB")
        return FileKind::Access;
    return FileKind::Unknown;
}

bool HasAccessExtension(const QString& path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    return suffix == QLatin1String("mdb") || suffix == QLatin1String("accdb");
}

// The value of `key` in a "k1=v1;k2=\"v2\"" list; a double-quoted value may
// hold ';'. Sets `found` and returns false on an unterminated quote.
bool FindJetValue(const QString& text, const QString& key, QString& value, bool& found)
{
    found = false;
    int pos = 0;
    while (pos < text.size()) {
        const int eq = text.indexOf(QLatin1Char('='), pos);
        if (eq < 0)
            return true;
        const QString name = text.mid(pos, eq - pos).trimmed();
        int end = eq + 1;
        QString raw;
        if (end < text.size() && text.at(end) == QLatin1Char('"')) {
            const int close = text.indexOf(QLatin1Char('"'), end + 1);
            if (close < 0)
                return false;
            raw = text.mid(end + 1, close - end - 1);
            end = text.indexOf(QLatin1Char(';'), close);
        } else {
            const int semi = text.indexOf(QLatin1Char(';'), end);
            raw = text.mid(end, semi < 0 ? -1 : semi - end).trimmed();
            end = semi;
        }
        if (name.compare(key, Qt::CaseInsensitive) == 0) {
            value = raw;
            found = true;
        }
        if (end < 0)
            return true;
        pos = end + 1;
    }
    return true;
}

const QRegularExpression& JetKey()
{
    static const QRegularExpression key(QStringLiteral("(^|;)\\s*Data\\s+Source\\s*="),
                                        QRegularExpression::CaseInsensitiveOption);
    return key;
}

} // namespace

bool CConnectionString::IsServerUrl(const QString& text)
{
    const QString t = text.trimmed();
    return t.startsWith(QLatin1String("postgresql://"), Qt::CaseInsensitive)
           || t.startsWith(QLatin1String("postgres://"), Qt::CaseInsensitive);
}

CConnectionString CConnectionString::Parse(const QString& text)
{
    CConnectionString result;
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        result.Fail(QStringLiteral("empty connection string"));
    else if (IsServerUrl(trimmed))
        result.ParseServerUrl(trimmed);
    else if (trimmed.contains(JetKey()))
        result.ParseJet(trimmed);
    else
        result.SetFile(trimmed);
    return result;
}

void CConnectionString::Fail(const QString& error)
{
    m_backend = Backend::Invalid;
    m_error = error;
}

void CConnectionString::ParseServerUrl(const QString& text)
{
    const QUrl url(text, QUrl::StrictMode);
    if (!url.isValid()) {
        Fail(QStringLiteral("malformed server URL: ") + url.errorString());
        return;
    }
    const QUrlQuery query(url);
    m_host = query.hasQueryItem(QStringLiteral("host")) ? query.queryItemValue(QStringLiteral("host"), QUrl::FullyDecoded)
                                                        : url.host();
    m_port = url.port(5432);
    if (query.hasQueryItem(QStringLiteral("port"))) {
        bool ok = false;
        m_port = query.queryItemValue(QStringLiteral("port")).toInt(&ok);
        if (!ok || m_port <= 0 || m_port > 65535) {
            Fail(QStringLiteral("bad port in server URL"));
            return;
        }
    }
    m_database = url.path(QUrl::FullyDecoded).mid(1);
    m_user = url.userName(QUrl::FullyDecoded);
    m_password = url.password(QUrl::FullyDecoded);
    if (m_database.isEmpty() || m_database.contains(QLatin1Char('/'))) {
        Fail(QStringLiteral("server URL names no database"));
        return;
    }
    m_backend = Backend::PostgreSQL;
}

void CConnectionString::ParseJet(const QString& text)
{
    QString source;
    bool found = false;
    if (!FindJetValue(text, QStringLiteral("Data Source"), source, found)) {
        Fail(QStringLiteral("unterminated quote in connection string"));
        return;
    }
    if (!found || source.trimmed().isEmpty()) {
        Fail(QStringLiteral("connection string names no data source"));
        return;
    }
    SetFile(source);
}

void CConnectionString::SetFile(const QString& path)
{
    m_filePath = NativePath::Map(path);
    switch (SniffFile(m_filePath)) {
    case FileKind::SQLite:
        m_backend = Backend::SQLite;
        break;
    case FileKind::Access:
        m_backend = Backend::Access;
        break;
    case FileKind::Unknown:
        m_backend = HasAccessExtension(m_filePath) ? Backend::Access : Backend::SQLite;
        break;
    }
}
