#pragma once
#include "CUIService.h"

#include <QList>
#include <deque>

// Test backend: records every call with its exact texts and answers from a
// script. Unscripted questions take the defaults (OK, No, cancel).
class CRecordingUIService : public CUIService
{
public:
    struct Call
    {
        QString kind; // "MessageBox", "ProgressBegin", "ProgressUpdate", ...
        QString text;
        QString caption;
        unsigned style = 0;
        int pos = 0;
        int range = 0;
    };

    QList<Call> calls;

    void QueueAnswer(int answer) { m_answers.push_back(answer); }
    void QueueInput(const QString& text, bool accept = true) { m_inputs.push_back({text, accept}); }
    void QueueFileName(const QString& path) { m_files.push_back(path); }
    void SetShellOpenResult(bool ok) { m_shellOk = ok; }
    // The progress window's Cancel, as if pressed before the first check.
    void SetProgressCancelled(bool cancelled) { m_cancelled = cancelled; }

    QList<Call> CallsOf(const QString& kind) const;
    QStringList MessageTexts() const;
    void Clear() { calls.clear(); }

    int MessageBox(const QString& text, const QString& caption, unsigned style) override;
    void ProgressBegin(const QString& title) override;
    void ProgressUpdate(const QString& text, int pos, int range) override;
    void ProgressEnd() override;
    bool ProgressCancelled() override { return m_cancelled; }
    bool InputText(const QString& prompt, const QString& caption, QString& value) override;
    QString OpenFileName(const QString& caption, const QString& filter, const QString& folder) override;
    QString SaveFileName(const QString& caption, const QString& filter, const QString& folder) override;
    bool ShellOpen(const QString& target) override;
    void CloseWindowByTitle(const QString& title) override;

private:
    QString NextFile();

    std::deque<int> m_answers;
    std::deque<std::pair<QString, bool>> m_inputs;
    std::deque<QString> m_files;
    bool m_shellOk = true;
    bool m_cancelled = false;
};
