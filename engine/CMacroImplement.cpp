#include "CMacroImplement.h"

#include "CJsEngine.h"
#include "CJsText.h"
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
    return Run({DeclarationsOf(inputs) + kLineBreak + m_globalScript, script}, false, outputs);
}

int CMacroImplement::ExecuteScript(const QString& script, CArray<CMacroParam>& outputs)
{
    m_engine.ResetScript();
    return Run({m_globalScript, script}, false, outputs);
}

int CMacroImplement::ExecuteScript(const QStringList& pieces, CArray<CMacroParam>& outputs)
{
    m_engine.ResetScript();
    return Run(QStringList{m_globalScript} + pieces, true, outputs);
}

QString CMacroImplement::GetLastScript() const
{
    return m_lastPieces.join(kLineBreak);
}

// The whole text is the pieces joined; its first piece is the part in front
// of the caller's script. Only a run that is not split needs the whole at hand.
int CMacroImplement::Run(const QStringList& pieces, bool split, CArray<CMacroParam>& outputs)
{
    m_lastPieces = pieces;
    // Pieces keep their place and file name in the whole, so line counts match a joined run.
    const bool ran = split ? m_engine.ExecutePieces(pieces, m_joinedRuns) : m_engine.ExecuteStatement(GetLastScript());
    if (m_collectCoverage)
        CollectLineHits(CJsText::LineBreaks(pieces.front()) + 1);
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

void CMacroImplement::CollectLineHits(int prefixLines)
{
    std::map<int, qint64> whole;
    m_engine.LineHits(whole);
    m_lineHits.clear();
    for (auto it = whole.upper_bound(prefixLines); it != whole.end(); ++it)
        m_lineHits.emplace(it->first - prefixLines, it->second);
}

void CMacroImplement::SetCollectCoverage(bool on)
{
    m_collectCoverage = on;
    m_lineHits.clear();
    if (on)
        CJsEngine::EnableCoverage();
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
