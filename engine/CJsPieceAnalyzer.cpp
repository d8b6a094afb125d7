#include "CJsPieceAnalyzer.h"

#include "CJsDeclarationScanner.h"
#include "CJsPieceText.h"
#include "CJsRuntime.h"
#include "CJsText.h"

#include <js/CallAndConstruct.h>
#include <js/CompilationAndEvaluation.h>
#include <js/CompileOptions.h>
#include <js/SourceText.h>
#include <jsapi.h>

#include <algorithm>

namespace
{
// Lists the top-level declarations of a text from the engine's syntax tree:
// "vars\nfunctions\nlexicals\nunsure", names separated by commas. Var
// declarations count wherever they sit outside functions; let, const and
// class only at the top; a function declared in a block, a destructuring
// pattern or a statement the walk does not know makes the answer unsure.
const char kWalker[] = R"JS((function (text) {
  var vars = [], functions = [], lexicals = [], unsure = false;
  function declare(node, top) {
    node.declarations.forEach(function (d) {
      if (d.id.type !== 'Identifier') unsure = true;
      else if (node.kind === 'var') vars.push(d.id.name);
      else if (top) lexicals.push(d.id.name);
    });
  }
  function loopDeclaration(node) { if (node && node.type === 'VariableDeclaration') declare(node, false); }
  function all(list) { list.forEach(function (s) { walk(s, false); }); }
  function walk(node, top) {
    if (!node) return;
    switch (node.type) {
    case 'VariableDeclaration': declare(node, top); break;
    case 'FunctionDeclaration': if (top) functions.push(node.id.name); else unsure = true; break;
    case 'ClassStatement': if (top) lexicals.push(node.id.name); break;
    case 'BlockStatement': all(node.body); break;
    case 'IfStatement': walk(node.consequent, false); walk(node.alternate, false); break;
    case 'ForStatement': loopDeclaration(node.init); walk(node.body, false); break;
    case 'ForInStatement': case 'ForOfStatement': loopDeclaration(node.left); walk(node.body, false); break;
    case 'WhileStatement': case 'DoWhileStatement': case 'LabeledStatement': case 'WithStatement':
      walk(node.body, false); break;
    case 'TryStatement':
      walk(node.block, false);
      if (node.handler) walk(node.handler.body, false);
      (node.guardedHandlers || []).forEach(function (h) { walk(h.body, false); });
      walk(node.finalizer, false); break;
    case 'SwitchStatement': node.cases.forEach(function (c) { all(c.consequent); }); break;
    case 'ExpressionStatement': case 'EmptyStatement': case 'ReturnStatement': case 'BreakStatement':
    case 'ContinueStatement': case 'ThrowStatement': case 'DebuggerStatement': break;
    default: unsure = true;
    }
  }
  Reflect.parse(text, { loc: false }).body.forEach(function (s) { walk(s, true); });
  return [vars.join(','), functions.join(','), lexicals.join(','), unsure ? '1' : '0'].join('\n');
}))JS";

// Line (from 1) and column of each offset, the offsets in increasing order;
// "\r\n" is one line break, as for the engine.
std::vector<std::pair<int, int>> Positions(const QString& text, const std::vector<qsizetype>& offsets)
{
    std::vector<std::pair<int, int>> positions;
    int line = 1;
    qsizetype lineStart = 0, at = 0;
    for (qsizetype offset : offsets)
    {
        for (; at < offset; ++at)
        {
            const char16_t c = text[at].unicode();
            if (c == u'\r' && at + 1 < text.size() && text[at + 1] == u'\n')
                ++at;
            if (c == u'\n' || c == u'\r' || c == 0x2028 || c == 0x2029)
            {
                ++line;
                lineStart = at + 1;
            }
        }
        positions.emplace_back(line, static_cast<int>(offset - lineStart));
    }
    return positions;
}

