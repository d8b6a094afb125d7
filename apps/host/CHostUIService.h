#pragma once
#include "CUIService.h"

#include <QPointer>

class QProgressDialog;
class QWidget;

// The host window's answers to the library's prompts: Qt dialogs over the
// main window. (The workbench library brings its own for its windows.)
class CHostUIService : public CUIService
{
public:
    explicit CHostUIService(QWidget* parent = nullptr) : m_parent(parent) {}
    ~CHostUIService() override;

    int MessageBox(const QString& text, const QString& caption, unsigned style) override;
    void ProgressBegin(const QString& title) override;
    void ProgressUpdate(const QString& text, int pos, int range) override;
    void ProgressEnd() override;
    bool InputText(const QString& prompt, const QString& caption, QString& value) override;
    QString OpenFileName(const QString& caption, const QString& filter, const QString& folder) override;
    QString SaveFileName(const QString& caption, const QString& filter, const QString& folder) override;
    bool ShellOpen(const QString& target) override;
    void CloseWindowByTitle(const QString& title) override;

    // "Name (*.x)|*.x|...||" -> "Name (*.x);;..."
    static QString QtFilter(const QString& filter);

private:
    QPointer<QWidget> m_parent;
    QProgressDialog* m_progress = nullptr;
};
