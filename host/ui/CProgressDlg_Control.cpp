#include "CProgressDlg_Control.h"

#include "CUIServices.h"

#include <algorithm>

CProgressDlg_Control::~CProgressDlg_Control()
{
    Close();
}

void CProgressDlg_Control::Show(const QString& title)
{
    if (m_shown)
        return;
    m_shown = true;
    CUIServices::Current().ProgressBegin(title);
}

void CProgressDlg_Control::SetProgressInfo(const CProgressInfo& info)
{
    Show();
    const int range = std::max(0, info.GetRange());
    const int pos = range > 0 ? std::clamp(info.GetPos(), 0, range) : std::max(0, info.GetPos());
    m_info = CProgressInfo(info.GetText(), pos, range);
    CUIServices::Current().ProgressUpdate(m_info.GetText(), pos, range);
}

void CProgressDlg_Control::Close()
{
    if (!m_shown)
        return;
    m_shown = false;
    CUIServices::Current().ProgressEnd();
}
