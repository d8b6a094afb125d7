#pragma once
#include "CJsErrorInfo.h"
#include "CJsRuntime.h"

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>

#include <atomic>
#include <deque>
#include <map>
#include <memory>
#include <string>

// One global scope of the engine (a realm of its own) with everything a host
// needs of it: run a text in it, evaluate an expression, call a global
// function, list the global functions, and the last error with its line and
// source text. Every run is timed against the host's budget.
//
// The scope is made on first use on the calling thread. Used from another
// thread later, it starts over with a fresh scope there (engine objects
// cannot move between threads). Reset drops it; the next use makes a new one.
class CJsRealm
{
public:
    CJsRealm() = default;
    ~CJsRealm();

    void Reset();

    // Runs `text` in the global scope. With `value`, the completion value is
    // given back (empty variant for undefined, String(value) otherwise).
    bool Run(const QString& text, QVariant* value);
    // Runs the pieces as the one text they make joined with "\r\n": values,
    // errors and their lines are those of that text. Pieces seen before are
    // not compiled again: where the split cannot differ from the whole, each
    // piece runs compiled on its own (at its line in the whole); should that
    // throw, the whole text runs afresh in a new global and its outcome is the
    // one reported. With joinedOnly, or where the split is in doubt, the
    // whole runs as it is.
    bool RunPieces(const QStringList& pieces, bool joinedOnly);
    // How the last RunPieces went: the whole ran as it is, the pieces ran,
    // or the pieces threw and the whole ran afresh.
    enum class PiecesRun { Joined, Split, SplitThenJoined };
    PiecesRun LastPiecesRun() const { return m_lastPiecesRun; }
    // Whether the last split run had a library declared on demand.
    bool LastRunHadLibrary() const { return m_lastRunHadLibrary; }
    bool Call(const QString& name, const QVariantList& args, QVariant& result);
    // Own enumerable data properties of the global that hold functions: the
    // functions that code run in this scope declared.
    QStringList FunctionNames();
    // Execution counts per line (1-based) of the text this scope ran last, as
    // the engine's line coverage has them; needs coverage on for the process
    // (CJsEngine::EnableCoverage) before that text ran. False when none.
    bool LineHits(std::map<int, qint64>& hits);

    const CJsErrorInfo& LastError() const { return m_error; }
    void ClearError() { m_error = CJsErrorInfo(); }

    // Called by the owning runtime, under its link's lock, when its thread
    // ends: drop the global there and forget the runtime.
    void OnRuntimeGone();

    CJsRealm(const CJsRealm&) = delete;
    CJsRealm& operator=(const CJsRealm&) = delete;

    // Texts kept for finding the source line of an error; in a scope that is
    // never reset the oldest are dropped beyond these bounds (the newest text
    // is always kept).
    static constexpr std::size_t kMaxTexts = 1024;
    static constexpr qsizetype kMaxTextChars = 4 * 1024 * 1024;

private:
    CJsRuntime* Bind();
    void Unbind();
    JSObject* Global(CJsRuntime& runtime);
    // A text is kept as the pieces it is made of, joined only when a line of it is wanted.
    void AddText(const std::string& name, const QStringList& pieces);
    bool Execute(CJsRuntime& runtime, const QString& text, QVariant* value);
    struct Source
    {
        const QString& text;
        const std::string& file;
        int line = 1;
        bool keepValue = false;
        bool cache = false;
    };
    // Compiles the text as `file` from `line` (or takes it from the thread's
    // cache) and runs it in the current global; no jobs are drained.
    bool ExecuteAs(CJsRuntime& runtime, const Source& source, JS::MutableHandleValue result);
    enum class SplitOutcome { Passed, InDoubt, Threw, Stopped };
    SplitOutcome RunSplit(CJsRuntime& runtime, const QStringList& pieces);
    // Binds to the thread's engine, enters the global and runs body(runtime,
    // global); a failing body leaves its error. A missing global leaves one
    // only with captureMissingGlobal.
    template <class Body>
    bool InGlobal(bool captureMissingGlobal, Body&& body);
    void CaptureError(CJsRuntime& runtime);
    void CaptureStop(CJsRuntime& runtime);
    QString SourceLineFor(const char* file, int& line) const;

    std::shared_ptr<CJsRuntime::Link> m_link;
    std::atomic<CJsRuntime*> m_runtime{nullptr};
    CJsRuntime::RootedGlobal m_global;
    std::deque<std::pair<std::string, QStringList>> m_texts; // file name, pieces of the text
    qsizetype m_textChars = 0;
    std::uint64_t m_nextText = 0;
    CJsErrorInfo m_error;
    PiecesRun m_lastPiecesRun = PiecesRun::Joined;
    bool m_lastRunHadLibrary = false;
};
