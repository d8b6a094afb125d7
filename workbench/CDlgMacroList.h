#pragma once
#include "CMacroListService.h"

#include <QDialog>
#include <functional>

class QMenu;
class QTreeWidget;

// "宏列表": the macros of the system database ("宏名", "描述"). Opening one
// hands it to the workbench and closes the list; the popup menu adds,
// deletes and modifies macros, command 32788 exports the list as XML.
class CDlgMacroList : public QDialog
{
    Q_OBJECT
public:
    enum { IDD = 140, IDC_LIST = 1030 };
    enum Command { ID_ADD = 32772, ID_DELETE = 32773, ID_MODIFY = 32789, ID_EXPORT = 32788, ID_OPEN = 1 };

    using Opener = std::function<void(const CMacro&)>;
    // Asks the user for name, type and description; false when cancelled.
    using FactsAsker = std::function<bool(CMacro& facts)>;

    explicit CDlgMacroList(QWidget* parent = nullptr);

    void SetOpener(Opener opener) { m_opener = std::move(opener); }
    void SetFactsAsker(FactsAsker asker) { m_askFacts = std::move(asker); }

    // One entry for buttons, menu items and tests; false for an unknown id
    // or a command that did nothing.
    bool OnCommand(int id);
    // Reads the list from the database again.
    void Refill();
    int CurrentRow() const;
    void SetCurrentRow(int row);
    CMacroListService& Service() { return m_service; }

private:
    bool OpenCurrent();
    bool AddMacro();
    bool ModifyCurrent();
    bool ExportList();
    void ShowList();
    void ShowPopup(const QPoint& at);

    CMacroListService m_service;
    QTreeWidget* m_list;
    QMenu* m_popup;
    Opener m_opener;
    FactsAsker m_askFacts;
};
