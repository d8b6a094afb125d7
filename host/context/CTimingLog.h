#pragma once
#include <QHash>
#include <QList>
#include <QMutex>
#include <QPair>
#include <QString>
#include <functional>

// Where CTiming records: one process-wide table of timed stretches, keyed by
// (group, label), in the order each key was first recorded. Every entry adds
// up its stretches (count and total). Nothing reaches a file until Dump, except
// for timers made with the write-each-stretch flag, whose lines are appended
// to the log at once.
//
// The log file is "\timing.log" in the system data folder, 8-bit text in the
// host's code page, appended and never truncated. Line formats (ms with three
// decimals, label last, like the diagnostics clocks):
//   Dump, one line per entry:
//     timing[<group>]'s sum is (<total> ms, <count> times) \t<label> \r\n
//   One stretch (write-each-stretch timers):
//     timing[<group>] (<elapsed> ms) \t<label> \r\n
class CTimingLog
{
public:
    struct Entry
    {
        QString group;
        QString label;
        qint64 count = 0;
        qint64 totalNs = 0;
    };
    // Monotonic time in nanoseconds.
    using Clock = std::function<qint64()>;

    static CTimingLog& Instance();

    void Add(const QString& group, const QString& label, qint64 elapsedNs, bool writeNow);
    QList<Entry> Entries() const;
    void Clear();

    // The lines of every entry, joined; empty when nothing was recorded.
    QString DumpText() const;
    // Appends DumpText to `path` (default: the log file) in one write. False
    // when the file cannot be opened; nothing is written for an empty table.
    bool Dump(const QString& path = QString()) const;
    static QString DefaultPath();

    static QString FormatEntry(const Entry& entry);
    static QString FormatStretch(const QString& group, const QString& label, qint64 elapsedNs);

    // Replaces the time source (tests); an empty clock restores the steady clock.
    void SetClock(Clock clock);
    qint64 Now() const;

private:
    CTimingLog() = default;

    mutable QMutex m_mutex;
    QList<Entry> m_entries;
    QHash<QPair<QString, QString>, int> m_index;
    Clock m_clock;
};
