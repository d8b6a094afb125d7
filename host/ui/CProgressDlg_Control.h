#pragma once
#include <QString>

// The host's progress window for long runs, shown through the installed UI
// backend (a dialog in the GUI, a bar on stderr on the console). The window
// closes at the latest when the control goes out of scope.
class CProgressDlg_Control
{
public:
    // What the window shows: a line of text and a position of a range
    // (range 0: the end is not known).
    class CProgressInfo
    {
    public:
        CProgressInfo() = default;
        CProgressInfo(const QString& text, int pos = 0, int range = 0) : m_text(text), m_pos(pos), m_range(range) {}

        QString GetText() const { return m_text; }
        int GetPos() const { return m_pos; }
        int GetRange() const { return m_range; }
        void SetText(const QString& text) { m_text = text; }
        void SetPos(int pos) { m_pos = pos; }
        void SetRange(int range) { m_range = range; }

    private:
        QString m_text;
        int m_pos = 0;
        int m_range = 0;
    };

    CProgressDlg_Control() = default;
    virtual ~CProgressDlg_Control();
    CProgressDlg_Control(const CProgressDlg_Control&) = delete;
    CProgressDlg_Control& operator=(const CProgressDlg_Control&) = delete;

    // Shows the window; a second call while shown does nothing.
    void Show(const QString& title = QString());
    // Updates text and position, showing the window first if needed. A
    // negative range counts as unknown; the position is kept within the range.
    void SetProgressInfo(const CProgressInfo& info);
    // Hides the window; harmless when it is not shown.
    void Close();

    bool IsShown() const { return m_shown; }
    CProgressInfo GetProgressInfo() const { return m_info; }

private:
    bool m_shown = false;
    CProgressInfo m_info;
};
