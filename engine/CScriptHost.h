#pragma once
#include "CJsErrorInfo.h"
#include "CScriptProcedure.h"

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>
#include <QVector>

#include <map>
#include <memory>

class CJsRealm;

// One JavaScript engine instance with the few operations the system needs:
// reset, add code, run a statement block, evaluate an expression, call a
// global function, list the global functions, and a one-line error text.
//
// Values coming back are the empty variant (undefined: "no value") or text
// made by JavaScript's own String(). Every operation runs under the host's
// time budget; a failing one leaves its error for GetErrorText. Use one
// object from one thread at a time; moved to another thread it starts over
// with a fresh scope there.
class CScriptHost
{
public:
    CScriptHost();
    ~CScriptHost();

    void SetLanguage(const QString& language);
    const QString& GetLanguage() const { return m_language; }

    // Discards all code, variables and procedures: the next operation runs in
    // a fresh global scope where nothing of before survives.
    void ResetScript();
    bool AddScript(const QString& script);
    // Whole file as 8-bit text in the host's code page (up to a zero byte).
    bool LoadScriptFile(const QString& path);
    // Qt resource ":/name", or ":/type/name" with a type; false if missing.
    bool LoadScriptResource(const QString& name, const QString& type = QString());
    bool ExecuteStatement(const QString& statement);
    // As ExecuteStatement on the pieces joined with "\r\n", with the pieces
    // that repeat from run to run compiled once (see CJsRealm::RunPieces).
    bool ExecutePieces(const QStringList& pieces, bool joinedOnly = false);
    // Whether the last ExecutePieces ran the pieces one by one to the end.
    bool LastPiecesRanSplit() const;
    // Whether that split run declared a library's functions on first use.
    bool LastPiecesHadLibrary() const;
    // The expression's value; the empty variant for undefined or any error.
    QVariant Evaluate(const QString& expression);
    bool RunProcedure(const QString& name, const QVariantList& args, QVariant& result);
    // Line coverage of the code added or executed last (see CJsRealm::LineHits).
    bool LineHits(std::map<int, qint64>& hits);

    int GetProcedureCount() const { return static_cast<int>(m_procedures.size()); }
    QString GetProcedureName(int index) const;
    // Exact, case-sensitive name; null if none. Valid until the next load or reset.
    const CScriptProcedure* FindProcedure(const QString& name) const;

    // "Error: " description ", " help file, source line "; in line " n, for
    // the last error, cut to 256 characters. Reading clears the error, so a
    // second read gives the text of no error ("Error: , ; in line 0").
    QString GetErrorText();

    static constexpr int kMaxErrorText = 256;
    // The error text for one error, in the form above.
    static QString ComposeErrorText(const CJsErrorInfo& error);

    CScriptHost(const CScriptHost&) = delete;
    CScriptHost& operator=(const CScriptHost&) = delete;

private:
    bool AddCode(const QString& code);
    void RebuildProcedures();

    std::unique_ptr<CJsRealm> m_control;
    QVector<CScriptProcedure> m_procedures;
    QString m_language;
    QString m_errorText;
};
