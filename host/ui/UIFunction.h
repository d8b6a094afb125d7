#pragma once
#include <QString>

// Message boxes with the Windows style and answer codes the system is written
// against, routed to the installed UI backend (CUIServices).
namespace UIFunction {

constexpr unsigned MB_OK = 0x0;
constexpr unsigned MB_YESNO = 0x4;
constexpr unsigned MB_ICONINFORMATION = 0x40;
constexpr unsigned MB_TYPEMASK = 0xF;

constexpr int IDOK = 1;
constexpr int IDYES = 6;
constexpr int IDNO = 7;

int QXMessageBox(const QString& text, const QString& caption = QString(), unsigned style = MB_OK);

} // namespace UIFunction
