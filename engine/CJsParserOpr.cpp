#include "CJsParserOpr.h"

#include "CJsRealm.h"
#include "CJsText.h"
#include "CScriptHost.h"

std::mutex CJsParserOpr::s_lock;
CJsParserOpr* CJsParserOpr::s_instance = nullptr;

CJsParserOpr* CJsParserOpr::Instance()
{
    std::lock_guard<std::mutex> guard(s_lock);
    if (!s_instance)
        s_instance = new CJsParserOpr;
    return s_instance;
}

void CJsParserOpr::Release()
{
    std::lock_guard<std::mutex> guard(s_lock);
    delete s_instance;
    s_instance = nullptr;
}

CJsParserOpr::CJsParserOpr() : m_scope(std::make_unique<CJsRealm>()) {}

CJsParserOpr::~CJsParserOpr() = default;

int CJsParserOpr::Run(const QString& script, QString& result, QString& error)
{
    QVariant value;
    if (!m_scope->Run(script, &value))
    {
        error = CScriptHost::ComposeErrorText(m_scope->LastError());
        m_scope->ClearError();
        return 0;
    }
    result = value.isValid() ? value.toString() : QStringLiteral("undefined");
    return 1;
}

int CJsParserOpr::GetParameter(const QString& name, QString& value)
{
    QVariant result;
    if (!CJsText::IsIdentifier(name) || !m_scope->Run(name, &result))
    {
        m_scope->ClearError();
        return 0;
    }
    value = result.isValid() ? result.toString() : QStringLiteral("undefined");
    return 1;
}
