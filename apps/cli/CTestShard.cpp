#include "CTestShard.h"

#include <QCryptographicHash>
#include <QRegularExpression>

bool CTestShard::Parse(const QString& text, CTestShard& shard, QString& error)
{
    static const QRegularExpression form(QStringLiteral("^(\\d{1,9})/(\\d{1,9})$"));
    const QRegularExpressionMatch match = form.match(text);
    const int index = match.hasMatch() ? match.captured(1).toInt() : 0;
    const int total = match.hasMatch() ? match.captured(2).toInt() : 0;
    if (index < 1 || total > kMaxTotal || index > total) {
        error = QStringLiteral("wants K/N with 1 <= K <= N <= %1, not \"%2\"").arg(kMaxTotal).arg(text);
        return false;
    }
    shard.m_index = index;
    shard.m_total = total;
    return true;
}

int CTestShard::Of(const QString& script, int total)
{
    if (total <= 1)
        return 1;
    // A cryptographic hash of the UTF-8 name: the same on every machine and
    // every build (unlike qHash, which is seeded per process), and even
    // enough that the shards get about the same number of scripts.
    const QByteArray digest = QCryptographicHash::hash(script.toUtf8(), QCryptographicHash::Sha1);
    quint64 value = 0;
    for (int i = 0; i < 8; ++i)
        value = (value << 8) | quint8(digest[i]);
    return int(value % quint64(total)) + 1;
}
