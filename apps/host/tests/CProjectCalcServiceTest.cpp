#include "CDBFactory.h"
#include "CDataServiceAbsolute.h"
#include "CDiagnosticLog.h"
#include "CProjectCalcService.h"
#include "CTestCaseStore.h"
#include "CodePage.h"
#include "NativePath.h"
#include "RunnerTestSupport.h"

#include <cmath>
#include <dlfcn.h>
#include <functional>
#include <thread>

class CProjectCalcServiceTest : public SampleHomeTest
{
protected:
    static QString ReadLog(const QString& path) { return CodePage::ToUnicode(ReadBytes(NativePath::Map(path))); }
    static bool Sql(const QString& sql, const QVariantList& params)
    {
        return CDBFactory::GetSingle(CDBFactory::kSystemDatabase)->ExecuteBound(sql, params);
    }
};

TEST_F(CProjectCalcServiceTest, ComputesTheSampleProjectAndRecordsTheRunForTheScriptList)
{
    // An earlier record without a final line break: the run line starts a line anyway.
    ASSERT_TRUE(WriteBytes(NativePath::Map(CDiagnosticLog::MacroListLogPath()), "old.js:x"));
    CProjectCalcService service;
    ASSERT_TRUE(service.Run()) << service.Error().toStdString();
    EXPECT_EQ(std::pair(service.MemberCount(), service.FailureCount()), std::pair(7, 0));
    double sum = 0;
    QString bars;
    for (const CProjectCalcService::Result& result : service.Results()) {
        sum += result.weight;
        if (result.member == "KZ1" && result.script == "柱\\柱纵筋长度.js")
            bars = result.quantities;
    }
    // The column's lap length comes from its own anchorage length (d = 25), not
    // from the script's global default.
    const double ll = std::ceil(1.4 * std::ceil(0.14 * 360 / 1.43 * 25));
    EXPECT_TRUE(bars.startsWith(QStringLiteral("L=%1, W=").arg(3000 + ll))) << bars.toStdString();
    EXPECT_GT(sum, 0);
    EXPECT_DOUBLE_EQ(service.TotalWeight(), sum);

    CArray<QString> lines;
    ASSERT_TRUE(CTestCaseStore::ReadLastRunScripts(lines));
    QStringList listed(lines.begin(), lines.end()), expected = {
        "板\\板分布筋.js:板", "柱\\柱纵筋长度.js:柱", "梁\\弯起钢筋长度.js:梁", "梁\\矩形箍筋下料长度.js:通用",
        "通用脚本\\受拉钢筋锚固长度.js:通用", "通用脚本\\纵向受拉钢筋搭接长度.js:柱", "通用脚本\\钢筋每米重量.js:通用"};
    listed.sort();
    EXPECT_EQ(listed, expected);
    const QString macroList = ReadLog(CDiagnosticLog::MacroListLogPath());
    EXPECT_TRUE(macroList.startsWith("old.js:x\r\n" + QString(29, QLatin1Char('*')) + "\r\n"));
    EXPECT_TRUE(macroList.contains("\r\n图形法脚本\\圆形箍筋长度.js:NotExecute\r\n"));
}

TEST_F(CProjectCalcServiceTest, ABadScriptUseIsAnErrorRowAndTheRunGoesOn)
{
    CSampleProject project;
    ASSERT_TRUE(project.Load());
    ASSERT_TRUE(Sql("insert into Macros (key_ch, content) values (?, ?)", {"梁\\语法错误.js", "var L = ;"}));
    const struct { QString key, inputs, weight, error; } rows[] = {
        {"梁\\没有的脚本.js", "d=d", "", "系统数据库中没有此脚本"},
        {"梁\\弯起钢筋长度.js", "d=nosuch", "", "缺少输入参数nosuch"},
        {"梁\\语法错误.js", "d=d", "", "Error: "},
        {"梁\\弯起钢筋长度.js", "d=d", "L * nosuch", "钢筋重量无法计算(L * nosuch): 参数不存在!"},
    };
    int seq = 100;
    for (const auto& row : rows)
        ASSERT_TRUE(Sql("insert into MemberScripts (kind, seq, key_ch, inputs, outputs, weight) values (?, ?, ?, ?, ?, ?)",
                        {"梁", ++seq, row.key, row.inputs, "L", row.weight}));
    CProjectCalcService service;
    ASSERT_TRUE(service.Run());
    QStringList errors;
    for (const CProjectCalcService::Result& result : service.Results())
        if (result.member == "KL1" && !result.error.isEmpty())
            errors.append(result.error);
    ASSERT_EQ(errors.size(), std::size(rows));
    for (int i = 0; i < errors.size(); ++i)
        EXPECT_TRUE(errors.at(i).startsWith(rows[i].error)) << errors.at(i).toStdString();
    EXPECT_EQ(std::pair(service.MemberCount(), service.FailureCount()), std::pair(7, 3 * 4)); // three beams
}

TEST_F(CProjectCalcServiceTest, StopEndsTheRunAfterTheCurrentMember)
{
    std::atomic<bool> stop{false};
    CProjectCalcService service;
    ASSERT_TRUE(service.Run([&stop](int, int) { stop = true; }, &stop));
    EXPECT_EQ(std::pair(service.Stopped(), service.MemberCount()), std::pair(true, 1));
    for (const CProjectCalcService::Result& result : service.Results())
        EXPECT_EQ(result.member, service.Results().first().member);
    EXPECT_TRUE(ReadLog(CDiagnosticLog::CalAnalyseLogPath()).contains("计算中止: 1个构件"));
}

TEST_F(CProjectCalcServiceTest, ProjectIsSeededOnceAndKeepsAddedMembers)
{
    CSampleProject project;
    ASSERT_TRUE(project.Load());
    EXPECT_TRUE(project.Seeded());
    const QList<CSampleProject::Member> extra = {CSampleProject::SampleMembers().first()};
    ASSERT_TRUE(project.AddMembers(extra));
    EXPECT_FALSE(project.Seeded());
    ASSERT_EQ(project.Members().size(), CSampleProject::SampleMembers().size() + 1);
    EXPECT_EQ(project.Members().last().values, extra.first().values);
    EXPECT_EQ(project.UsesOf("柱").first().inputs, (QList<QPair<QString, QString>>{{"d", "d"}}));

    using Inputs = QList<QPair<QString, QString>>;
    EXPECT_EQ(CSampleProject::ParseInputs(" a = b ;c=1.5;bad;=x;y=;p=q=r;"), (Inputs{{"a", "b"}, {"c", "1.5"}}));
}

// The host computes with its own engine while the loaded library runs scripts
// with its copy; each on threads of their own (a thread holds one context).
TEST_F(CProjectCalcServiceTest, RunsBesideALibraryWithItsOwnEngineCopy)
{
    void* library = dlopen(VELMORA_FAKE_ENGINE, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    auto answer = reinterpret_cast<int (*)()>(dlsym(library, "FakeEngineAnswer"));
    ASSERT_NE(answer, nullptr);
    auto onThread = [](const std::function<int()>& work) {
        int result = 0;
        std::thread([&] { result = work(); }).join();
        return result;
    };
    auto compute = [] {
        CProjectCalcService service;
        return service.Run() && service.FailureCount() == 0 ? 1 : 0;
    };
    EXPECT_EQ(onThread(answer), 42);
    EXPECT_EQ(onThread(compute), 1);
    EXPECT_EQ(onThread(answer), 42);
    EXPECT_EQ(onThread(compute), 1);
}
