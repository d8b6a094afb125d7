#include "CScriptHost.h"

#include "CJsRealm.h"
#include "CodePage.h"
#include "NativePath.h"

#include <QFile>
#include <QFileInfo>

namespace
{
const QString kHelpFile; // the engine has no help files

// Script files are read as C text: whatever follows a zero byte is not code.
QString DecodeScriptBytes(const QByteArray& bytes)
{
    const qsizetype end = bytes.indexOf('\0');
    return CodePage::ToUnicode(end < 0 ? bytes : bytes.left(end));
}
} // namespace

CScriptHost::CScriptHost()
    : m_control(std::make_unique<CJsRealm>()), m_language(QStringLiteral("JScript"))
{
}

CScriptHost::~CScriptHost() = default;

void CScriptHost::SetLanguage(const QString& language)
{
    m_language = language;
    if (!m_control)
        return;
    m_control->Reset();
    m_procedures.clear();
}

void CScriptHost::ResetScript()
{
    if (!m_control)
        return;
    m_control->Reset();
    m_procedures.clear();
}

bool CScriptHost::AddScript(const QString& script)
{
    return AddCode(script);
}

bool CScriptHost::AddCode(const QString& code)
{
    if (!m_control)
        return false;
    const bool ok = m_control->Run(code, nullptr);
    // Functions declared before a failing statement stay defined.
    RebuildProcedures();
    return ok;
}

bool CScriptHost::LoadScriptFile(const QString& path)
{
    QFile file(NativePath::Map(path));
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return false;
    return AddCode(DecodeScriptBytes(bytes));
}

bool CScriptHost::LoadScriptResource(const QString& name, const QString& type)
{
    const QString resource = type.isEmpty() ? QStringLiteral(":/") + name
                                            : QStringLiteral(":/") + type + QLatin1Char('/') + name;
    QFile file(resource);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    return AddCode(DecodeScriptBytes(file.readAll()));
}

bool CScriptHost::LineHits(std::map<int, qint64>& hits)
{
    return m_control && m_control->LineHits(hits);
}

bool CScriptHost::ExecuteStatement(const QString& statement)
{
    return m_control && m_control->Run(statement, nullptr);
}

bool CScriptHost::ExecutePieces(const QStringList& pieces, bool joinedOnly)
{
    return m_control && m_control->RunPieces(pieces, joinedOnly);
}

bool CScriptHost::LastPiecesRanSplit() const
{
    return m_control && m_control->LastPiecesRun() == CJsRealm::PiecesRun::Split;
}

bool CScriptHost::LastPiecesHadLibrary() const
{
    return m_control && m_control->LastRunHadLibrary();
}

QVariant CScriptHost::Evaluate(const QString& expression)
{
    QVariant value;
    if (!m_control || !m_control->Run(expression, &value))
        return QVariant();
    return value;
}

bool CScriptHost::RunProcedure(const QString& name, const QVariantList& args, QVariant& result)
{
    if (!m_control || !FindProcedure(name))
        return false;
    return m_control->Call(name, args, result);
}

QString CScriptHost::GetProcedureName(int index) const
{
    if (index < 0 || index >= GetProcedureCount())
        return QString();
    return m_procedures[index].Name();
}

const CScriptProcedure* CScriptHost::FindProcedure(const QString& name) const
{
    for (const CScriptProcedure& procedure : m_procedures)
    {
        if (procedure.Name() == name)
            return &procedure;
    }
    return nullptr;
}

void CScriptHost::RebuildProcedures()
{
    m_procedures.clear();
    for (const QString& name : m_control->FunctionNames())
        m_procedures.append(CScriptProcedure(name));
}

QString CScriptHost::GetErrorText()
{
    m_errorText.clear();
    if (!m_control)
        return m_errorText;
    m_errorText = ComposeErrorText(m_control->LastError());
    m_control->ClearError();
    return m_errorText;
}

QString CScriptHost::ComposeErrorText(const CJsErrorInfo& error)
{
    // The help file sits right in front of the source line, with no
    // separator: that is the form the callers know.
    const QString text = QStringLiteral("Error: ") + error.Description() + QStringLiteral(", ") + kHelpFile
                       + error.SourceLine() + QStringLiteral("; in line ") + QString::number(error.Line());
    return text.left(kMaxErrorText);
}
