#include "CJsRealm.h"

#include "CJsEngine.h"
#include "CJsGlobalClass.h"
#include "CJsText.h"
#include "HostContext.h"

#include <js/CallAndConstruct.h>
#include <js/CompilationAndEvaluation.h>
#include <js/CompileOptions.h>
#include <js/ErrorReport.h>
#include <js/Exception.h>
#include <js/PropertyAndElement.h>
#include <js/PropertyDescriptor.h>
#include <js/SourceText.h>
#include <js/String.h>
#include <js/experimental/CodeCoverage.h>
#include <js/experimental/JSStencil.h>
#include <jsapi.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <string_view>

namespace
{
constexpr char kFilePrefix[] = "velmora-script-";
// Every piece of a case and the whole it makes share one file name, so
// stacks and error texts name the same file either way.
constexpr char kPiecesName[] = "case";

// Ends a run of the realm's runtime when it goes out of scope.
class RunScope
{
public:
    explicit RunScope(CJsRuntime& runtime) : m_runtime(runtime) { m_runtime.BeginRun(); }
    ~RunScope() { m_runtime.EndRun(); }
    RunScope(const RunScope&) = delete;
    RunScope& operator=(const RunScope&) = delete;

private:
    CJsRuntime& m_runtime;
};

// Texts are named "velmora-script-<key>"; code made by eval or Function
// inside one is named "velmora-script-<key> line 3 > eval", and then line 3
// is where it came from.
bool ParseFileName(const char* file, std::string& name, int& callerLine)
{
    if (!file || std::strncmp(file, kFilePrefix, sizeof(kFilePrefix) - 1) != 0)
        return false;
    const char* end = std::strchr(file, ' ');
    name.assign(file, end ? static_cast<std::size_t>(end - file) : std::strlen(file));
    callerLine = 0;
    if (end && std::strncmp(end, " line ", 6) == 0)
        callerLine = static_cast<int>(std::strtol(end + 6, nullptr, 10));
    return true;
}

// The engine reports running out of memory as the bare string "out of
// memory" with no stack; a script throwing that string has one.
bool IsEngineOutOfMemory(JSContext* cx, const JS::ExceptionStack& exception)
{
    if (exception.stack() || !exception.exception().isString())
        return false;
    bool match = false;
    return JS_StringEqualsLiteral(cx, exception.exception().toString(), "out of memory", &match) && match;
}

QString OutOfMemoryText(const CJsRuntime& runtime)
{
    return QStringLiteral("脚本内存不足(堆上限%1 MB)").arg(runtime.HeapLimitBytes() / (1024u * 1024u));
}
} // namespace

CJsRealm::~CJsRealm()
{
    Unbind();
}

void CJsRealm::Reset()
{
    if (m_global)
    {
        CJsRuntime* runtime = CJsRuntime::CurrentIfAny();
        if (runtime && m_runtime.load() == runtime)
            m_global.reset();
        else
            Unbind();
    }
    m_texts.clear();
    m_textChars = 0;
}

CJsRuntime* CJsRealm::Bind()
{
    CJsRuntime* runtime = CJsRuntime::Current();
    if (!runtime)
        return nullptr;
    runtime->DrainGraveyard();
    if (m_runtime.load() == runtime)
        return runtime;
    Unbind();
    m_link = runtime->GetLink();
    std::lock_guard<std::mutex> guard(m_link->lock);
    m_link->realms.push_back(this);
    m_runtime.store(runtime);
    return runtime;
}

void CJsRealm::Unbind()
{
    if (!m_link)
        return;
    {
        std::lock_guard<std::mutex> guard(m_link->lock);
        if (m_link->runtime)
        {
            auto& realms = m_link->realms;
            realms.erase(std::remove(realms.begin(), realms.end(), this), realms.end());
            if (m_global && m_link->runtime != CJsRuntime::CurrentIfAny())
            {
                // Not our thread's engine: its own thread drops the global.
                m_link->graveyard.push_back(std::move(m_global));
                m_link->graveyardFilled.store(true, std::memory_order_release);
            }
            m_global.reset();
        }
    }
    m_link.reset();
    m_runtime.store(nullptr);
}

void CJsRealm::OnRuntimeGone()
{
    m_global.reset();
    m_runtime.store(nullptr);
}

