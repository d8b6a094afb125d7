#pragma once
#include "CUIService.h"

#include <memory>

// The process-wide UI backend. Until one is installed, a console backend is
// used so that headless callers always get an answer.
class CUIServices
{
public:
    static CUIService& Current();
    static void Install(std::shared_ptr<CUIService> service);
    // True when a process or a test installed a backend of its own.
    static bool IsInstalled();
};
