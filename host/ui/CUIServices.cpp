#include "CUIServices.h"

#include "CConsoleUIService.h"

#include <mutex>

namespace {

std::mutex& Lock()
{
    static std::mutex lock;
    return lock;
}

std::shared_ptr<CUIService>& Slot()
{
    static std::shared_ptr<CUIService> service;
    return service;
}

bool& Installed()
{
    static bool installed = false;
    return installed;
}

} // namespace

CUIService& CUIServices::Current()
{
    std::lock_guard guard(Lock());
    auto& slot = Slot();
    if (!slot)
        slot = std::make_shared<CConsoleUIService>();
    return *slot;
}

void CUIServices::Install(std::shared_ptr<CUIService> service)
{
    std::lock_guard guard(Lock());
    Installed() = service != nullptr;
    Slot() = std::move(service);
}

bool CUIServices::IsInstalled()
{
    std::lock_guard guard(Lock());
    return Installed();
}
