// A library of function declarations only is declared in each case's global
// one function at a time, on first use. Every case must still come out as
// its joined text does: values, error texts with their lines, what a script
// can ask of the global.
#include "CScriptHost.h"
#include "EngineTestSupport.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
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

QStringList RunCase(CScriptHost& host, const QStringList& pieces, bool joinedOnly, const QStringList& probes)
{
    host.ResetScript();
    const bool ok = host.ExecutePieces(pieces, joinedOnly);
    QStringList outcome{ok ? u"ok"_s : host.GetErrorText()};
    for (const QString& probe : probes)
    {
        const QVariant value = host.Evaluate(probe);
        outcome << (value.isValid() ? value.toString() : u"<none>"_s);
    }
    return outcome;
}

class LazyLibraryTest : public EngineTest
{
protected:
    enum class Way { OnDemand, Whole };
    void Compare(const QStringList& pieces, const QStringList& probes, Way way)
    {
        const QStringList joined = RunCase(m_joined, pieces, true, probes);
        EXPECT_EQ(RunCase(m_split, pieces, false, probes), joined) << pieces.last().toStdString();
        // On demand means the pieces ran with the library attached and were not run again whole.
        const bool onDemand = m_split.LastPiecesHadLibrary() && m_split.LastPiecesRanSplit();
        EXPECT_EQ(onDemand, way == Way::OnDemand) << pieces.last().toStdString();
    }
    CScriptHost m_joined, m_split;
};

TEST_F(LazyLibraryTest, CasesComeOutAsTheirJoinedText)
{
    const QString lib = Library();
    const struct { QString script; QStringList probes; Way way; } cases[] = {
        {u"var r = twice(3) + 长度('钢筋') + pad7(1) + tricky('a{b}');"_s, {u"r"_s}, Way::OnDemand},
        // A case that throws runs again whole: its error is the whole's.
        {u"var r = fails(1);\r\nvar s = fails(5);"_s, {u"r"_s, u"typeof s"_s}, Way::Whole},
        {u"var s = second();"_s, {u"s"_s}, Way::OnDemand},
        {u"var g = [...gen()].join() + callee() + selfName() + typeof selfName;"_s, {u"g"_s}, Way::OnDemand},
        {u"var r; later().then(function (v) { r = v; });"_s, {u"r"_s}, Way::OnDemand},
        {u"var t = twice.toString() + 面积.length + typeof nothing;"_s, {u"t"_s}, Way::OnDemand},
        {u"var k = ['pad3' in this, this.hasOwnProperty('gen'), delete pad4, typeof pad5].join();"_s, {u"k"_s}, Way::OnDemand},
        {u"var d = JSON.stringify(Object.getOwnPropertyDescriptor(this, 'pad1'));"_s, {u"d"_s}, Way::OnDemand},
        {u"var r = typeof twice;\r\nvar twice = 1;"_s, {u"r"_s, u"twice"_s}, Way::OnDemand},
        {u"pad2 = function () { return 'mine'; };\r\nvar r = pad2() + pad3(0);"_s, {u"r"_s}, Way::OnDemand},
        // Listing the global's keys shows the order functions were declared in: the whole runs instead.
        {u"var keys = Object.keys(this).join();"_s, {u"keys"_s}, Way::Whole},
        {u"var n = 0; for (var k in this) n++;"_s, {u"n"_s}, Way::Whole},
        {u"let pad6 = 1;"_s, {u"typeof pad6"_s}, Way::Whole},
    };
    for (const auto& c : cases)
        Compare({u""_s, lib, u"var x = 1 ////x"_s, c.script}, c.probes, c.way);
}

TEST_F(LazyLibraryTest, LibrariesOfMoreThanDeclarationsRunAsTheyAre)
{
    const QString probe = u"var r = typeof twice + pad1(1) + escape('a b');"_s;
    const struct { QString extra; Way way; } cases[] = {
        {u"\r\nvar shared = 1;"_s, Way::Whole},
        {u"\r\ntwice(1);"_s, Way::Whole},
        {u"\r\n'use strict';"_s, Way::Whole},
        {u"\r\nfunction escape() { return 'mine'; }"_s, Way::Whole},
        // The last declaration of a name is the one the whole keeps.
        {u"\r\nfunction pad1(v) { return 'again'; }"_s, Way::OnDemand},
    };
    for (const auto& c : cases)
        Compare({u""_s, Library(c.extra), probe}, {u"r"_s}, c.way);
}
} // namespace
