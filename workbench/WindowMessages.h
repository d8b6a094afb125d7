#pragma once
#include <QtGlobal>

// Private window messages between the workbench windows. They travel through
// one entry per window (CMessageTarget::SendMessage), so the host and tests
// can post them by number as a Windows host would.
namespace WindowMessages {

constexpr unsigned WM_USER = 0x0400;
// Editor -> tool frame: wparam current line (1-based), lparam line count.
constexpr unsigned kLinePosition = WM_USER + 100;
// The workbench answers this query with 1 and does nothing else.
constexpr unsigned kAliveQuery = 0x7101;

} // namespace WindowMessages

// A window that takes private messages by number.
class CMessageTarget
{
public:
    virtual ~CMessageTarget() = default;
    virtual qintptr SendMessage(unsigned message, quintptr wparam, qintptr lparam) = 0;
};

// A window that handles commands by id; true when the id was handled.
class CCommandTarget
{
public:
    virtual ~CCommandTarget() = default;
    virtual bool OnCommand(int id) = 0;
};