// The source text of the global's function `name`; false when it is none.
bool FunctionSource(JSContext* cx, JS::HandleObject global, const QString& name, QString& source)
{
    JS::RootedValue value(cx);
    if (!JS_GetUCProperty(cx, global, reinterpret_cast<const char16_t*>(name.utf16()),
                          static_cast<std::size_t>(name.size()), &value)
        || !value.isObject() || !JS_ObjectIsFunction(&value.toObject()))
        return false;
    JS::RootedFunction function(cx, JS_ValueToFunction(cx, value));
    JS::RootedString text(cx, function ? JS_DecompileFunction(cx, function) : nullptr);
    return text && CJsText::ToQString(cx, text, source);
}

const QStringList kDeclaringWords = {QStringLiteral("var"), QStringLiteral("let"), QStringLiteral("const"),
                                     QStringLiteral("class"), QStringLiteral("function")};

template <std::size_t N>
bool EvaluateFunction(JSContext* cx, const char* name, const char (&text)[N], JS::MutableHandleValue function)
{
    JS::CompileOptions options(cx);
    options.setFileAndLine(name, 1);
    JS::SourceText<mozilla::Utf8Unit> source;
    return source.init(cx, text, N - 1, JS::SourceOwnership::Borrowed) && JS::Evaluate(cx, options, source, function)
           && function.isObject();
}

QStringList Names(const QString& list)
{
    return list.split(QLatin1Char(','), Qt::SkipEmptyParts);
}

} // namespace

CJsPieceAnalyzer::~CJsPieceAnalyzer() = default;

void CJsPieceAnalyzer::Release()
{
    m_walker.reset();
    m_infos.clear();
    m_chars = 0;
}

bool CJsPieceAnalyzer::MentionedBefore(const QString& name, const std::vector<std::shared_ptr<const Info>>& infos,
                                       std::size_t before)
{
    for (std::size_t i = 0; i < before; ++i)
    {
        if (infos[i]->words.contains(name))
            return true;
    }
    return false;
}
bool CJsPieceAnalyzer::Plan(const QStringList& pieces, CJsSplitPlan& plan, const std::string& file)
{
    plan = CJsSplitPlan();
    std::vector<std::shared_ptr<const Info>> infos;
    int line = 1;
    for (const QString& piece : pieces)
    {
        if (!piece.isEmpty())
        {
            infos.push_back(InfoFor(piece, !infos.empty()));
            plan.pieces.push_back(CJsSplitPlan::Piece{piece, line});
            line += infos.back()->lineBreaks;
        }
        ++line;
    }
    QStringList prelude;
    for (std::size_t k = 0; k < infos.size(); ++k)
    {
        const Info& info = *infos[k];
        if (info.startsWithString || (k > 0 && info.startsAmbiguously) || (k + 1 < infos.size() && info.mayEndWithLet))
            return false;
        if (k == 0)
            continue;
        if (!info.parsed || info.unsure)
            return false;
        for (const QStringList* names : {&info.functions, &info.lexicals})
        {
            for (const QString& name : *names)
            {
                if (MentionedBefore(name, infos, k))
                    return false;
            }
        }
        for (const QString& name : info.vars)
        {
            if (!prelude.contains(name) && MentionedBefore(name, infos, k))
                prelude.append(name);
        }
    }
    if (!prelude.isEmpty())
        plan.prelude = QStringLiteral("var ") + prelude.join(QStringLiteral(", ")) + QLatin1Char(';');
    if (!file.empty())
        ChooseLibrary(infos, plan, file);
    return true;
}

// The largest piece of function declarations only, if any is worth it.
void CJsPieceAnalyzer::ChooseLibrary(const std::vector<std::shared_ptr<const Info>>& infos, CJsSplitPlan& plan,
                                     const std::string& file)
{
    std::size_t best = infos.size();
    for (std::size_t k = 0; k < infos.size(); ++k)
    {
        const qsizetype size = infos[k]->text.size();
        if (size >= kMinLibraryChars && infos[k]->words.contains(QStringLiteral("function"))
            && (best == infos.size() || size > infos[best]->text.size()))
            best = k;
    }
    if (best == infos.size())
        return;
    plan.library = LibraryOf(*infos[best], plan.pieces[best].line, file);
    plan.pieces[best].declaredOnDemand = plan.library != nullptr;
}