JSObject* CJsRealm::Global(CJsRuntime& runtime)
{
    if (!m_global)
    {
        JSContext* cx = runtime.Context();
        JS::RootedObject global(cx, runtime.NewGlobal());
        if (!global)
            return nullptr;
        m_global = std::make_unique<JS::PersistentRooted<JSObject*>>(cx, global);
    }
    return m_global->get();
}

void CJsRealm::AddText(const std::string& name, const QStringList& pieces)
{
    m_texts.emplace_back(name, pieces);
    for (const QString& piece : pieces)
        m_textChars += piece.size();
    while (m_texts.size() > 1 && (m_texts.size() > kMaxTexts || m_textChars > kMaxTextChars))
    {
        for (const QString& piece : m_texts.front().second)
            m_textChars -= piece.size();
        m_texts.pop_front();
    }
}

template <class Body>
bool CJsRealm::InGlobal(bool captureMissingGlobal, Body&& body)
{
    CJsRuntime* runtime = Bind();
    if (!runtime)
        return false;
    JSContext* cx = runtime->Context();
    JS::RootedObject global(cx, Global(*runtime));
    if (!global)
    {
        if (captureMissingGlobal)
            CaptureError(*runtime);
        return false;
    }
    JSAutoRealm entered(cx, global);
    RunScope run(*runtime);
    const bool ok = body(*runtime, global);
    if (!ok)
        CaptureError(*runtime);
    return ok;
}

bool CJsRealm::Run(const QString& text, QVariant* value)
{
    return InGlobal(true, [&](CJsRuntime& runtime, JS::HandleObject) { return Execute(runtime, text, value); });
}

// Compiles the text (or takes its compiled form from the thread's cache),
// puts it into the current global and runs it.
bool CJsRealm::Execute(CJsRuntime& runtime, const QString& text, QVariant* value)
{
    JSContext* cx = runtime.Context();
    const bool cached = CJsStencilCache::IsWorthCaching(text);
    const std::string name = kFilePrefix + (cached ? CJsStencilCache::ContentName(text) : std::to_string(m_nextText++));
    AddText(name, {text});
    JS::RootedValue result(cx);
    if (!ExecuteAs(runtime, Source{text, name, 1, value != nullptr, cached}, &result) || !runtime.DrainJobs())
        return false;
    return !value || CJsText::ValueToVariant(cx, result, *value);
}

bool CJsRealm::ExecuteAs(CJsRuntime& runtime, const Source& source, JS::MutableHandleValue result)
{
    JSContext* cx = runtime.Context();
    JS::CompileOptions options(cx);
    options.setFileAndLine(source.file.c_str(), static_cast<unsigned>(source.line)).setNoScriptRval(!source.keepValue);
    // A text kept for later runs is compiled whole, inner functions too: each
    // global it runs in would otherwise compile again every function it calls.
    if (source.cache)
        options.setForceFullParse();
    const CJsStencilCache::Key key{source.text, source.keepValue, source.file, source.line};
    RefPtr<JS::Stencil> stencil = source.cache ? runtime.Stencils().Find(key) : nullptr;
    if (!stencil)
    {
        const QString& text = source.text;
        JS::SourceText<char16_t> units;
        if (!units.init(cx, reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size()),
                        JS::SourceOwnership::Borrowed))
            return false;
        stencil = JS::CompileGlobalScriptToStencil(cx, options, units);
        if (!stencil)
            return false;
        if (source.cache)
            runtime.Stencils().Add(key, stencil);
    }
    JS::InstantiateOptions instantiate(options);
    JS::RootedScript script(cx, JS::InstantiateGlobalStencil(cx, instantiate, stencil));
    return script && JS_ExecuteScript(cx, script, result);
}

bool CJsRealm::RunPieces(const QStringList& pieces, bool joinedOnly)
{
    const std::string name = kFilePrefix + std::string(kPiecesName);
    auto runJoined = [&](CJsRuntime& runtime) {
        const QString joined = pieces.join(QStringLiteral("\r\n"));
        JS::RootedValue ignored(runtime.Context());
        return ExecuteAs(runtime, Source{joined, name, 1, false, CJsStencilCache::IsWorthCaching(joined)}, &ignored)
               && runtime.DrainJobs();
    };
    SplitOutcome outcome = SplitOutcome::InDoubt;
    const bool ok = InGlobal(true, [&](CJsRuntime& runtime, JS::HandleObject) {
        AddText(name, pieces);
        outcome = joinedOnly ? SplitOutcome::InDoubt : RunSplit(runtime, pieces);
        return outcome == SplitOutcome::InDoubt ? runJoined(runtime) : outcome == SplitOutcome::Passed;
    });
    m_lastPiecesRun = outcome == SplitOutcome::InDoubt ? PiecesRun::Joined
                      : outcome == SplitOutcome::Threw ? PiecesRun::SplitThenJoined
                                                        : PiecesRun::Split;
    if (outcome != SplitOutcome::Threw)
        return ok;
    // What the pieces left behind must not be seen by the whole.
    ClearError();
    m_global.reset();
    return InGlobal(true, [&](CJsRuntime& runtime, JS::HandleObject) { return runJoined(runtime); });
}

