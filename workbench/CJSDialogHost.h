#pragma once
#include <QString>

// What the script import dialog needs of the workbench that owns it.
class CJSDialogHost
{
public:
    virtual ~CJSDialogHost() = default;

    // The name of the row last chosen in the script list ("a\b.js|c.js").
    virtual QString GetChosenScriptName() const = 0;
    // The editor's text as the workbench last gathered it.
    virtual QString GetGatheredScript() const = 0;
    // The workbench's run step on `script` instead of the editor's text; true
    // when the run succeeded (a failure has shown its own message).
    virtual bool RunScriptText(const QString& script) = 0;
};
