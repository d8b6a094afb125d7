#pragma once
#include <QPointer>
#include <QString>
#include <QStringList>

class CJSDialogHost;
class CJSDialogWnd;
class QWidget;

// "脚本导入数据库": one script of the host's macro tables, keyed by its
// relative path, to edit, test-run inside the workbench's script and store
// back. The object lives with the workbench; its window only while open.
// Every step works on the fields below, so it runs the same with or without
// a window; with one, the controls are pulled before and pushed after.
class CJSDialog
{
public:
    enum { IDD = 1008 };

    // The dialog's data, as its controls show it.
    struct Fields
    {
        QString scriptPath;   // edit 1000: key in the macro table
        QString scriptText;   // edit 1001
        QString databasePath; // edit 1002
        QStringList entries;  // combo 1004
        int selected = -1;
    };

    explicit CJSDialog(CJSDialogHost* host = nullptr);
    virtual ~CJSDialog();
    CJSDialog(const CJSDialog&) = delete;
    CJSDialog& operator=(const CJSDialog&) = delete;

    void SetHost(CJSDialogHost* host) { m_host = host; }

    // Destroys an open window, creates it again owned by `owner`, centred on
    // it, initialises it from the chosen script row and shows it.
    void Create(QWidget* owner);
    void DestroyWindow();
    bool IsWindow() const;
    CJSDialogWnd* GetWindow() const;

    // Scripts of the graphical-method and general folders live in the second table.
    bool UseSecondTable() const;
    // The stored content of the script path; the text is empty unless found.
    bool GetContent(QString& text) const;
    // Stores the script text under the script path.
    bool SetContent() const;

    // The steps the window's controls trigger.
    void OnInitDialog();
    void FillFromChosenRow();
    void OnSelectScript(int index);
    void OnBrowseScript();
    void OnBrowseDatabase();
    void OnRun();
    void OnSave();

    // The text a run executes: the workbench script with the stored content
    // replaced by the edited text, or the edited text appended.
    QString BuildRunText(const QString& workbenchScript) const;
    // The key a browsed file gives: what follows the first "SE" (else "se")
    // and its separator; the whole path when there is neither.
    static QString KeyFromBrowsedPath(const QString& path);

    Fields& Data() { return m_data; }
    const Fields& Data() const { return m_data; }

private:
    void Pull();
    void Push();
    QString ChosenRow() const;
    static QString ReadFromAccess(const QString& database, const QString& key, bool& found);

    CJSDialogHost* m_host = nullptr;
    Fields m_data;
    QPointer<CJSDialogWnd> m_window;
};
