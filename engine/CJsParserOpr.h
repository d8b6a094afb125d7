#pragma once
#include <QString>

#include <memory>
#include <mutex>

class CJsRealm;

// The process-wide parser service: one global scope shared by every caller
// and never reset; it lives until Release. Variables of one run are there
// for the next. The scope belongs to the thread that uses it (the UI
// thread); used from another thread it starts over there.
class CJsParserOpr
{
public:
    static CJsParserOpr* Instance();
    // Drops the service and its scope; the next Instance starts afresh.
    static void Release();

    // Runs the script in the shared scope. On success `result` is String() of
    // its completion value ("undefined" when it has none) and 1 is returned;
    // on failure `error` gets the error text ("Error: ... ; in line n") and 0.
    int Run(const QString& script, QString& result, QString& error);
    // String() of the global variable `name`; 0 when the name is not an
    // identifier or nothing of that name is declared.
    int GetParameter(const QString& name, QString& value);

    CJsParserOpr(const CJsParserOpr&) = delete;
    CJsParserOpr& operator=(const CJsParserOpr&) = delete;

private:
    CJsParserOpr();
    ~CJsParserOpr();

    static std::mutex s_lock;
    static CJsParserOpr* s_instance;

    std::unique_ptr<CJsRealm> m_scope;
};
