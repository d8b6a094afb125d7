#include "CEditCtr.h"

#include "CEditFindDlg.h"
#include "UIFunction.h"
#include "CUIServices.h"
#include "WindowMessages.h"

#include <Qsci/qscilexerjavascript.h>
#include <QContextMenuEvent>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QMenu>

namespace {

constexpr int kErrorMarkerNumber = 1;

} // namespace

CEditCtr::CEditCtr(QWidget* parent)
    : QsciScintilla(parent)
{
    setUtf8(true);
    auto* lexer = new QsciLexerJavaScript(this);
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    lexer->setDefaultFont(fixed);
    for (int style = 0; style < 128; ++style)
        lexer->setFont(fixed, style);
    setLexer(lexer);
    setMarginType(0, QsciScintilla::NumberMargin);
    setMarginWidth(0, QStringLiteral("000000"));
    setMarginLineNumbers(0, true);
    setWrapMode(QsciScintilla::WrapNone);
    m_errorMarker = markerDefine(QsciScintilla::Background, kErrorMarkerNumber);
    setMarkerBackgroundColor(QColor(255, 200, 200), m_errorMarker);
    connect(this, &QsciScintilla::cursorPositionChanged, this, [this](int, int) { ReportLine(); });
}

int CEditCtr::VirtualKeyOf(const QKeyEvent& event)
{
    const int key = event.key();
    if (event.modifiers() & Qt::KeypadModifier) {
        if (key >= Qt::Key_0 && key <= Qt::Key_9)
            return 96 + (key - Qt::Key_0);
        return 0;
    }
    if (key >= Qt::Key_A && key <= Qt::Key_Z)
        return key;
    return 0;
}

void CEditCtr::keyPressEvent(QKeyEvent* event)
{
    if (event->modifiers() & Qt::ControlModifier) {
        // 102 and 103 are the keypad 6 and 7 keys; they work like F and G.
        const int code = VirtualKeyOf(*event);
        if (code == 70 || code == 102)
            OpenFindDialog();
        else if (code == 71 || code == 103)
            GoToLine();
    }
    QsciScintilla::keyPressEvent(event);
}

void CEditCtr::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        ReportLine();
    QsciScintilla::mouseReleaseEvent(event);
}

void CEditCtr::contextMenuEvent(QContextMenuEvent* event)
{
    QMenu* menu = CreatePopupMenu(this);
    if (QAction* chosen = menu->exec(event->globalPos()))
        OnCommand(chosen->data().toInt());
    delete menu;
}

QMenu* CEditCtr::CreatePopupMenu(QWidget* parent)
{
    auto* menu = new QMenu(QStringLiteral("属性"), parent);
    menu->setObjectName(QStringLiteral("141"));
    const std::pair<int, const char16_t*> items[] = {
        {kCopy, u"复制"}, {kPaste, u"粘贴"}, {kFind, u"查找"}, {kUndo, u"撤销"}, {kSelectAll, u"全选"}};
    for (const auto& [id, text] : items)
        menu->addAction(QString::fromUtf16(text))->setData(id);
    return menu;
}

bool CEditCtr::OnCommand(int id)
{
    switch (id) {
    case kCopy: copy(); return true;
    case kPaste: paste(); return true;
    case kFind: OpenFindDialog(); return true;
    case kUndo: undo(); return true;
    case kSelectAll: SendScintilla(SCI_SETSEL, 0L, -1L); return true;
    default: return false;
    }
}

void CEditCtr::OpenFindDialog()
{
    // A new dialog each time; the previous one, if open, goes away.
    if (m_findDialog)
        m_findDialog->close();
    m_findDialog = new CEditFindDlg(this);
    connect(m_findDialog, &CEditFindDlg::findNext, this, &CEditCtr::OnFindNext);
    m_findDialog->show();
}

void CEditCtr::OnFindNext()
{
    if (m_findDialog)
        FindNext(m_findDialog->FindText(), m_findDialog->SearchDown(), m_findDialog->WholeWord(),
                 m_findDialog->MatchCase());
}

bool CEditCtr::FindNext(const QString& text, bool down, bool wholeWord, bool matchCase)
{
    const long selStart = SendScintilla(SCI_GETSELECTIONSTART);
    const long selEnd = SendScintilla(SCI_GETSELECTIONEND);
    const long length = SendScintilla(SCI_GETLENGTH);
    // Scintilla searches backwards when the target's start lies after its end.
    SendScintilla(SCI_SETTARGETSTART, down ? selEnd : selStart);
    SendScintilla(SCI_SETTARGETEND, down ? length : 0L);
    SendScintilla(SCI_SETSEARCHFLAGS, (wholeWord ? SCFIND_WHOLEWORD : 0) | (matchCase ? SCFIND_MATCHCASE : 0));
    const QByteArray needle = text.toUtf8();
    const long found = text.isEmpty() ? -1 : SendScintilla(SCI_SEARCHINTARGET, needle.size(), needle.constData());
    if (found < 0) {
        UIFunction::QXMessageBox(QStringLiteral("已经找到头!"));
        return false;
    }
    SendScintilla(SCI_SETSEL, found, SendScintilla(SCI_GETTARGETEND));
    return true;
}

void CEditCtr::GoToLine()
{
    QString answer;
    if (!CUIServices::Current().InputText(QStringLiteral("行号"), QStringLiteral("跳转到"), answer) || answer.isEmpty())
        return;
    int line = answer.trimmed().toInt() - 1;
    // Not a number: the caret's own line, as the original control took -1.
    if (line < 0) {
        int index = 0;
        getCursorPosition(&line, &index);
    }
    const long position = SendScintilla(SCI_POSITIONFROMLINE, static_cast<unsigned long>(line));
    SendScintilla(SCI_GOTOPOS, position < 0 ? SendScintilla(SCI_GETLENGTH) : position);
    ReportLine();
}

void CEditCtr::ReportLine()
{
    if (!m_statusTarget)
        return;
    int line = 0;
    int index = 0;
    getCursorPosition(&line, &index);
    m_statusTarget->SendMessage(WindowMessages::kLinePosition, static_cast<quintptr>(line + 1), lines());
}

void CEditCtr::MarkErrorLine(int line)
{
    markerDeleteAll(m_errorMarker);
    if (line <= 0)
        return;
    markerAdd(line - 1, m_errorMarker);
    setCursorPosition(line - 1, 0);
    ensureLineVisible(line - 1);
}

int CEditCtr::MarkedErrorLine() const
{
    const int line = const_cast<CEditCtr*>(this)->markerFindNext(0, 1u << m_errorMarker);
    return line < 0 ? 0 : line + 1;
}
