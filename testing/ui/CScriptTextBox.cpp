#include "CScriptTextBox.h"

#include <Qsci/qscilexerjavascript.h>

#include <QFontDatabase>

CScriptTextBox::CScriptTextBox(QWidget* parent) : QsciScintilla(parent)
{
    auto* lexer = new QsciLexerJavaScript(this);
    const QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    lexer->setDefaultFont(font);
    lexer->setFont(font);
    setLexer(lexer);
    setUtf8(true);
    setMarginType(0, QsciScintilla::NumberMargin);
    setMarginLineNumbers(0, true);
    setTabWidth(4);
    setAutoIndent(true);
    setBraceMatching(QsciScintilla::SloppyBraceMatch);
    setEolMode(QsciScintilla::EolWindows);
    connect(this, &QsciScintilla::linesChanged, this, &CScriptTextBox::FitLineNumberMargin);
    FitLineNumberMargin();
}

void CScriptTextBox::SetScriptText(const QString& text)
{
    setText(text);
    FitLineNumberMargin();
}

void CScriptTextBox::FitLineNumberMargin()
{
    setMarginWidth(0, QStringLiteral("0") + QString::number(std::max(lines(), 100)));
}
