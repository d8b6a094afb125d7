#pragma once
#include <QString>

// Whole-file text helpers shared by the settings file, the workbench and the
// logs. Paths may be Windows-style; they are mapped to native paths.

// Reads the whole file as 8-bit text in the host's code page. The text ends at
// the first zero byte, as the terminated read buffer does. A file that cannot
// be opened (or is no regular file: a folder, a device, a pipe) shows
// "不存在文件" followed by the path (empty caption, OK only) and gives false
// with `text` left as it was.
bool ReadTextFile(const QString& path, QString& text);

// Creates or replaces the file with text.length() bytes taken from the
// start of the text's UTF-16LE form (no byte-order mark): the byte count is
// the character count, so only the first half of the 16-bit form reaches the
// disk. The asymmetry with ReadTextFile is intended. The old file is replaced
// only once all bytes are written; false (old file kept) otherwise.
bool WriteTextFile(const QString& path, const QString& text);
