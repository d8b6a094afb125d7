#pragma once
#include <QDialog>

class QCheckBox;
class QLineEdit;
class QRadioButton;

// The editor's find dialog: find only, no replace; direction down preset.
// Modeless; each "find next" click is reported through findNext.
class CEditFindDlg : public QDialog
{
    Q_OBJECT
public:
    explicit CEditFindDlg(QWidget* owner);

    QString FindText() const;
    bool SearchDown() const;
    bool MatchCase() const;
    bool WholeWord() const;

signals:
    void findNext();

private:
    QLineEdit* m_text;
    QCheckBox* m_wholeWord;
    QCheckBox* m_matchCase;
    QRadioButton* m_up;
    QRadioButton* m_down;
};
