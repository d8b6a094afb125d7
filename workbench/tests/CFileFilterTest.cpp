#include "CFileFilter.h"

#include <gtest/gtest.h>

TEST(CFileFilterTest, WindowsFiltersBecomeQtFilters)
{
    const struct { const char* in; const char* out; } rows[] = {
        {"脚本文件 (*.js)|*.js||", "脚本文件 (*.js)"},
        {"XML (*.xml)|*.xml|所有文件 (*.*)|*.*||", "XML (*.xml);;所有文件 (*)"},
        {"Text|*.txt;*.log|", "Text (*.txt *.log)"},
        {"|*.mdb||", "*.mdb"},
        {"", ""},
        {"dangling", ""},
    };
    for (const auto& row : rows)
        EXPECT_EQ(CFileFilter::ToQt(QString::fromUtf8(row.in)), QString::fromUtf8(row.out)) << row.in;
}
