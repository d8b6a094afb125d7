#pragma once
#include <QString>

// The part of a run that one machine of a parallel CI job takes: shard K of N.
// A script's shard follows from a hash of its name alone, so adding or
// removing a script never moves another one, and every script belongs to
// exactly one of the N shards.
class CTestShard
{
public:
    CTestShard() = default; // shard 1 of 1: the whole run

    static constexpr int kMaxTotal = 10000;

    // "K/N" with 1 <= K <= N <= kMaxTotal. False with a one-line reason.
    static bool Parse(const QString& text, CTestShard& shard, QString& error);
    // The shard (1..total) that the script named `script` belongs to.
    static int Of(const QString& script, int total);

    bool Contains(const QString& script) const { return m_total == 1 || Of(script, m_total) == m_index; }
    bool IsWhole() const { return m_total == 1; }
    int Index() const { return m_index; }
    int Total() const { return m_total; }
    QString Text() const { return QStringLiteral("%1/%2").arg(m_index).arg(m_total); }

private:
    int m_index = 1;
    int m_total = 1;
};
