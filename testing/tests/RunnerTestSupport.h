#pragma once
#include "CTestCaseInfoTable.h"
#include "CTestJavaScriptService.h"
#include "CodePage.h"
#include "NativePath.h"
#include "QxMfcFun.h"
#include "TestEnvironment.h"
#include "UIFunction.h"

#include <QRegularExpression>
#include <QStringList>

// Shared by the runner tests: seeding a script's cases into the store and
// reading the result file back with its time stamps masked.
class RunnerTest : public TempHomeTest
{
protected:
    struct Expect
    {
        QString name;
        QString value;
    };

    static void SeedGlobals(const QString& script, const QString& fun = {}, const QString& parm = {})
    {
        ASSERT_TRUE(CTestCaseStore::SaveGlobals(script, fun, parm));
    }

    static void SeedCase(const QString& script, const QString& caseName, const QString& text,
                         const QList<Expect>& rows)
    {
        CTestCaseInfoTable table;
        for (const Expect& e : rows) {
            const int row = table.InsertRow(0);
            table.SetAsString(CTestCaseInfoTable::ParmName, row, e.name);
            table.SetAsString(CTestCaseInfoTable::ParmValue, row, e.value);
        }
        ASSERT_TRUE(CTestCaseStore::SaveTestCase(script, caseName, text, &table));
    }

    // The result file with every leading "y.m.d h:m:s..." replaced by "T...".
    static QString Masked(const CTestJavaScriptService& service)
    {
        QString text;
        QxMfc::Fun::File2CString(service.GetResultFileName(), text);
        return MaskStamps(text);
    }

    static QString MaskStamps(QString text)
    {
        static const QRegularExpression stamp(QStringLiteral("(^|\\r\\n)\\d{4}\\.\\d{1,2}\\.\\d{1,2} "
                                                             "\\d{1,2}:\\d{1,2}:\\d{1,2}\\.\\.\\."));
        return text.replace(stamp, QStringLiteral("\\1T..."));
    }

    static QString Line(const QString& script, const QString& caseName, const QString& message)
    {
        return QStringLiteral("T...脚本(") + script + QStringLiteral(")检测测试(") + caseName
               + QStringLiteral(")发现错误:") + message + QStringLiteral(" \r\n");
    }
};
