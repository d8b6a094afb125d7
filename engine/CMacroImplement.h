#pragma once
#include "CArray.h"
#include "CMacroParam.h"
#include "CScriptHost.h"

#include <QString>
#include <QStringList>

// Runs one macro on its own script engine: the inputs become "var"
// declarations in front of the global script and the script, the whole text
// runs as one block, and every output is read back by evaluating its name.
// Each run starts from a reset engine; the engine keeps the run's state
// until the next one, which EvalParam relies on. Results: 1 success, 0 failure.
//
// One object serves one thread at a time; objects on different threads run
// concurrently, each on its thread's engine.
class CMacroImplement
{
public:
    CMacroImplement() = default;
    virtual ~CMacroImplement() = default;

    // Declarations "\r\n" global script "\r\n" script. On failure the outputs
    // keep their values and GetError has the engine's error text.
    int ExecuteScript(const QString& script, const CArray<CMacroParam>& inputs, CArray<CMacroParam>& outputs);
    // Global script "\r\n" script; the caller's text carries its own inputs.
    int ExecuteScript(const QString& script, CArray<CMacroParam>& outputs);
    // The same with the script given as pieces to be joined with "\r\n":
    // the outcome is that of the joined text, but pieces that repeat from
    // call to call (a global function library) are not parsed again.
    int ExecuteScript(const QStringList& pieces, CArray<CMacroParam>& outputs);
    // Runs every text as one whole, never piece by piece (for coverage).
    void SetJoinedRuns(bool joined) { m_joinedRuns = joined; }

    // Evaluates the trimmed name on the engine; "参数不存在!" when that gives
    // no value (undefined, or an error such as an undeclared name). Always 1.
    int EvalParam(QString name, QString& value);

    QString GetError() const { return m_error; }
    // Reads the macro from a settings file and runs it; the caller's outputs
    // are replaced only when the run succeeds.
    int ExecuteMacroFile(const QString& path, CArray<CMacroParam>& outputs);

    void AddGlobalScript(const QString& text) { m_globalScript += QStringLiteral("\r\n") + text; }
    void ClearGlobalScript() { m_globalScript.clear(); }
    QString GetLastScript() const;

    // Coverage runs: after each run, LastLineHits holds how often each line
    // of the script given to ExecuteScript executed (1-based, declarations
    // and global script left out), failed runs included. Turning it on turns
    // on the engine's coverage for the process.
    void SetCollectCoverage(bool on);
    const std::map<int, qint64>& LastLineHits() const { return m_lineHits; }

    static QString DeclarationsOf(const CArray<CMacroParam>& inputs);
    static const QString kMissingParam;

    CMacroImplement(const CMacroImplement&) = delete;
    CMacroImplement& operator=(const CMacroImplement&) = delete;

private:
    int Run(const QStringList& pieces, bool split, CArray<CMacroParam>& outputs);
    void CollectLineHits(int prefixLines);

    QString m_error;
    QString m_globalScript;
    CScriptHost m_engine;
    QStringList m_lastPieces;
    bool m_joinedRuns = false;
    bool m_collectCoverage = false;
    std::map<int, qint64> m_lineHits;
};
