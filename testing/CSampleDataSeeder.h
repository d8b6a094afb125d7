#pragma once
#include <QString>

class CSampleScripts;

// Fills a fresh home folder with sample scripts so that a new user sees the
// script tests run at once: every script in the system database's Macros
// (those under "通用脚本\" or "图形法脚本\" also in MacrosV2), each script's
// global texts and cases in the test-case folder, and a "macrolist.log" as the
// host's own run would leave it.
//
// The rule that keeps a user's data safe: seeding happens only while the
// system database file does not exist (a server database is never seeded).
// Even then a script whose case folder already holds "GlobalFun.txt" keeps
// its files, and an existing "macrolist.log" stays. The database is built
// under a temporary name and moved into place last, so a seeding that fails
// half-way is simply tried again on the next start.
class CSampleDataSeeder
{
public:
    // Seeds the built-in samples when needed. False with Error() on failure.
    bool SeedIfNeeded();
    // Seeds the given scripts when needed (benchmarks bring their own).
    bool SeedIfNeeded(const CSampleScripts& samples);

    // True when the host context's system database is a file that does not exist.
    static bool NeedsSeeding();

    bool Seeded() const { return m_seeded; }
    int ScriptCount() const { return m_scripts; }
    int CaseCount() const { return m_cases; }
    QString Error() const { return m_error; }

private:
    bool WriteCases(const CSampleScripts& samples);
    bool WriteMacroList(const CSampleScripts& samples);
    bool WriteDatabase(const CSampleScripts& samples);
    bool Fail(const QString& error);

    bool m_seeded = false;
    int m_scripts = 0;
    int m_cases = 0;
    QString m_error;
};
