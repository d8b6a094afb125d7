#pragma once
#include "CUIService.h"

#include <cstdio>

// Headless backend (velmora-test): messages go to stderr, questions take the
// configured answer, progress is a one-line bar on a terminal (plain lines
// elsewhere), and shell open only
// names the file unless launching is switched on.
class CConsoleUIService : public CUIService
{
public:
    explicit CConsoleUIService(std::FILE* out = stderr);

    void SetYesNoAnswer(int answer) { m_yesNoAnswer = answer; }
    void SetInputAnswer(const QString& text, bool accept) { m_input = text; m_inputAccepted = accept; }
    void SetLaunchShell(bool launch) { m_launchShell = launch; }
    void SetProgressVisible(bool visible) { m_progressVisible = visible; }
    // On a terminal progress is a bar redrawn in place; elsewhere (a pipe, a
    // CI log) one plain line per new text. Taken from the stream by default.
    void SetTerminal(bool terminal) { m_terminal = terminal; }

    int MessageBox(const QString& text, const QString& caption, unsigned style) override;
    void ProgressBegin(const QString& title) override;
    void ProgressUpdate(const QString& text, int pos, int range) override;
    void ProgressEnd() override;
    bool InputText(const QString& prompt, const QString& caption, QString& value) override;
    QString OpenFileName(const QString& caption, const QString& filter, const QString& folder) override;
    QString SaveFileName(const QString& caption, const QString& filter, const QString& folder) override;
    bool ShellOpen(const QString& target) override;
    void CloseWindowByTitle(const QString& title) override;

private:
    void Print(const QString& line);

    std::FILE* m_out;
    int m_yesNoAnswer = 7; // IDNO: never agree to anything unasked
    QString m_input;
    bool m_inputAccepted = false;
    bool m_launchShell = false;
    bool m_progressVisible = true;
    bool m_progressOpen = false;
    bool m_terminal = false;
    QString m_lastProgress;
};
