#pragma once
#include "CCoolBar.h"

class CEditListCtrl;

// The pane "输入参数": the scripts of the last run, read from "macrolist.log"
// (id 1001). Choosing a row is reported with the row's script name.
class CSteelBarBar : public CCoolBar
{
    Q_OBJECT
public:
    explicit CSteelBarBar(QWidget* parent);
    CEditListCtrl* List() const { return m_list; }

    // (Re)loads the rows from the last run's script list.
    void Load();
    QString GetCellText(int row, int column) const;
    void Clear();
    // The script name of the row last chosen; empty before any choice.
    QString LastChosenName() const { return m_lastChosen; }
    void ChooseRow(int row);

signals:
    void scriptChosen(const QString& name);

private:
    CEditListCtrl* m_list;
    QString m_lastChosen;
};
