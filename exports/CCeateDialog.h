#pragma once
#include "VelmoraExport.h"

// The host's door to the workbench window (name kept as the host knows it).
// Instance/Release manage a process-wide object; Domodle opens the workbench
// window and returns at once.
class VELMORA_EXPORT CCeateDialog
{
public:
    static CCeateDialog* Instance();
    // Destroys the object; the workbench window stays open.
    static void Release();
    // Opens (or reopens) the workbench window; needs the host's QApplication.
    void Domodle();

    CCeateDialog& operator=(const CCeateDialog&) { return *this; }

protected:
    CCeateDialog();
    virtual ~CCeateDialog();

private:
    static CCeateDialog* m_pInstance;
};
