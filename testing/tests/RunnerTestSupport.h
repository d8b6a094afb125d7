#pragma once
#include "CAccessSysData_MacrosTable.h"
#include "COutPutTextTable.h"
#include "CSampleDataSeeder.h"
#include "CSampleScripts.h"
#include "CSysMacrosTable.h"
#include "CTestCaseInfoTable.h"
#include "CTestCaseStore.h"
#include "CTestJavaScriptService.h"
#include "CodePage.h"
#include "HostContext.h"
#include "NativePath.h"
#include "QxMfcFun.h"
#include "TestEnvironment.h"
#include "UIFunction.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QStringList>

// One expected output of a case: its name and stored value.
struct Expect
{
    QString name;
    QString value;
    QString comment = {};
};

// The rows of a case table from `first` on, each as "name|value|comment".
inline QStringList RowTexts(const NDataModelDataSet& table, int first = 1)
{
    QStringList rows;
    for (int row = first; row <= table.GetRowCount(); ++row)
        rows << table.GetAsString(CTestCaseInfoTable::ParmName, row) + "|" + table.GetAsString(CTestCaseInfoTable::ParmValue, row)
                    + "|" + table.GetAsString(CTestCaseInfoTable::ParmMsg, row);
    return rows;
}

// A sample case's expected outputs, as "name|value|comment".
inline QStringList ExpectedTexts(const QList<CSampleScripts::Expected>& expected)
{
    QStringList texts;
    for (const CSampleScripts::Expected& e : expected)
        texts << e.name + "|" + e.value + "|" + e.comment;
    return texts;
}

// A file's text through the code page, or "<unreadable>".
inline QString FileText(const QString& path)
{
    QString text;
    return QxMfc::Fun::File2CString(path, text) ? text : QStringLiteral("<unreadable>");
}

// A stored script's text.
inline QString ScriptText(const QString& key)
{
    QString text;
    CAccessSysData_MacrosTable::GetMacroContent(key, text);
    return text;
}

// A script's stored global texts as "functions|parameters", or "<failed>".
inline QString Globals(const QString& script)
{
    QString fun, parm;
    return CTestCaseStore::LoadGlobals(script, fun, parm) ? fun + "|" + parm : "<failed>";
}

inline void Fill(NDataModelDataSet& table, const QList<Expect>& rows)
{
    for (const Expect& e : rows) {
        const int row = table.InsertRow(0);
        table.SetAsString(CTestCaseInfoTable::ParmName, row, e.name);
        table.SetAsString(CTestCaseInfoTable::ParmValue, row, e.value);
        if (!e.comment.isNull())
            table.SetAsString(CTestCaseInfoTable::ParmMsg, row, e.comment);
    }
}

// Shared by the store and runner tests: seeding a script's cases into the store and
// reading the result file back with its time stamps masked.
class RunnerTest : public TempHomeTest
{
protected:
    static void SeedGlobals(const QString& script, const QString& fun = {}, const QString& parm = {})
    {
        ASSERT_TRUE(CTestCaseStore::SaveGlobals(script, fun, parm));
    }

    static void SeedCase(const QString& script, const QString& caseName, const QString& text, const QList<Expect>& rows)
    {
        CTestCaseInfoTable table;
        Fill(table, rows);
        ASSERT_TRUE(CTestCaseStore::SaveTestCase(script, caseName, text, &table));
    }

    // The result file with every leading "y.m.d h:m:s..." replaced by "T...".
    static QString Masked(const CTestJavaScriptService& service)
    {
        static const QRegularExpression stamp(
            "(^|\\r\\n)\\d{4}\\.\\d{1,2}\\.\\d{1,2} \\d{1,2}:\\d{1,2}:\\d{1,2}\\.\\.\\.");
        return FileText(service.GetResultFileName()).replace(stamp, "\\1T...");
    }

    // The comparison table printed under a mismatch: name, stored and new value per row.
    static QString PrintedTable(const QList<QStringList>& rows)
    {
        COutPutTextTable table;
        for (const char* title : {"ParmName", "ParmValue", "NewParmValue"})
            table.AddTextNode(title);
        for (const QStringList& row : rows)
            for (const QString& cell : row)
                table.AddNodeValue(cell);
        return table.ToText();
    }

    static QString Line(const QString& script, const QString& caseName, const QString& message)
    {
        return "T...脚本(" + script + ")检测测试(" + caseName + ")发现错误:" + message + " \r\n";
    }
};

// A temporary home seeded with the sample scripts and their cases.
class SampleHomeTest : public TempHomeTest
{
protected:
    void SetUp() override
    {
        TempHomeTest::SetUp();
        CSampleDataSeeder seeder;
        ASSERT_TRUE(seeder.SeedIfNeeded()) << seeder.Error().toStdString();
    }

    // The script names as the chooser lists them.
    static QStringList ScriptNames()
    {
        QStringList names;
        const auto data = CAccessSysData_MacrosTable::GetDataSet();
        for (int row = 1; data && row <= data->GetRowCount(); ++row)
            names << data->GetAsString(CSysMacrosTable::CFieldInfo::key_ch, row);
        return names;
    }
};
