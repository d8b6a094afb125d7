#include "CTimingLog.h"

#include "QxMfcFun.h"

#include <chrono>

namespace {

QString Millis(qint64 ns)
{
    return QString::number(double(ns) / 1e6, 'f', 3);
}

} // namespace

CTimingLog& CTimingLog::Instance()
{
    static CTimingLog log;
    return log;
}

void CTimingLog::Add(const QString& group, const QString& label, qint64 elapsedNs, bool writeNow)
{
    {
        QMutexLocker lock(&m_mutex);
        const QPair<QString, QString> key(group, label);
        auto it = m_index.constFind(key);
        int index = 0;
        if (it == m_index.constEnd()) {
            index = int(m_entries.size());
            m_index.insert(key, index);
            m_entries.append(Entry{group, label, 0, 0});
        } else {
            index = it.value();
        }
        Entry& entry = m_entries[index];
        ++entry.count;
        entry.totalNs += elapsedNs;
    }
    if (writeNow)
        QxMfc::Fun::AppendCString2File(DefaultPath(), FormatStretch(group, label, elapsedNs));
}

QList<CTimingLog::Entry> CTimingLog::Entries() const
{
    QMutexLocker lock(&m_mutex);
    return m_entries;
}

void CTimingLog::Clear()
{
    QMutexLocker lock(&m_mutex);
    m_entries.clear();
    m_index.clear();
}

QString CTimingLog::DumpText() const
{
    QString text;
    for (const Entry& entry : Entries())
        text += FormatEntry(entry);
    return text;
}

bool CTimingLog::Dump(const QString& path) const
{
    const QString text = DumpText();
    if (text.isEmpty())
        return true;
    return QxMfc::Fun::AppendCString2File(path.isEmpty() ? DefaultPath() : path, text);
}

QString CTimingLog::DefaultPath()
{
    return QxMfc::Fun::GetSysDataPath() + QStringLiteral("\\timing.log");
}

QString CTimingLog::FormatEntry(const Entry& entry)
{
    return QStringLiteral("timing[") + entry.group + QStringLiteral("]'s sum is (") + Millis(entry.totalNs)
        + QStringLiteral(" ms, ") + QString::number(entry.count) + QStringLiteral(" times) \t") + entry.label
        + QStringLiteral(" \r\n");
}

QString CTimingLog::FormatStretch(const QString& group, const QString& label, qint64 elapsedNs)
{
    return QStringLiteral("timing[") + group + QStringLiteral("] (") + Millis(elapsedNs) + QStringLiteral(" ms) \t")
        + label + QStringLiteral(" \r\n");
}

void CTimingLog::SetClock(Clock clock)
{
    QMutexLocker lock(&m_mutex);
    m_clock = std::move(clock);
}

qint64 CTimingLog::Now() const
{
    {
        QMutexLocker lock(&m_mutex);
        if (m_clock)
            return m_clock();
    }
    using namespace std::chrono;
    return duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count();
}
