#include "CMacroImplement.h"
#include "CScriptHost.h"
#include "EngineTestSupport.h"
#include "HostContext.h"
#include "TestEnvironment.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace
{
class ScriptThreadTest : public TempHomeTest
{
protected:
    void TearDown() override
    {
        HostContext::Instance().SetScriptTimeBudgetMs(HostContext::kDefaultScriptBudgetMs);
        TempHomeTest::TearDown();
    }
};

// One macro runner per thread, all running at once: each sees only its own
// inputs, outputs and errors.
TEST_F(ScriptThreadTest, RunnersOnSeveralThreadsRunConcurrently)
{
    constexpr int kThreads = 4;
    constexpr int kRuns = 150;
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
    {
        threads.emplace_back([t, &wrong] {
            CMacroImplement macro;
            macro.AddGlobalScript(QStringLiteral("function 加(a, b) { return a + b; }"));
            for (int run = 0; run < kRuns; ++run)
            {
                CArray<CMacroParam> inputs;
                inputs.Add(Param(QStringLiteral("L"), QString::number(t * 1000 + run)));
                CArray<CMacroParam> outputs = Outputs({QStringLiteral("A")});
                if (run % 25 == 24)
                {
                    // A failing run in between: its error is this thread's own.
                    const QString script = QStringLiteral("throw 'T%1';").arg(t);
                    const bool failed = macro.ExecuteScript(script, inputs, outputs) == 0;
                    const QString expected = QStringLiteral("Error: uncaught exception: T%1, %2; in line 5").arg(t).arg(script);
                    wrong += !failed || macro.GetError() != expected;
                    continue;
                }
                const int ok = macro.ExecuteScript(QStringLiteral("var A = 加(L, L);"), inputs, outputs);
                wrong += ok != 1 || outputs[0].GetValue() != QString::number(2 * (t * 1000 + run));
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong.load(), 0);
}

TEST_F(ScriptThreadTest, TimeoutOnOneThreadLeavesTheOthersRunning)
{
    HostContext::Instance().SetScriptTimeBudgetMs(400);
    std::atomic<bool> looping{true};
    QString loopError;
    std::thread loop([&] {
        CScriptHost host;
        host.ExecuteStatement(QStringLiteral("for (;;) {}"));
        loopError = host.GetErrorText();
        looping = false;
    });
    int quickRuns = 0;
    int quickFailures = 0;
    std::thread quick([&] {
        CScriptHost host;
        while (looping || quickRuns < 20)
        {
            host.ResetScript();
            quickFailures += !host.ExecuteStatement(QStringLiteral("var x = 0; for (var i = 0; i < 1000; i++) x += i;"));
            quickFailures += host.Evaluate(QStringLiteral("x")).toString() != QStringLiteral("499500");
            ++quickRuns;
        }
    });
    loop.join();
    quick.join();
    EXPECT_EQ(loopError, QStringLiteral("Error: 脚本运行超时(超过400毫秒), for (;;) {}; in line 1"));
    EXPECT_GE(quickRuns, 20);
    EXPECT_EQ(quickFailures, 0);
}

TEST_F(ScriptThreadTest, HostUsedOnAnotherThreadStartsOverThere)
{
    CScriptHost host;
    ASSERT_TRUE(host.ExecuteStatement(QStringLiteral("var a = 1;")));
    QString typeOfA, b;
    bool ranThere = false;
    std::thread worker([&] {
        ranThere = host.ExecuteStatement(QStringLiteral("var b = 2;"));
        typeOfA = host.Evaluate(QStringLiteral("typeof a")).toString();
        b = host.Evaluate(QStringLiteral("b")).toString();
    });
    worker.join();
    EXPECT_TRUE(ranThere);
    EXPECT_EQ(typeOfA, QStringLiteral("undefined"));
    EXPECT_EQ(b, QStringLiteral("2"));
    // Back here, after the worker's engine is gone.
    EXPECT_FALSE(host.Evaluate(QStringLiteral("b")).isValid());
    ASSERT_TRUE(host.ExecuteStatement(QStringLiteral("var c = 3;")));
    EXPECT_EQ(host.Evaluate(QStringLiteral("c")).toString(), QStringLiteral("3"));
}

TEST_F(ScriptThreadTest, HostOutlivesTheThreadThatMadeIt)
{
    std::unique_ptr<CScriptHost> host;
    std::thread maker([&] {
        host = std::make_unique<CScriptHost>();
        host->AddScript(QStringLiteral("function f() { return 1; }"));
    });
    maker.join();
    ASSERT_TRUE(host);
    EXPECT_EQ(host->GetProcedureCount(), 1);
    EXPECT_TRUE(host->ExecuteStatement(QStringLiteral("var here = 1;")));
}

TEST_F(ScriptThreadTest, HostDestroyedOnAnotherThreadWhileItsOwnerLives)
{
    auto host = std::make_unique<CScriptHost>();
    ASSERT_TRUE(host->ExecuteStatement(QStringLiteral("var a = 1;")));
    std::thread dropper([&] { host.reset(); });
    dropper.join();
    // The owner thread drops the handed-over scope on its next use.
    for (int i = 0; i < 3; ++i)
    {
        CScriptHost next;
        EXPECT_TRUE(next.ExecuteStatement(QStringLiteral("var b = 2;")));
        EXPECT_EQ(next.Evaluate(QStringLiteral("typeof a")).toString(), QStringLiteral("undefined"));
    }
}

} // namespace
