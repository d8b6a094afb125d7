#include "CScriptTestEntry.h"

#include "CDialog_JaveList.h"
#include "CDialog_SetInputParm.h"
#include "CDialog_TestSimScript.h"
#include "CTestJavaScriptService.h"
#include "UIFunction.h"

int CScriptTestEntry::Run(QWidget* parent)
{
    QString name;
    {
        CDialog_JaveList chooser(parent);
        if (chooser.exec() != QDialog::Accepted)
            return 0;
        name = chooser.GetChosenName();
    }
    CTestJavaScriptService service;
    if (name.isEmpty()) {
        service.RunAllTests();
        return 1;
    }
    if (!service.HasTestCases(name)) {
        if (UIFunction::QXMessageBox(QString::fromUtf8(kNoCasesQuestion), QString(), UIFunction::MB_YESNO)
            != UIFunction::IDYES)
            return 0;
        QString globalFun;
        QString globalParm;
        if (!CDialog_SetInputParm::Ask(parent, QStringLiteral("设置全局函数"), globalFun))
            return 0;
        if (!CDialog_SetInputParm::Ask(parent, QStringLiteral("设置全局参数"), globalParm))
            return 0;
        service.SaveGlobals(name, globalFun, globalParm);
    }
    CDialog_TestSimScript dialog(name, parent);
    dialog.exec();
    return 1;
}