std::shared_ptr<const CJsLazyLibrary> CJsPieceAnalyzer::LibraryOf(const Info& info, int line, const std::string& file)
{
    if (info.library && info.libraryLine == line && info.library->File() == file)
        return info.library;
    if (!info.outlined)
    {
        info.outlined = true;
        Outline(info);
    }
    info.library.reset();
    info.libraryLine = line;
    if (info.declarations.empty())
        return nullptr;
    std::vector<CJsLazyLibrary::Function> functions = info.declarations;
    for (CJsLazyLibrary::Function& function : functions)
        function.line += line - 1;
    info.library = CJsLazyLibrary::Create(m_runtime.Context(), std::move(functions), file);
    return info.library;
}

// The scanner's cut, confirmed by the engine on the skeleton: the same
// function declarations ending at the same places, and nothing else.
void CJsPieceAnalyzer::Outline(const Info& info)
{
    std::vector<CJsDeclarationScanner::Declaration> cut;
    if (!CJsDeclarationScanner::Scan(info.text, cut) || cut.empty()
        || !DeclaresExactly(CJsDeclarationScanner::Skeleton(info.text, cut), cut))
        return;
    std::vector<qsizetype> starts;
    for (const CJsDeclarationScanner::Declaration& d : cut)
        starts.push_back(d.from);
    const std::vector<std::pair<int, int>> at = Positions(info.text, starts);
    std::vector<CJsLazyLibrary::Function> declarations;
    for (std::size_t i = 0; i < cut.size(); ++i)
        declarations.push_back({cut[i].name, info.text.mid(cut[i].from, cut[i].to - cut[i].from), at[i].first,
                                at[i].second});
    info.declarations = std::move(declarations);
}

// Runs the skeleton (bodies blanked: declaring is all it can do) in a global
// of its own. That global must then hold the cut's names and nothing else,
// each a function whose source ends where the cut ends it. A name declared
// twice is checked by its last declaration, the one that counts.
bool CJsPieceAnalyzer::DeclaresExactly(const QString& skeleton,
                                       const std::vector<CJsDeclarationScanner::Declaration>& cut)
{
    JSContext* cx = m_runtime.Context();
    JS::RootedObject global(cx, m_runtime.NewGlobal());
    if (!global)
        return false;
    JSAutoRealm entered(cx, global);
    JS::CompileOptions options(cx);
    options.setFileAndLine("velmora-skeleton", 1).setNoScriptRval(true);
    JS::SourceText<char16_t> units;
    JS::RootedValue ignored(cx);
    JS::Rooted<JS::IdVector> keys(cx, JS::IdVector(cx));
    bool ok = units.init(cx, reinterpret_cast<const char16_t*>(skeleton.utf16()),
                         static_cast<std::size_t>(skeleton.size()), JS::SourceOwnership::Borrowed)
              && JS::Evaluate(cx, options, units, &ignored) && JS_Enumerate(cx, global, &keys);
    QSet<QString> names;
    for (auto d = cut.rbegin(); ok && d != cut.rend(); ++d)
    {
        if (names.contains(d->name))
            continue;
        names.insert(d->name);
        QString source;
        ok = FunctionSource(cx, global, d->name, source) && !source.isEmpty()
             && QStringView(skeleton).mid(d->from, d->to - d->from).endsWith(source);
    }
    ok = ok && keys.length() == static_cast<std::size_t>(names.size());
    JS_ClearPendingException(cx);
    return ok;
}

