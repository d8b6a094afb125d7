#pragma once
#include "CJSDialog.h"

#include <QDialog>

class QComboBox;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

// The window of "脚本导入数据库": controls named by their ids, every action
// handed to the CJSDialog that created it. Closing it deletes it.
class CJSDialogWnd : public QDialog
{
    Q_OBJECT
public:
    CJSDialogWnd(CJSDialog& dialog, QWidget* owner);

    void Push(const CJSDialog::Fields& data);
    void Pull(CJSDialog::Fields& data) const;

private:
    QPushButton* AddButton(int id, const QString& text, void (CJSDialog::*step)());

    CJSDialog& m_dialog;
    QComboBox* m_choice;
    QLineEdit* m_path;
    QPlainTextEdit* m_text;
    QLineEdit* m_database;
    QString m_shownText; // the text as pushed, line ends included
};
