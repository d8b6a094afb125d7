#include "CMacroImplement.h"
#include "CScriptHost.h"
#include "EngineTestSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{
using ScriptThreadTest = EngineTest;

// Macro runners on several threads at once each see only their own inputs, outputs and errors, and
// each run is stopped for what it did itself: a loop beside a memory hog runs out of time, not memory.
TEST_F(ScriptThreadTest, RunnersTimeoutsAndMemoryLimitsOnSeveralThreadsStayApart)
{
    SetBudget(3000);
    const auto run = [](std::uint32_t heapMb, const QString& script, QString& error) {
        CJsRuntime::Current()->SetHeapLimitBytes(heapMb * 1024u * 1024u);
        CScriptHost host;
        host.ExecuteStatement(script);
        error = host.GetErrorText();
    };
    std::atomic<bool> looping{true};
    QString loopError, hogError;
    std::thread loop([&] { run(8, u"for (;;) {}"_s, loopError); looping = false; });
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    std::thread hog([&] { run(32, u"var a = [];\r\nwhile (true) a.push(new Float64Array(131072).fill(1));"_s, hogError); });
    std::atomic<int> runs{0}, wrong{0};
    std::vector<std::thread> runners;
    for (int t = 0; t < 3; ++t)
        runners.emplace_back([t, &runs, &wrong, &looping] {
            CMacroImplement macro;
            macro.AddGlobalScript(u"function 加(a, b) { return a + b; }"_s);
            for (int run = 0; looping || run < 150; ++run, ++runs)
            {
                const CArray<CMacroParam> inputs = Inputs({{u"L"_s, QString::number(t * 100000 + run)}});
                CArray<CMacroParam> outputs = Outputs({"A"});
                const bool fails = run % 25 == 24; // a failing run in between: its error is this thread's own
                const QString script = fails ? u"throw 'T%1';"_s.arg(t) : u"var A = 加(L, L);"_s;
                const int ok = macro.ExecuteScript(script, inputs, outputs);
                wrong += fails ? ok != 0 || macro.GetError() != u"Error: uncaught exception: T%1, %2; in line 5"_s.arg(t).arg(script)
                               : ok != 1 || outputs[0].GetValue() != QString::number(2 * (t * 100000 + run));
            }
        });
    hog.join();
    loop.join();
    for (std::thread& runner : runners)
        runner.join();
    EXPECT_EQ(loopError, u"Error: 脚本运行超时(超过3000毫秒), for (;;) {}; in line 1"_s);
    EXPECT_EQ(hogError, u"Error: 脚本内存不足(堆上限32 MB), while (true) a.push(new Float64Array(131072).fill(1));; in line 2"_s);
    EXPECT_GE(runs.load(), 450);
    EXPECT_EQ(wrong.load(), 0);
}

TEST_F(ScriptThreadTest, HostUsedOnAnotherThreadStartsOverThereAndOutlivesItsMaker)
{
    CScriptHost host;
    ASSERT_TRUE(host.ExecuteStatement(u"var a = 1;"_s));
    QStringList there; // ran, typeof a, b
    std::thread([&] {
        there << (host.ExecuteStatement(u"var b = 2;"_s) ? u"ran"_s : u"failed"_s)
              << host.Evaluate(u"typeof a"_s).toString() << host.Evaluate(u"b"_s).toString();
    }).join();
    EXPECT_EQ(there, (QStringList{u"ran"_s, u"undefined"_s, u"2"_s}));
    // Back here, after the worker's engine is gone.
    EXPECT_FALSE(host.Evaluate(u"b"_s).isValid());
    ASSERT_TRUE(host.ExecuteStatement(u"var c = 3;"_s));
    EXPECT_EQ(host.Evaluate(u"c"_s).toString(), u"3"_s);
    // A host made on a thread that is gone works here.
    std::unique_ptr<CScriptHost> made;
    std::thread([&] {
        made = std::make_unique<CScriptHost>();
        made->AddScript(u"function f() { return 1; }"_s);
    }).join();
    EXPECT_EQ(made->GetProcedureCount(), 1);
    EXPECT_TRUE(made->ExecuteStatement(u"var here = 1;"_s));
}

TEST_F(ScriptThreadTest, HostDestroyedOnAnotherThreadWhileItsOwnerLives)
{
    auto host = std::make_unique<CScriptHost>();
    ASSERT_TRUE(host->ExecuteStatement(u"var a = 1;"_s));
    std::thread([&] { host.reset(); }).join();
    // The owner thread drops the handed-over scope on its next use.
    for (int i = 0; i < 3; ++i)
    {
        CScriptHost next;
        EXPECT_TRUE(next.ExecuteStatement(u"var b = 2;"_s));
        EXPECT_EQ(next.Evaluate(u"typeof a"_s).toString(), u"undefined"_s);
    }
}
} // namespace
