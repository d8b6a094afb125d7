#include "CCeateDialog.h"

#include "CLibraryStartup.h"
#include "CUIServices.h"
#include "CVelmoraDlg.h"

CCeateDialog* CCeateDialog::m_pInstance = nullptr;

CCeateDialog::CCeateDialog() = default;
CCeateDialog::~CCeateDialog() = default;

CCeateDialog* CCeateDialog::Instance()
{
    if (!m_pInstance)
        m_pInstance = new CCeateDialog;
    return m_pInstance;
}

void CCeateDialog::Release()
{
    delete m_pInstance;
    m_pInstance = nullptr;
}

void CCeateDialog::Domodle()
{
    if (!CLibraryStartup::Begin("CCeateDialog::Domodle"))
        return;
    // A window already open is replaced, with its log viewer.
    if (CVelmoraDlg::Existing()) {
        CUIServices::Current().CloseWindowByTitle(QStringLiteral("CalAnalyse.log - 记事本"));
        CVelmoraDlg::DestroyInstance();
    }
    CVelmoraDlg::Instance()->show();
}
