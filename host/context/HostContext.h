#pragma once
#include <QByteArray>
#include <QMap>
#include <QString>

// What the process that loads the library tells it about the host: where the
// system data and database live, where test cases are kept, how drive letters
// map to folders, the 8-bit code page and the script time budget.
//
// Defaults live under VELMORA_HOME (default ~/.local/share/velmora). Each value
// can be overridden by an environment variable (LoadFromEnvironment) or a
// setter. This is the only place of the library that reads the environment.
// Configure it before starting worker threads; afterwards it is read-only.
class HostContext
{
public:
    static HostContext& Instance();

    // Re-reads every value from the environment, dropping earlier setters.
    void LoadFromEnvironment();

    QString Home() const { return m_home; }
    QString SysDataPath() const;
    QString SystemDatabase() const;
    QString TestCaseRoot() const;
    QString DriveRoot(QChar letter) const;
    QByteArray CodePage() const { return m_codePage; }
    int ScriptTimeBudgetMs() const { return m_scriptBudgetMs; }

    // Setting the home folder drops overrides that were derived from the old one.
    void SetHome(const QString& home);
    void SetSysDataPath(const QString& path) { m_sysData = path; }
    void SetSystemDatabase(const QString& path) { m_systemDb = path; }
    void SetTestCaseRoot(const QString& path) { m_testCaseRoot = path; }
    void SetDriveRoot(QChar letter, const QString& path);
    void SetCodePage(const QByteArray& name) { m_codePage = name; }
    void SetScriptTimeBudgetMs(int ms) { m_scriptBudgetMs = ms; }

    // Makes the home, system data, test-case and drive C folders if missing.
    bool EnsureFolders() const;

    static constexpr int kDefaultScriptBudgetMs = 10000;
    static const char* const kTestCaseFolderName;

private:
    HostContext();

    QString m_home;
    QString m_sysData;
    QString m_systemDb;
    QString m_testCaseRoot;
    QMap<QChar, QString> m_driveRoots;
    QByteArray m_codePage = "GBK";
    int m_scriptBudgetMs = kDefaultScriptBudgetMs;
};
