// A case given as pieces must come out exactly as its joined text does,
// whether the pieces ran one by one or the whole ran: success, error text
// and the values left behind.
#include "CScriptHost.h"
#include "EngineTestSupport.h"
#include "TestEnvironment.h"

#include <gtest/gtest.h>

#include <random>

using namespace Qt::StringLiterals;

namespace
{
// OnDemand: piece by piece, with the library declared on first use.
enum class Way { Split, OnDemand, Joined, Either };

// Success or failure, the error text and the probes' values.
using Outcome = QStringList;

Outcome RunCase(CScriptHost& host, const QStringList& pieces, bool joinedOnly, const QStringList& probes, bool* split = nullptr)
{
    host.ResetScript();
    const bool ok = host.ExecutePieces(pieces, joinedOnly);
    Outcome outcome{ok ? u"ok"_s : u"failed"_s, ok ? QString() : host.GetErrorText()};
    if (split)
        *split = host.LastPiecesRanSplit();
    for (const QString& probe : probes)
    {
        const QVariant value = host.Evaluate(probe);
        outcome << (value.isValid() ? value.toString() : u"<none>"_s);
    }
    return outcome;
}

// Long enough to be declared on demand; functions call each other, throw,
// report their own lines, and one shares a line with another.
QString Library(const QString& extra = QString())
{
    QStringList lines{u"// shared functions"_s, u"function 面积(a, b) { return a * b; }"_s,
                      u"function twice(x) { return 面积(x, 2); }"_s,
                      u"function fails(x) {\r\n  if (x > 1)\r\n    throw new Error('too big ' + x);\r\n  return x;\r\n}"_s,
                      u"function where() { return new Error('w').stack; }  function second() { return where(); }"_s,
                      u"/* a comment\r\n between */ function* gen() { yield 1; yield 2; }"_s,
                      u"async function later() { return 5; }"_s,
                      u"function callee() { return arguments.callee.name; }"_s,
                      u"function selfName() { selfName = 3; return typeof selfName; };"_s,
                      u"function 长度(s) { return s.length; }"_s,
                      // braces and quotes in strings, templates and regular expressions
                      u"function tricky(s) { var re = /[}{'\"/]/g, t = `${s}{${'}'}`; return s.replace(re, '') + t.length / 2 + '}'; }"_s};
    for (int i = 0; i < 30; ++i)
        lines << u"function pad%1(v) { return v + %1; }"_s.arg(i);
    return lines.join(u"\r\n"_s) + extra;
}

class SplitRunTest : public TempHomeTest
{
protected:
    // Both ways in hosts of their own; the split way is also checked for
    // which way it went, so a check of sameness cannot pass by never splitting.
    void Compare(const QStringList& pieces, const QStringList& probes, Way way)
    {
        CScriptHost joinedHost, splitHost;
        const Outcome joined = RunCase(joinedHost, pieces, true, probes);
        bool split = false;
        const Outcome pieceWise = RunCase(splitHost, pieces, false, probes, &split);
        EXPECT_EQ(pieceWise, joined) << pieces.join(u" ‖ "_s).toStdString();
        const Way went = !split ? Way::Joined : splitHost.LastPiecesHadLibrary() ? Way::OnDemand : Way::Split;
        EXPECT_TRUE(way == Way::Either || went == way) << pieces.last().toStdString();
    }
};

TEST_F(SplitRunTest, HandWrittenCasesGiveTheJoinedOutcome)
{
    const struct { QStringList pieces, probes; Way way; } cases[] = {
        {{u""_s, u"function f(a) { return a * 2; }"_s, u"var x = 3 ////x"_s, u"x = 5;"_s, u"var r = f(x);"_s}, {u"r"_s}, Way::Split},
        // hoisting across pieces
        {{u"var r = g();"_s, u"function g() { return 7; }"_s}, {u"r"_s}, Way::Joined},
        {{u"var t = typeof g;"_s, u"function g() {}"_s}, {u"t"_s}, Way::Joined},
        {{u"var seen = typeof later + ':' + ('later' in this);"_s, u"var later = 1;"_s}, {u"seen"_s, u"later"_s}, Way::Split},
        {{u"try { var v = later; } catch (e) { v = 'caught'; }"_s, u"var later = 2;"_s}, {u"v"_s}, Way::Split},
        {{u"var t = typeof L;"_s, u"let L = 1;"_s}, {u"t"_s}, Way::Joined},
        {{u"var t = typeof h;"_s, u"{ function h() {} }"_s}, {u"t"_s, u"typeof h"_s}, Way::Joined},
        // the order of the global's keys is the order of declaration in the whole
        {{u"function f() {}"_s, u"var k = Object.keys(this).join();"_s}, {u"k"_s}, Way::Joined},
        // redeclarations
        {{u"function f() { return 1; }"_s, u"var a = f();"_s, u"function f() { return 2; }"_s}, {u"a"_s}, Way::Joined},
        {{u"const k = 1;"_s, u"var k = 2;"_s}, {u"k"_s}, Way::Either},
        {{u"var a = 1;"_s, u"var a;"_s, u"var b = a;"_s}, {u"b"_s}, Way::Split},
        // syntax across pieces
        {{u"var a = 1"_s, u"(function () { return 2; })()"_s}, {u"a"_s}, Way::Joined},
        {{u"var a = 1"_s, u""_s, u"[1, 2].length"_s}, {u"a"_s}, Way::Joined},
        {{u"var s = 'a'"_s, u"`b`"_s}, {u"s"_s}, Way::Joined},
        {{u"var let = 1; let"_s, u"x = 5"_s}, {u"typeof x"_s, u"let"_s}, Way::Joined},
        // strict mode
        {{u"'use strict';"_s, u"undeclared = 5;"_s}, {u"typeof undeclared"_s}, Way::Joined},
        {{u"var a = 1;"_s, u"'use strict'; undeclared = 5;"_s}, {u"undeclared"_s}, Way::Joined},
        {{u"function s() { 'use strict'; return this === undefined; }"_s, u"var r = s();"_s}, {u"r"_s}, Way::Split},
        // run-time errors in each piece, with their lines in the whole
        {{u"function bad() {\r\n  return nope;\r\n}"_s, u"var p = 1"_s, u"p = 2;"_s, u"\r\nvar r = bad();"_s}, {u"p"_s}, Way::Either},
        {{u"var a = 1;\r"_s, u"\n\u2028"_s, u"throw new Error('x' + a);"_s}, {u"a"_s}, Way::Either},
        {{u"var a;"_s, u"eval('\\n\\nnope');"_s}, {u"a"_s}, Way::Either},
        // what only the engine's file name and lines show
        {{u"function f() { return new Error('x').stack; }"_s, u"var s = f();\r\nvar n = new Error().lineNumber;"_s},
         {u"s"_s, u"n"_s}, Way::Split},
        // promise jobs run after the last piece, as after the whole
        {{u"var log = [];"_s, u"Promise.resolve().then(function () { log.push('job'); });"_s, u"var r = log.join();"_s},
         {u"r"_s, u"log.join()"_s}, Way::Split},
    };
    for (const auto& c : cases)
        Compare(c.pieces, c.probes, c.way);
}

TEST_F(SplitRunTest, LibraryChangingBetweenRunsIsCompiledAgain)
{
    CScriptHost host, reference;
    const QStringList probes{u"r"_s};
    for (const QString& body : {u"return 1;"_s, u"return 2;"_s, u"return 1;"_s, u"return 3 "_s})
    {
        const QStringList pieces{u"function lib() { "_s + body + u" }"_s, u"var r = lib();"_s};
        bool split = false;
        EXPECT_EQ(RunCase(host, pieces, false, probes, &split), RunCase(reference, pieces, true, probes)) << body.toStdString();
        EXPECT_TRUE(split);
    }
}

// Random pieces from fragments that hoist, redeclare, throw, break syntax
// across pieces or read names before they are declared.
TEST_F(SplitRunTest, GeneratedCasesGiveTheJoinedOutcome)
{
    const QStringList fragments{
        u"function f() { return 1; }"_s, u"function f() { return 2; }"_s, u"function g() { return f() + 1; }"_s,
        u"var a = 1;"_s, u"var a = typeof f;"_s, u"a = f();"_s, u"var b = typeof g + typeof a;"_s, u"let c = 3;"_s,
        u"const d = 4;"_s, u"b = typeof c + a;"_s, u"throw new Error('e' + a);"_s, u"if (a > 1) { var e = a; }"_s,
        u"{ function h() { return 5; } }"_s, u"a"_s, u"(a)"_s, u"[a]"_s, u"+a"_s, u"'use strict';"_s, u"x9 = 1;"_s,
        u"class K {}"_s, u"return 1;"_s, u"{"_s, u"}"_s, u"try { a = q; } catch (err) { a = 'caught'; }"_s,
        u"var q = 7;"_s, u"delete a;"_s, u"// note"_s, u"/* a\r\n b */"_s, u"b = e;"_s, u"var let = 2; let"_s,
        u"c = typeof K;"_s, u"q = g();"_s, u"for (var i = 0; i < 2; i++) { a = i; }"_s, u"for (e in {p: 1}) {}"_s,
    };
    const QStringList probes{u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s, u"f()"_s, u"g()"_s, u"q"_s, u"typeof h"_s, u"x9"_s};
    std::mt19937 random(20261123);
    auto pick = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    CScriptHost joinedHost, splitHost;
    int splits = 0;
    const int kCases = 600;
    for (int n = 0; n < kCases; ++n)
    {
        QStringList pieces;
        for (int p = 0, count = 2 + pick(3); p < count; ++p)
        {
            QStringList parts;
            for (int k = 0, size = pick(4); k < size; ++k)
                parts << fragments[pick(static_cast<int>(fragments.size()))];
            pieces << parts.join(pick(2) ? u"\r\n"_s : u" "_s);
        }
        bool split = false;
        const Outcome pieceWise = RunCase(splitHost, pieces, false, probes, &split);
        EXPECT_EQ(pieceWise, RunCase(joinedHost, pieces, true, probes)) << pieces.join(u" ‖ "_s).toStdString();
        splits += split ? 1 : 0;
    }
    // The check means something only if many cases did run piece by piece.
    EXPECT_GT(splits, kCases / 10);
}
TEST_F(SplitRunTest, LibraryDeclaredOnDemandGivesTheJoinedOutcome)
{
    const QString lib = Library();
    const struct { QString script; QStringList probes; Way way; } cases[] = {
        {u"var r = twice(3) + 长度('钢筋') + pad7(1) + tricky('a{b}');"_s, {u"r"_s}, Way::OnDemand},
        // A case that throws runs again whole: its error is the whole's.
        {u"var r = fails(1);\r\nvar s = fails(5);"_s, {u"r"_s, u"typeof s"_s}, Way::Joined},
        {u"var s = second();"_s, {u"s"_s}, Way::OnDemand},
        {u"var g = [...gen()].join() + callee() + selfName() + typeof selfName;"_s, {u"g"_s}, Way::OnDemand},
        {u"var r; later().then(function (v) { r = v; });"_s, {u"r"_s}, Way::OnDemand},
        {u"var t = twice.toString() + 面积.length + typeof nothing;"_s, {u"t"_s}, Way::OnDemand},
        {u"var k = ['pad3' in this, this.hasOwnProperty('gen'), delete pad4, typeof pad5].join();"_s, {u"k"_s}, Way::OnDemand},
        {u"var d = JSON.stringify(Object.getOwnPropertyDescriptor(this, 'pad1'));"_s, {u"d"_s}, Way::OnDemand},
        {u"var r = typeof twice;\r\nvar twice = 1;"_s, {u"r"_s, u"twice"_s}, Way::OnDemand},
        {u"pad2 = function () { return 'mine'; };\r\nvar r = pad2() + pad3(0);"_s, {u"r"_s}, Way::OnDemand},
        // Listing the global's keys shows the order functions were declared in: the whole runs instead.
        {u"var keys = Object.keys(this).join();"_s, {u"keys"_s}, Way::Joined},
        {u"var n = 0; for (var k in this) n++;"_s, {u"n"_s}, Way::Joined},
        {u"let pad6 = 1;"_s, {u"typeof pad6"_s}, Way::Joined},
    };
    for (const auto& c : cases)
        Compare({u""_s, lib, u"var x = 1 ////x"_s, c.script}, c.probes, c.way);
}

TEST_F(SplitRunTest, LibraryOfMoreThanDeclarationsIsRunAsItIs)
{
    const QString probe = u"var r = typeof twice + pad1(1) + escape('a b');"_s;
    const struct { QString extra; Way way; } cases[] = {
        {u"\r\nvar shared = 1;"_s, Way::Split},
        {u"\r\ntwice(1);"_s, Way::Split},
        {u"\r\n'use strict';"_s, Way::Split},
        {u"\r\nfunction escape() { return 'mine'; }"_s, Way::Split},
        // The last declaration of a name is the one the whole keeps.
        {u"\r\nfunction pad1(v) { return 'again'; }"_s, Way::OnDemand},
    };
    for (const auto& c : cases)
        Compare({u""_s, Library(c.extra), probe}, {u"r"_s}, c.way);
}
} // namespace
