#pragma once
#include <QDialog>

class QLabel;
class QPlainTextEdit;

// Dialog 1018: edits one text under a caption that the caller chooses (the
// window title and the label 1019 both show it). "保存" accepts.
class CDialog_SetInputParm : public QDialog
{
    Q_OBJECT
public:
    explicit CDialog_SetInputParm(QWidget* parent = nullptr);

    void SetCaption(const QString& caption) { m_caption = caption; }
    void SetText(const QString& text) { m_text = text; }
    QString GetText() const { return m_text; }

    int exec() override;

    // Shows the dialog; true with the edited text when it was saved.
    static bool Ask(QWidget* parent, const QString& caption, QString& text);

private:
    void OnSave();

    QString m_caption;
    QString m_text;
    QLabel* m_label;
    QPlainTextEdit* m_edit;
};
