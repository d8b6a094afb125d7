#include "CJSDialogWnd.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>

namespace {

template <typename Widget>
Widget* Named(Widget* widget, int id)
{
    widget->setObjectName(QString::number(id));
    return widget;
}

} // namespace

CJSDialogWnd::CJSDialogWnd(CJSDialog& dialog, QWidget* owner)
    : QDialog(owner)
    , m_dialog(dialog)
    , m_choice(Named(new QComboBox(this), 1004))
    , m_path(Named(new QLineEdit(this), 1000))
    , m_text(Named(new QPlainTextEdit(this), 1001))
    , m_database(Named(new QLineEdit(this), 1002))
{
    setObjectName(QString::number(CJSDialog::IDD));
    setAttribute(Qt::WA_DeleteOnClose);
    setModal(false);
    setWindowTitle(QStringLiteral("脚本导入数据库"));
    if (owner)
        setWindowIcon(owner->windowIcon());
    m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));

    auto* grid = new QGridLayout(this);
    grid->addWidget(new QLabel(QStringLiteral("脚本"), this), 0, 0);
    grid->addWidget(m_choice, 0, 1, 1, 2);
    grid->addWidget(new QLabel(QStringLiteral("脚本路径"), this), 1, 0);
    grid->addWidget(m_path, 1, 1);
    grid->addWidget(AddButton(1015, QStringLiteral("打开"), &CJSDialog::OnBrowseScript), 1, 2);
    grid->addWidget(m_text, 2, 0, 1, 3);
    grid->addWidget(new QLabel(QStringLiteral("数据库"), this), 3, 0);
    grid->addWidget(m_database, 3, 1);
    grid->addWidget(AddButton(1016, QStringLiteral("打开"), &CJSDialog::OnBrowseDatabase), 3, 2);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(AddButton(1003, QStringLiteral("执行"), &CJSDialog::OnRun));
    buttons->addStretch();
    buttons->addWidget(AddButton(1, QStringLiteral("保存修改"), &CJSDialog::OnSave));
    QPushButton* cancel = Named(new QPushButton(QStringLiteral("取消"), this), 2);
    cancel->setAutoDefault(false);
    connect(cancel, &QPushButton::clicked, this, &QDialog::close);
    buttons->addWidget(cancel);
    grid->addLayout(buttons, 4, 0, 1, 3);
    grid->setRowStretch(2, 1);
    grid->setColumnStretch(1, 1);
    resize(640, 460);

    connect(m_choice, &QComboBox::activated, this, [this](int index) { m_dialog.OnSelectScript(index); });
}

QPushButton* CJSDialogWnd::AddButton(int id, const QString& text, void (CJSDialog::*step)())
{
    QPushButton* button = Named(new QPushButton(text, this), id);
    // Enter in an edit must not save or run.
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, [this, step] { (m_dialog.*step)(); });
    return button;
}

void CJSDialogWnd::Push(const CJSDialog::Fields& data)
{
    const QSignalBlocker block(m_choice);
    m_choice->clear();
    m_choice->addItems(data.entries);
    m_choice->setCurrentIndex(data.selected);
    m_path->setText(data.scriptPath);
    m_shownText = data.scriptText;
    m_text->setPlainText(data.scriptText);
    m_database->setText(data.databasePath);
}

void CJSDialogWnd::Pull(CJSDialog::Fields& data) const
{
    data.scriptPath = m_path->text();
    // The editor gives LF line ends; scripts stored with CR LF keep them.
    QString text = m_text->toPlainText();
    if (m_shownText.contains(QLatin1Char('\r')))
        text.replace(QLatin1Char('\n'), QStringLiteral("\r\n"));
    data.scriptText = text;
    data.databasePath = m_database->text();
    data.selected = m_choice->currentIndex();
}
