#include "CMacroImplement.h"

#include "CMacroParamFile.h"

namespace
{
const QString kLineBreak = QStringLiteral("\r\n");
}

const QString CMacroImplement::kMissingParam = QStringLiteral("参数不存在!");

QString CMacroImplement::DeclarationsOf(const CArray<CMacroParam>& inputs)
{
    // Built from the last input to the first, each line put in front: the
    // result is in list order.
    QString block;
    for (int i = inputs.GetSize() - 1; i >= 0; --i)
        block.prepend(inputs[i].ToJsDeclaration() + kLineBreak);
    return block;
}

int CMacroImplement::ExecuteScript(const QString& script, const CArray<CMacroParam>& inputs,
                                   CArray<CMacroParam>& outputs)
{
    m_engine.ResetScript();
    return Run(DeclarationsOf(inputs) + kLineBreak + m_globalScript + kLineBreak + script, {}, outputs);
}

int CMacroImplement::ExecuteScript(const QString& script, CArray<CMacroParam>& outputs)
{
    m_engine.ResetScript();
    return Run(m_globalScript + kLineBreak + script, {}, outputs);
}

int CMacroImplement::ExecuteScript(const QStringList& pieces, CArray<CMacroParam>& outputs)
{
    m_engine.ResetScript();
    const QStringList all = QStringList{m_globalScript} + pieces;
    return Run(all.join(kLineBreak), all, outputs);
}

// With pieces, `text` is what they make joined.
int CMacroImplement::Run(const QString& text, const QStringList& pieces, CArray<CMacroParam>& outputs)
{
    m_lastScript = text;
    const bool ran = pieces.isEmpty() ? m_engine.ExecuteStatement(text) : m_engine.ExecutePieces(pieces, m_joinedRuns);
    if (!ran)
    {
        m_error = m_engine.GetErrorText();
        return 0;
    }
    for (CMacroParam& output : outputs)
    {
        QString value;
        if (!EvalParam(output.GetName(), value))
            return 0;
        output.SetValue(value);
    }
    return 1;
}

int CMacroImplement::EvalParam(QString name, QString& value)
{
    const QVariant result = m_engine.Evaluate(name.trimmed());
    value = result.isValid() ? result.toString() : kMissingParam;
    return 1;
}

int CMacroImplement::ExecuteMacroFile(const QString& path, CArray<CMacroParam>& outputs)
{
    CMacroParamFile file;
    if (!file.Read(path))
        return 0;
    CArray<CMacroParam> inputs;
    CArray<CMacroParam> filled;
    file.GetInputParams(inputs);
    file.GetOutputParams(filled);
    if (!ExecuteScript(file.GetScript(), inputs, filled))
        return 0;
    outputs.SetSize(filled.GetSize());
    for (int i = 0; i < filled.GetSize(); ++i)
        outputs.SetAt(i, filled[i]);
    return 1;
}
