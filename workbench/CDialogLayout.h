#pragma once
#include <QString>

class QBoxLayout;
class QDialog;
class QGridLayout;
class QLineEdit;
class QPushButton;
class QWidget;

// The shared form of the small macro dialogs: labelled rows, optional "..."
// browse buttons, and OK / Cancel (ids 1 and 2) at the bottom.
class CDialogLayout
{
public:
    explicit CDialogLayout(QDialog* dialog);

    static QLineEdit* Edit(QWidget* parent, int id);
    void AddRow(const QString& label, QWidget* field, QPushButton* browse = nullptr);
    QPushButton* Browse(int id);
    void AddNote(const QString& text);
    void AddOkCancel();

private:
    QDialog* m_dialog;
    QGridLayout* m_grid;
    int m_row = 0;
};