CJsRealm::SplitOutcome CJsRealm::RunSplit(CJsRuntime& runtime, const QStringList& pieces)
{
    CJsSplitPlan plan;
    const std::string name = kFilePrefix + std::string(kPiecesName);
    m_lastRunHadLibrary = false;
    // Line counts need every function of the whole compiled in its global.
    if (!runtime.Pieces().Plan(pieces, plan, CJsEngine::CoverageEnabled() ? std::string() : name))
        return SplitOutcome::InDoubt;
    JSContext* cx = runtime.Context();
    JS::RootedObject global(cx, m_global->get());
    // Attached first: in the whole, a function declaration wins over a var of
    // the same name. Attached even without a library: pieces declare their
    // names in another order than the whole, and listing the keys shows it.
    CJsGlobalClass::Attach(global, plan.library);
    m_lastRunHadLibrary = plan.library != nullptr;
    JS::RootedValue ignored(cx);
    bool ok = plan.prelude.isEmpty() || ExecuteAs(runtime, Source{plan.prelude, name}, &ignored);
    for (const CJsSplitPlan::Piece& piece : plan.pieces)
        ok = ok && (piece.declaredOnDemand || ExecuteAs(runtime, Source{piece.text, name, piece.line, false, true}, &ignored));
    // Jobs run once, after the last piece, as they would after the whole.
    ok = ok && runtime.DrainJobs();
    if (ok && !CJsGlobalClass::WasListed(global))
        return SplitOutcome::Passed;
    return ok || JS_IsExceptionPending(cx) ? SplitOutcome::Threw : SplitOutcome::Stopped;
}

bool CJsRealm::Call(const QString& name, const QVariantList& args, QVariant& result)
{
    return InGlobal(false, [&](CJsRuntime& runtime, JS::HandleObject global) {
        JSContext* cx = runtime.Context();
        JS::RootedValueVector argv(cx);
        JS::RootedValue arg(cx), function(cx), returned(cx);
        bool ok = true;
        for (const QVariant& value : args)
            ok = ok && CJsText::VariantToValue(cx, value, &arg) && argv.append(arg);
        ok = ok && JS_GetUCProperty(cx, global, reinterpret_cast<const char16_t*>(name.utf16()),
                                    static_cast<std::size_t>(name.size()), &function);
        JS::RootedValue self(cx, JS::ObjectValue(*global));
        return ok && JS::Call(cx, self, function, argv, &returned) && runtime.DrainJobs()
               && CJsText::ValueToVariant(cx, returned, result);
    });
}

QStringList CJsRealm::FunctionNames()
{
    QStringList names;
    CJsRuntime* runtime = Bind();
    if (!runtime || !m_global)
        return names;
    JSContext* cx = runtime->Context();
    JS::RootedObject global(cx, m_global->get());
    JSAutoRealm entered(cx, global);
    JS::Rooted<JS::IdVector> ids(cx, JS::IdVector(cx));
    if (!JS_Enumerate(cx, global, &ids))
    {
        JS_ClearPendingException(cx);
        return names;
    }
    JS::Rooted<mozilla::Maybe<JS::PropertyDescriptor>> desc(cx);
    QString name;
    for (std::size_t i = 0; i < ids.length(); ++i)
    {
        // Data properties only: reading an accessor would run script code.
        if (!ids[i].isString() || !JS_GetOwnPropertyDescriptorById(cx, global, ids[i], &desc))
            continue;
        if (desc.isNothing() || !desc->isDataDescriptor() || !desc->value().isObject())
            continue;
        if (JS_ObjectIsFunction(&desc->value().toObject())
            && CJsText::ToQString(cx, ids[i].toString(), name))
            names.append(name);
    }
    JS_ClearPendingException(cx);
    return names;
}

