#include "CProjectCalcService.h"

#include "CAccessSysData_MacrosTable.h"
#include "CDiagnosticLog.h"
#include "CSysMacrosTable.h"
#include "CTestCaseStore.h"
#include "NativePath.h"

#include <QElapsedTimer>
#include <QFile>

namespace {

const QString kCrLf = QStringLiteral("\r\n");

bool EndsWithLineBreak(const QString& path)
{
    QFile file(NativePath::Map(path));
    if (!file.open(QIODevice::ReadOnly) || file.size() == 0)
        return true;
    file.seek(file.size() - 1);
    return file.read(1) == "\n";
}

} // namespace

bool CProjectCalcService::Run(const Progress& progress, const std::atomic<bool>* stop)
{
    m_results.clear();
    m_ranFor.clear();
    m_analyse.clear();
    m_totalWeight = 0;
    m_members = 0;
    m_failures = 0;
    m_stopped = false;
    QStringList keys;
    if (!m_project.Load()) {
        m_error = m_project.Error();
        return false;
    }
    if (!LoadScripts(keys))
        return false;
    QElapsedTimer clock;
    clock.start();
    const QList<CSampleProject::Member>& members = m_project.Members();
    m_analyse = QStringLiteral("计算开始: %1个构件, %2个脚本").arg(members.size()).arg(keys.size()) + kCrLf;
    QMap<QString, QList<CSampleProject::ScriptUse>> usesByKind;
    for (const CSampleProject::ScriptUse& use : m_project.Uses())
        usesByKind[use.kind].append(use);
    for (const CSampleProject::Member& member : members) {
        if (stop && stop->load()) {
            m_stopped = true;
            break;
        }
        RunMember(member, usesByKind.value(member.kind));
        ++m_members;
        if (progress)
            progress(m_members, int(members.size()));
    }
    WriteLogs(keys, clock.elapsed() / 1000.0);
    return true;
}

bool CProjectCalcService::LoadScripts(QStringList& keys)
{
    m_scripts.clear();
    const std::unique_ptr<NDataModelDataSet> data = CAccessSysData_MacrosTable::GetDataSet();
    if (!data) {
        m_error = QStringLiteral("无法读取系统数据库的脚本表");
        return false;
    }
    for (int row = 1; row <= data->GetRowCount(); ++row) {
        const QString key = data->GetAsString(CSysMacrosTable::CFieldInfo::key_ch, row);
        Script script{data->GetAsString(CSysMacrosTable::CFieldInfo::content, row), {}, {}};
        // A script without stored globals runs on its own text alone.
        CTestCaseStore::LoadGlobals(key, script.globalFun, script.globalParm);
        m_scripts.insert(key, script);
        keys.append(key);
    }
    return true;
}

void CProjectCalcService::RunMember(const CSampleProject::Member& member,
                                    const QList<CSampleProject::ScriptUse>& uses)
{
    QMap<QString, QString> values = member.values;
    for (const CSampleProject::ScriptUse& use : uses) {
        const Result result = RunUse(member, use, values);
        if (result.error.isEmpty())
            m_totalWeight += result.weight;
        else
            ++m_failures;
        m_analyse += AnalyseLine(result);
        m_results.append(result);
    }
}

CProjectCalcService::Result CProjectCalcService::RunUse(const CSampleProject::Member& member,
                                                        const CSampleProject::ScriptUse& use,
                                                        QMap<QString, QString>& values)
{
    Result result{member.name, member.kind, use.key, {}, 0, {}};
    const auto script = m_scripts.constFind(use.key);
    if (script == m_scripts.cend()) {
        result.error = QStringLiteral("系统数据库中没有此脚本");
        return result;
    }
    QString declarations;
    QString missing;
    if (!Declare(use.inputs, values, declarations, missing)) {
        result.error = QStringLiteral("缺少输入参数%1").arg(missing);
        return result;
    }
    m_ranFor[use.key].insert(member.kind);
    CArray<CMacroParam> outputs;
    for (const QString& name : use.outputs)
        outputs.Add(CMacroParam(name, QString(), QString()));
    // The joined text of a test case; the pieces that repeat are compiled once.
    const QStringList program{script->globalFun, script->globalParm, declarations, script->text};
    if (!m_macro.ExecuteScript(program, outputs)) {
        result.error = m_macro.GetError();
        return result;
    }
    QStringList quantities;
    for (const CMacroParam& output : outputs) {
        quantities.append(output.GetName() + QLatin1Char('=') + output.GetValue());
        if (output.GetValue() != CMacroImplement::kMissingParam)
            values.insert(output.GetName(), output.GetValue());
    }
    result.quantities = quantities.join(QStringLiteral(", "));
    if (!use.weight.isEmpty()) {
        QString weight;
        m_macro.EvalParam(use.weight, weight);
        bool ok = false;
        result.weight = weight.toDouble(&ok);
        if (!ok)
            result.error = QStringLiteral("钢筋重量无法计算(%1): %2").arg(use.weight, weight);
    }
    return result;
}

bool CProjectCalcService::Declare(const QList<QPair<QString, QString>>& inputs, const QMap<QString, QString>& values,
                                  QString& declarations, QString& missing)
{
    QStringList lines;
    for (const auto& [name, source] : inputs) {
        bool number = false;
        source.toDouble(&number);
        if (!number && !values.contains(source)) {
            missing = source;
            return false;
        }
        lines.append(QStringLiteral("var %1 = %2;").arg(name, number ? source : values.value(source)));
    }
    declarations = lines.join(kCrLf);
    return true;
}

QString CProjectCalcService::AnalyseLine(const Result& result) const
{
    const QString head = QStringLiteral("%1(%2) %3").arg(result.member, result.kind, result.script);
    if (!result.error.isEmpty())
        return head + QStringLiteral(" 计算出错: ") + result.error + kCrLf;
    QString line = head + QStringLiteral(": ") + result.quantities;
    if (result.weight != 0)
        line += QStringLiteral(", 钢筋重量%1kg").arg(result.weight, 0, 'f', 2);
    return line + kCrLf;
}

QString CProjectCalcService::MacroListText(const QStringList& keys, const QMap<QString, QSet<QString>>& ranFor)
{
    QString text = CTestCaseStore::kRunSeparator + kCrLf;
    for (const QString& key : keys) {
        const QSet<QString> kinds = ranFor.value(key);
        const QString category = kinds.isEmpty() ? kNotExecute
                                 : kinds.size() == 1 ? *kinds.cbegin()
                                                     : kCommonCategory;
        text += key + QLatin1Char(':') + category + kCrLf;
    }
    return text;
}

void CProjectCalcService::WriteLogs(const QStringList& keys, double seconds)
{
    m_analyse += QStringLiteral("%1: %2个构件, %3次出错, 钢筋总重%4kg, 用时%5秒")
                     .arg(m_stopped ? QStringLiteral("计算中止") : QStringLiteral("计算完成"))
                     .arg(m_members)
                     .arg(m_failures)
                     .arg(m_totalWeight, 0, 'f', 2)
                     .arg(seconds, 0, 'f', 2)
                 + kCrLf;
    CDiagnosticLog::WriteAnalyseLog(m_analyse);
    const QString macroList = CDiagnosticLog::MacroListLogPath();
    // The run line must start a line of its own after an earlier run.
    const QString lead = EndsWithLineBreak(macroList) ? QString() : kCrLf;
    CDiagnosticLog::AppendToFile(macroList, lead + MacroListText(keys, m_ranFor));
}
