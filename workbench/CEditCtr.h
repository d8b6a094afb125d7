#pragma once
#include <Qsci/qsciscintilla.h>
#include <QPointer>

#include "CEditFindDlg.h"
class CMessageTarget;
class QMenu;

// The script editor: JavaScript text with line numbers, find (Ctrl+F) and go
// to line (Ctrl+G), a popup of edit commands, and a report of the caret's
// line to a status target after every caret move and mouse release.
class CEditCtr : public QsciScintilla
{
    Q_OBJECT
public:
    // Popup command ids.
    enum Command { kCopy = 4, kPaste = 1, kFind = 2, kUndo = 32771, kSelectAll = 3 };

    explicit CEditCtr(QWidget* parent = nullptr);

    // The window that receives the line report (may be null).
    void SetStatusTarget(CMessageTarget* target) { m_statusTarget = target; }

    // Runs a popup command; false for an id the editor does not know.
    bool OnCommand(int id);
    // The popup "属性" with its command ids as action data.
    QMenu* CreatePopupMenu(QWidget* parent);

    void OpenFindDialog();
    CEditFindDlg* FindDialog() const { return m_findDialog; }
    // One search from the current selection. False (after the end message)
    // when nothing more is found.
    bool FindNext(const QString& text, bool down, bool wholeWord, bool matchCase);
    void GoToLine();
    void ReportLine();

    // Caret on the start of a 1-based line, with that line marked as failed;
    // 0 clears the mark.
    void MarkErrorLine(int line);
    int MarkedErrorLine() const;

    // Windows virtual-key code of a key event: letters A-Z, keypad digits
    // 96-105, otherwise 0.
    static int VirtualKeyOf(const QKeyEvent& event);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void OnFindNext();

    CMessageTarget* m_statusTarget = nullptr;
    QPointer<CEditFindDlg> m_findDialog;
    int m_errorMarker = -1;
};
