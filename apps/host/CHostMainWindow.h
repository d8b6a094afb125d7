#pragma once
#include "CProjectCalcService.h"

#include <QMainWindow>

#include <atomic>

class CVelmoraLibrary;
class QLabel;
class QProgressBar;
class QTableWidget;
class QThread;

// The stand-in estimating application's main window: its menu opens the
// script workbench and the script test of the loaded library, and "计算"
// computes the project on a worker thread (the script engine of the library
// owns the window thread) and shows each member's quantities and the total
// rebar weight. Controls carry object names for tests.
class CHostMainWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit CHostMainWindow(CVelmoraLibrary& library, QWidget* parent = nullptr);
    ~CHostMainWindow() override;

    // Tells the user, once, what is missing when the library did not load.
    void ReportLibrary();
    bool IsComputing() const { return m_worker != nullptr; }

public slots:
    void OpenWorkbench();
    void RunScriptTest();
    void Compute();

signals:
    void computeFinished();
    // The host is closing; the workbench windows it opened have no owner.
    void closed();
    // The window's first paint: it is on the screen.
    void firstPainted();

protected:
    void closeEvent(QCloseEvent* event) override;
    bool event(QEvent* event) override;

private:
    struct Outcome
    {
        bool ok = false;
        QString error;
        QList<CProjectCalcService::Result> results;
        double totalWeight = 0;
        int members = 0;
        int failures = 0;
        bool stopped = false;
    };

    void BuildMenus();
    void BuildTable();
    void ShowProgress(int done, int total);
    void ShowOutcome();
    void StopWorker();

    CVelmoraLibrary& m_library;
    QTableWidget* m_table = nullptr;
    QLabel* m_libraryStatus = nullptr;
    QLabel* m_summary = nullptr;
    QProgressBar* m_progress = nullptr;
    QAction* m_computeAction = nullptr;
    QThread* m_worker = nullptr;
    std::atomic<bool> m_stop{false};
    bool m_painted = false;
    Outcome m_outcome;
};
