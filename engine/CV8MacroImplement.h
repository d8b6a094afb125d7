#pragma once
#include "CArray.h"
#include "CMacroParam.h"

#include <QString>

class CParms;

// Runs a macro on the shared parser service (CJsParserOpr) instead of an
// engine of its own. Nothing is reset: every run shares one global scope
// with all other users of the service, so a variable of an earlier run is
// still readable later. Results: 1 success, 0 failure.
class CV8MacroImplement
{
public:
    CV8MacroImplement() = default;
    virtual ~CV8MacroImplement() = default;

    // Declarations "\r\n" global script "\r\n" script, run on the service;
    // outputs read back by EvalParam. The text is not kept as last script.
    int ExecuteScript(const QString& script, const CArray<CMacroParam>& inputs, CArray<CMacroParam>& outputs);
    // The service's value of the trimmed name; failing that, the name as given
    // (blanks and all) run as a script; failing that, "参数不存在". Always 1.
    int EvalParam(const QString& name, QString& value);
    QString GetError() const { return m_error; }
    QString GetLastScript() const { return m_lastScript; }

    // Builds and runs the text with the outputs' joining expression at its
    // end. The outputs are not filled (the distribution step writes nothing)
    // and the call still succeeds.
    int ExecuteParms(const QString& script, const CParms& inputs, CParms& outputs);
    void AddGlobalScript(const QString& text) { m_globalScript += QStringLiteral("\r\n") + text; }

    // Names joined as A+"}"+"{"+B+"}"+"{"+C; one name alone; none: empty.
    static QString OutputExpression(CParms& outputs);
    static const QString kMissingParam;
    static const QString kRetrievalError;

    CV8MacroImplement(const CV8MacroImplement&) = delete;
    CV8MacroImplement& operator=(const CV8MacroImplement&) = delete;

private:
    int RunText(const QString& text);
    static int DistributeOutputs(const QString& joined, CParms& outputs);

    QString m_lastScript;
    QString m_globalScript;
    QString m_error;
};
