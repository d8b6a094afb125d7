#pragma once
#include "WindowMessages.h"

#include <QMainWindow>

class CEditCtr;
class CResultBar;
class CScriptBar;
class CSteelBarBar;
class QLabel;
class QMenu;
class QToolBar;

// The frame inside the workbench: toolbar 130, the three docking panes, a
// menu bar for the commands without a button, and the status bar with the
// line pane. Every command goes to the owner first.
class CToolFrm : public QMainWindow, public CMessageTarget, public CCommandTarget
{
    Q_OBJECT
public:
    CToolFrm(CCommandTarget* owner, QWidget* parent);

    CScriptBar* ScriptBar() const { return m_scriptBar; }
    CSteelBarBar* ScriptListBar() const { return m_steelBar; }
    CResultBar* ResultBar() const { return m_resultBar; }
    CEditCtr* Editor() const;
    QToolBar* ToolBar() const { return m_toolBar; }
    QLabel* LinePane() const { return m_linePane; }

    bool OnCommand(int id) override;
    qintptr SendMessage(unsigned message, quintptr wparam, qintptr lparam) override;

    // Popup menu 129 (script list) or 135 (parameter pane), items carrying
    // their command ids as data.
    static QMenu* CreatePopupMenu(int menuId, QWidget* parent);
    // Label of a command from the string table ("label\ntip"); empty if none.
    static QString CommandText(int id);

    void SetStatusLine(int line, int count);

private:
    void CreateToolBar();
    void CreateMenus();
    void CreatePanes();
    void CreateStatusBar();
    void ShowPopup(int menuId, QWidget* list, const QPoint& at);
    QAction* CommandAction(int id, const QString& text);

    CCommandTarget* m_owner;
    QToolBar* m_toolBar = nullptr;
    CScriptBar* m_scriptBar = nullptr;
    CSteelBarBar* m_steelBar = nullptr;
    CResultBar* m_resultBar = nullptr;
    QLabel* m_linePane = nullptr;
};
