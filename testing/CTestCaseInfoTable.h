#pragma once
#include "NDataModelDataSet.h"

#include <QString>

// The parameter rows of one test case: which variables a case reads back after
// its run and the value each is expected to have. The runner's comparison
// table is the same table with "NewParmValue" added after the fields below.
class CTestCaseInfoTable : public NDataModelDataSet
{
public:
    static inline const QString ParmMode = QStringLiteral("ParmMode");
    static inline const QString ParmName = QStringLiteral("ParmName");
    static inline const QString ParmValue = QStringLiteral("ParmValue");
    static inline const QString ParmMsg = QStringLiteral("ParmMsg");
    static inline const QString NewParmValue = QStringLiteral("NewParmValue");
    static inline const QString TableName = QStringLiteral("TestCase");

    CTestCaseInfoTable() = default;
    ~CTestCaseInfoTable() override = default;

    int CreateFields() override;
};
