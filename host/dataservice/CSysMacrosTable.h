#pragma once
#include <QString>

// Column names of the host's script tables "Macros" and "MacrosV2".
namespace CSysMacrosTable {

struct CFieldInfo
{
    static inline const QString key_ch = QStringLiteral("key_ch");
    static inline const QString key_en = QStringLiteral("key_en");
    static inline const QString content = QStringLiteral("content");
    static inline const QString description = QStringLiteral("description");
};

} // namespace CSysMacrosTable
