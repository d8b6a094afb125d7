#pragma once
#include "CUIService.h"

#include <QPointer>

class QProgressDialog;
class QWidget;

// The desktop backend of the UI services: real message boxes, a progress
// dialog that keeps the windows painting during long work, input and file
// dialogs, the desktop's opener and closing windows by title.
class CQtUIService : public CUIService
{
public:
    CQtUIService();
    ~CQtUIService() override;

    int MessageBox(const QString& text, const QString& caption, unsigned style) override;
    void ProgressBegin(const QString& title) override;
    void ProgressUpdate(const QString& text, int pos, int range) override;
    void ProgressEnd() override;
    bool ProgressCancelled() override;
    bool InputText(const QString& prompt, const QString& caption, QString& value) override;
    QString OpenFileName(const QString& caption, const QString& filter, const QString& folder) override;
    QString SaveFileName(const QString& caption, const QString& filter, const QString& folder) override;
    bool ShellOpen(const QString& target) override;
    void CloseWindowByTitle(const QString& title) override;

    // Installs this backend unless the process installed one of its own.
    static void InstallIfNone();

private:
    static QWidget* DialogParent();

    QPointer<QProgressDialog> m_progress;
};
