#pragma once
#include "CEditListCtrl.h"
#include "CVelmoraDlg.h"
#include "TestEnvironment.h"

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QTimer>
#include <functional>

// Answers the next modal dialog once its loop runs: `fill` gets the dialog
// (null when none came up) and decides how it ends.
inline void AnswerNextDialog(std::function<void(QDialog*)> fill)
{
    QTimer::singleShot(0, [fill] { fill(qobject_cast<QDialog*>(QApplication::activeModalWidget())); });
}

// Types into the line edit with that id.
inline void Type(QWidget* dialog, int id, const QString& text)
{
    if (auto* edit = dialog ? dialog->findChild<QLineEdit*>(QString::number(id)) : nullptr)
        edit->setText(text);
}

// Types each text into the line edit of its id, then presses OK.
inline void FillAndAccept(QDialog* dialog, std::initializer_list<std::pair<int, QString>> texts)
{
    for (const auto& [id, text] : texts)
        Type(dialog, id, text);
    dialog->accept();
}

// The workbench's parameter pane, a row as "name|value|description|type".
inline QStringList ParamRows()
{
    QStringList rows;
    CEditListCtrl* list = CVelmoraDlg::Instance()->ParamList();
    for (int r = 0; r < list->GetItemCount(); ++r)
        rows << QStringList{list->GetItemText(r, 0), list->GetItemText(r, 1), list->GetItemText(r, 2),
                            list->GetItemText(r, 3)}.join(QLatin1Char('|'));
    return rows;
}

// A fresh workbench window over a temporary home.
class WorkbenchTest : public TempHomeTest
{
protected:
    void TearDown() override
    {
        CVelmoraDlg::DestroyInstance();
        TempHomeTest::TearDown();
    }
    CVelmoraDlg* Window() { return CVelmoraDlg::Instance(); }
};
