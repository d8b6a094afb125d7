#pragma once
#include "CArray.h"

#include <QString>

namespace QxMfc {

// File and text helpers of the host's base library. Every path may be
// Windows-style; it is mapped to a native path first (NativePath).
// Text files are 8-bit in the host's code page (CodePage): reading converts
// from it, writing converts to it ("?" for characters it cannot hold).
class Fun
{
public:
    // The system data folder of the host context (native path, no trailing
    // separator). Callers append "\name" to it.
    static QString GetSysDataPath();

    // True when the path names an existing file or folder.
    static bool CheckFile(const QString& path);

    // Splits at every occurrence of `separator` and drops empty pieces: an
    // empty text gives no pieces. Returns the number of pieces.
    static int Split(const QString& text, const QString& separator, CArray<QString>& pieces);

    // Splits at every occurrence of `separator` and keeps empty pieces: a text
    // holding the separator n times gives n + 1 pieces. Returns that number.
    static int SplitCString(const QString& text, const QString& separator, CArray<QString>& pieces);

    // Creates or replaces the file with the text (code page). False when the
    // file cannot be written, e.g. its folder is missing.
    static bool SaveFileContent(const QString& path, const QString& text);

    // Appends the text (code page), creating the file when missing. False when
    // it cannot be opened for writing.
    static bool AppendCString2File(const QString& path, const QString& text);

    // Reads the whole file (code page). A missing or unreadable file gives
    // false and leaves `text` as it was.
    static bool File2CString(const QString& path, QString& text);

    // Names (with extension, without folder) of the files in `folder` that
    // match the wildcard `pattern` (e.g. "*.tx": exactly that extension), in
    // name order. A missing folder gives false and no names.
    static bool ScanFolder_HasExtendName(const QString& folder, const QString& pattern, CArray<QString>& names);
};

} // namespace QxMfc