bool CJsRealm::LineHits(std::map<int, qint64>& hits)
{
    hits.clear();
    // The engine aborts the process when asked for counts it never kept.
    if (!CJsEngine::CoverageEnabled())
        return false;
    CJsRuntime* runtime = Bind();
    if (!runtime || !m_global || m_texts.empty())
        return false;
    JSContext* cx = runtime->Context();
    JSAutoRealm entered(cx, m_global->get());
    std::size_t length = 0;
    const JS::UniqueChars lcov = js::GetCodeCoverageSummary(cx, &length);
    if (!lcov)
    {
        JS_ClearPendingException(cx);
        return false;
    }
    // Records run from "SF:<file>" to "end_of_record"; "DA:<line>,<count>"
    // lines carry the counts. Only the last text's record is wanted.
    const std::string_view text(lcov.get(), length);
    const std::string wanted = "SF:" + m_texts.back().first + "\n";
    std::size_t at = text.find(wanted);
    if (at == std::string_view::npos)
        return false;
    const std::size_t end = std::min(text.find("end_of_record", at), text.size());
    for (at += wanted.size(); at < end;)
    {
        std::size_t next = text.find('\n', at);
        next = next == std::string_view::npos ? text.size() : next;
        if (text.compare(at, 3, "DA:") == 0)
        {
            char* rest = nullptr;
            const long line = std::strtol(text.data() + at + 3, &rest, 10);
            if (rest && *rest == ',')
                hits[static_cast<int>(line)] += std::strtoll(rest + 1, nullptr, 10);
        }
        at = next + 1;
    }
    return true;
}

void CJsRealm::CaptureError(CJsRuntime& runtime)
{
    JSContext* cx = runtime.Context();
    if (!JS_IsExceptionPending(cx))
    {
        CaptureStop(runtime);
        return;
    }
    JS::ExceptionStack exception(cx);
    const bool stolen = JS::StealPendingExceptionStack(cx, &exception);
    if (stolen && IsEngineOutOfMemory(cx, exception))
    {
        JS_ClearPendingException(cx);
        m_error = CJsErrorInfo(OutOfMemoryText(runtime), 0, QString());
        return;
    }
    JS::ErrorReportBuilder report(cx);
    if (!stolen || !report.init(cx, exception, JS::ErrorReportBuilder::NoSideEffects) || !report.report())
    {
        JS_ClearPendingException(cx);
        m_error = CJsErrorInfo(QStringLiteral("未知的脚本错误"), 0, QString());
        return;
    }
    const JSErrorReport* details = report.report();
    // A script can set an error's line to anything; keep what is plausible.
    int line = details->lineno <= static_cast<unsigned>(INT_MAX) ? static_cast<int>(details->lineno) : 0;
    const QString source = SourceLineFor(details->filename, line);
    const char* message = details->message().c_str();
    m_error = CJsErrorInfo(QString::fromUtf8(message ? message : ""), line, source);
    JS_ClearPendingException(cx);
}

// A run the engine ended without an exception: the watchdog's time budget
// or the memory check stopped it.
void CJsRealm::CaptureStop(CJsRuntime& runtime)
{
    if (runtime.LastRunTimedOut())
    {
        int line = static_cast<int>(runtime.StopLine());
        const QString source = SourceLineFor(runtime.StopFile().c_str(), line);
        m_error = CJsErrorInfo(QStringLiteral("脚本运行超时(超过%1毫秒)").arg(runtime.LastRunBudgetMs()), line, source);
    }
    else if (runtime.LastRunOutOfMemory())
    {
        int line = static_cast<int>(runtime.StopLine());
        const QString source = SourceLineFor(runtime.StopFile().c_str(), line);
        m_error = CJsErrorInfo(OutOfMemoryText(runtime), line, source);
    }
    else
        m_error = CJsErrorInfo(QStringLiteral("脚本被引擎终止"), 0, QString());
}

QString CJsRealm::SourceLineFor(const char* file, int& line) const
{
    std::string name;
    int callerLine = 0;
    if (!ParseFileName(file, name, callerLine))
        return QString();
    if (callerLine > 0)
        line = callerLine;
    for (auto it = m_texts.rbegin(); it != m_texts.rend(); ++it)
    {
        if (it->first == name)
            return CJsText::LineOf(it->second.join(QStringLiteral("\r\n")), line);
    }
    return QString();
}
