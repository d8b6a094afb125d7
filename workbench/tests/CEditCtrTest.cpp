#include "CEditCtr.h"
#include "CEditFindDlg.h"
#include "TestEnvironment.h"
#include "WindowMessages.h"

#include <QAction>
#include <QKeyEvent>
#include <QMenu>
#include <QTest>

namespace {

// Collects the editor's line reports.
struct LineSink : CMessageTarget
{
    QList<QPair<quintptr, qintptr>> reports;
    qintptr SendMessage(unsigned message, quintptr wparam, qintptr lparam) override
    {
        if (message == WindowMessages::kLinePosition)
            reports.append({wparam, lparam});
        return 0;
    }
};

class CEditCtrTest : public TempHomeTest
{
protected:
    void SetUp() override
    {
        TempHomeTest::SetUp();
        editor.SetStatusTarget(&sink);
        editor.setText("var a = 1;\nvar ab = A;\nvar a2 = a;\n");
    }
    QString Selected() { return editor.selectedText(); }
    long SelStart() { return editor.SendScintilla(QsciScintilla::SCI_GETSELECTIONSTART); }

    LineSink sink;
    CEditCtr editor;
};

TEST_F(CEditCtrTest, FindWalksDownAndUpWithWholeWordAndCase)
{
    // Down from the start: every "a" as a word, case-insensitive: a, A, a.
    editor.SendScintilla(QsciScintilla::SCI_SETSEL, 0L, 0L);
    QList<long> down;
    while (editor.FindNext("a", true, true, false))
        down.append(SelStart());
    EXPECT_EQ(down, (QList<long>{4, 20, 32}));
    EXPECT_EQ(Ui().MessageTexts(), QStringList{"已经找到头!"});
    // The failed search leaves the last match selected; up walks back from it.
    EXPECT_EQ(Selected(), "a");
    QList<long> up;
    while (editor.FindNext("a", false, true, true))
        up.append(SelStart());
    EXPECT_EQ(up, (QList<long>{4}));
    // Not whole word, case sensitive: "A" only once.
    editor.SendScintilla(QsciScintilla::SCI_SETSEL, 0L, 0L);
    EXPECT_TRUE(editor.FindNext("A", true, false, true));
    EXPECT_EQ(SelStart(), 20);
    EXPECT_FALSE(editor.FindNext("A", true, false, true));
}

TEST_F(CEditCtrTest, ControlKeysOpenFindAndGoToByTheirCodes)
{
    const struct { int key; Qt::KeyboardModifiers mods; int code; bool find; bool go; } rows[] = {
        {Qt::Key_F, Qt::ControlModifier, 70, true, false},
        {Qt::Key_6, Qt::ControlModifier | Qt::KeypadModifier, 102, true, false},
        {Qt::Key_G, Qt::ControlModifier, 71, false, true},
        {Qt::Key_7, Qt::ControlModifier | Qt::KeypadModifier, 103, false, true},
        {Qt::Key_6, Qt::ControlModifier, 0, false, false},
        {Qt::Key_F, Qt::NoModifier, 70, false, false},
    };
    for (const auto& row : rows) {
        Ui().Clear();
        if (editor.FindDialog())
            delete editor.FindDialog();
        QKeyEvent event(QEvent::KeyPress, row.key, row.mods);
        EXPECT_EQ(CEditCtr::VirtualKeyOf(event), row.code) << row.key;
        QTest::keyClick(&editor, Qt::Key(row.key), row.mods);
        EXPECT_EQ(editor.FindDialog() != nullptr, row.find) << row.key;
        EXPECT_EQ(Ui().CallsOf("InputText").size(), row.go ? 1 : 0) << row.key;
    }
    // A plain F is typed as a letter.
    EXPECT_TRUE(editor.text().contains(QLatin1Char('f'), Qt::CaseInsensitive));
}

TEST_F(CEditCtrTest, GoToLineMovesCaretAndReports)
{
    const struct { const char* answer; int line; } rows[] = {{"1", 0}, {"3", 2}, {"x", 2}};
    for (const auto& row : rows) {
        Ui().QueueInput(QString::fromUtf8(row.answer));
        sink.reports.clear();
        editor.GoToLine();
        int line = -1, index = -1;
        editor.getCursorPosition(&line, &index);
        EXPECT_EQ(QPair(line, index), QPair(row.line, 0)) << row.answer;
        ASSERT_FALSE(sink.reports.isEmpty());
        EXPECT_EQ(sink.reports.last(), (QPair<quintptr, qintptr>(row.line + 1, 4))) << row.answer;
    }
    // An empty answer changes nothing.
    Ui().QueueInput(QString());
    sink.reports.clear();
    editor.GoToLine();
    EXPECT_TRUE(sink.reports.isEmpty());
}

TEST_F(CEditCtrTest, PopupCarriesItsIdsAndSelectAllWorks)
{
    std::unique_ptr<QMenu> menu(editor.CreatePopupMenu(nullptr));
    QStringList items;
    for (QAction* action : menu->actions())
        items << action->text() + QLatin1Char('=') + action->data().toString();
    EXPECT_EQ(items.join(QLatin1Char(',')), "复制=4,粘贴=1,查找=2,撤销=32771,全选=3");
    EXPECT_TRUE(editor.OnCommand(CEditCtr::kSelectAll));
    EXPECT_EQ(editor.selectedText(), editor.text());
    EXPECT_FALSE(editor.OnCommand(32789));
}

} // namespace