std::shared_ptr<const CJsPieceAnalyzer::Info> CJsPieceAnalyzer::InfoFor(const QString& text, bool declarations)
{
    std::shared_ptr<Info> info;
    // The same string first: texts of the same length (scripts made from one
    // template, say) would otherwise be compared in full on every lookup.
    auto it = std::find_if(m_infos.begin(), m_infos.end(), [&](const std::shared_ptr<Info>& i) {
        return i->text.constData() == text.constData() && i->text.size() == text.size();
    });
    if (it == m_infos.end())
        it = std::find_if(m_infos.begin(), m_infos.end(), [&](const std::shared_ptr<Info>& i) { return i->text == text; });
    if (it != m_infos.end())
    {
        info = *it;
        m_chars -= info->text.size();
        m_infos.erase(it);
        info->text = text; // shared from now on: the next lookup finds the same string
    }
    if (!info)
    {
        info = std::make_shared<Info>();
        info->text = text;
        info->words = CJsPieceText::Words(text);
        info->lineBreaks = CJsPieceText::LineBreaks(text);
        info->startsWithString = CJsPieceText::StartsWithString(text);
        info->startsAmbiguously = CJsPieceText::StartsAmbiguously(text);
        info->mayEndWithLet = CJsPieceText::MayEndWithLet(text, info->words);
    }
    if (declarations && !info->declarationsRead)
        ReadDeclarations(*info);
    m_infos.push_front(info);
    m_chars += text.size();
    while (m_infos.size() > 1 && (m_infos.size() > kCapacity || m_chars > kMaxChars))
    {
        m_chars -= m_infos.back()->text.size();
        m_infos.pop_back();
    }
    return info;
}

void CJsPieceAnalyzer::ReadDeclarations(Info& info)
{
    info.declarationsRead = true;
    bool declares = false;
    for (const QString& word : kDeclaringWords)
        declares = declares || info.words.contains(word);
    // Nothing that can declare: no need to ask the parser. A syntax error it
    // would have found shows when the piece is compiled.
    if (!declares)
    {
        info.parsed = true;
        return;
    }
    QString result;
    info.parsed = Parse(info.text, result);
    const QStringList parts = result.split(QLatin1Char('\n'));
    if (!info.parsed || parts.size() != 4)
    {
        info.parsed = false;
        return;
    }
    info.vars = Names(parts[0]);
    info.functions = Names(parts[1]);
    info.lexicals = Names(parts[2]);
    info.unsure = parts[3] == QLatin1String("1");
}

bool CJsPieceAnalyzer::MakeWalkers()
{
    JSContext* cx = m_runtime.Context();
    JS::RootedObject global(cx, m_runtime.NewGlobal());
    if (!global)
        return false;
    JSAutoRealm entered(cx, global);
    JS::RootedValue walker(cx);
    if (!JS_InitReflectParse(cx, global) || !EvaluateFunction(cx, "velmora-piece-walker", kWalker, &walker))
    {
        JS_ClearPendingException(cx);
        return false;
    }
    m_walker = std::make_unique<JS::PersistentRooted<JSObject*>>(cx, &walker.toObject());
    return true;
}

// Runs the walker over the text in a global of its own,
// which no script ever sees; false when the text does not parse.
bool CJsPieceAnalyzer::Parse(const QString& text, QString& result)
{
    if (!m_walker && !MakeWalkers())
        return false;
    JSContext* cx = m_runtime.Context();
    JS::RootedObject walker(cx, m_walker->get());
    JSAutoRealm entered(cx, walker);
    JS::RootedValue arg(cx), returned(cx);
    JSString* str = CJsText::ToJsString(cx, text);
    bool ok = str != nullptr;
    if (ok)
        arg.setString(str);
    JS::RootedValueArray<1> args(cx);
    args[0].set(arg);
    JS::RootedValue function(cx, JS::ObjectValue(*walker));
    ok = ok && JS::Call(cx, JS::UndefinedHandleValue, function, args, &returned) && returned.isString()
         && CJsText::ToQString(cx, returned.toString(), result);
    JS_ClearPendingException(cx);
    return ok;
}
