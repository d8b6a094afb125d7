#pragma once
#include <Qsci/qsciscintilla.h>

// The script box of the test case dialog: a code editor with JavaScript
// highlighting and line numbers, read and written as plain text.
class CScriptTextBox : public QsciScintilla
{
    Q_OBJECT
public:
    explicit CScriptTextBox(QWidget* parent = nullptr);

    void SetScriptText(const QString& text);
    QString GetScriptText() const { return text(); }

private:
    void FitLineNumberMargin();
};
