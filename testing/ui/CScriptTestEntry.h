#pragma once

class QWidget;

// The script test as the host starts it: choose a script (or all), make sure
// a chosen script has its global texts, and open its test case dialog; all
// scripts are run at once. 1 when a test ran or the test case dialog was
// shown, 0 when the user stopped on the way.
class CScriptTestEntry
{
public:
    static inline const char kNoCasesQuestion[] = "没有这个脚本的测试用例，是否新建测试!(Y/N)";

    static int Run(QWidget* parent = nullptr);
};
