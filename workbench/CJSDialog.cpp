#include "CJSDialog.h"

#include "CAccessSysData_MacrosTable.h"
#include "CAccessSysData_MacrosV2Table.h"
#include "CArray.h"
#include "CComDB.h"
#include "CConnectJSSysData.h"
#include "CConnectManager.h"
#include "CJSDialogHost.h"
#include "CJSDialogWnd.h"
#include "CMacrosTable.h"
#include "CSysMacrosTable.h"
#include "CUIServices.h"
#include "QxMfcFun.h"
#include "UIFunction.h"

#include <QWidget>

namespace {

const QString kBackslash = QStringLiteral("\\");

QStringList SplitPieces(const QString& text, const QString& separator)
{
    CArray<QString> pieces;
    QxMfc::Fun::Split(text, separator, pieces);
    return QStringList(pieces.begin(), pieces.end());
}

} // namespace

CJSDialog::CJSDialog(CJSDialogHost* host)
    : m_host(host)
{
}

CJSDialog::~CJSDialog()
{
    DestroyWindow();
}

void CJSDialog::Create(QWidget* owner)
{
    DestroyWindow();
    m_window = new CJSDialogWnd(*this, owner);
    OnInitDialog();
    if (owner) {
        // Centred on the owner's window rectangle by integer halves; own size
        // kept (its frame is not known before it is shown).
        const QRect outer = owner->frameGeometry();
        const QSize size = m_window->size();
        m_window->move(outer.left() + (outer.width() - size.width()) / 2,
                       outer.top() + (outer.height() - size.height()) / 2);
    }
    m_window->show();
}

void CJSDialog::DestroyWindow()
{
    if (m_window)
        delete m_window.data();
}

bool CJSDialog::IsWindow() const
{
    return !m_window.isNull();
}

CJSDialogWnd* CJSDialog::GetWindow() const
{
    return m_window.data();
}

bool CJSDialog::UseSecondTable() const
{
    return m_data.scriptPath.contains(QStringLiteral("图形法脚本\\"))
           || m_data.scriptPath.contains(QStringLiteral("通用脚本\\"));
}

bool CJSDialog::GetContent(QString& text) const
{
    text.clear();
    if (UseSecondTable())
        return CAccessSysData_MacrosV2Table::GetMacroContent(m_data.scriptPath, text);
    return CAccessSysData_MacrosTable::GetMacroContent(m_data.scriptPath, text);
}

bool CJSDialog::SetContent() const
{
    if (UseSecondTable())
        return CAccessSysData_MacrosV2Table::SetMacroContent(m_data.scriptPath, m_data.scriptText);
    return CAccessSysData_MacrosTable::SetMacroContent(m_data.scriptPath, m_data.scriptText);
}

QString CJSDialog::ChosenRow() const
{
    return m_host ? m_host->GetChosenScriptName() : QString();
}

void CJSDialog::OnInitDialog()
{
    const QStringList pieces = SplitPieces(ChosenRow(), QStringLiteral("|"));
    if (!pieces.isEmpty())
        m_data.scriptPath = pieces.first();
    m_data.entries.clear();
    const QString first = m_data.scriptPath.section(kBackslash, 0, 0);
    // Further pieces are names in the first piece's folder unless they say so.
    for (int i = 0; i < pieces.size(); ++i) {
        QString piece = pieces[i];
        if (i > 0 && !piece.contains(first + kBackslash))
            piece = first + kBackslash + piece;
        if (piece.endsWith(QStringLiteral(".js")))
            m_data.entries.insert(qMin(i, m_data.entries.size()), piece);
    }
    m_data.selected = m_data.entries.isEmpty() ? -1 : 0;
    QString text;
    if (GetContent(text))
        m_data.scriptText = text;
    m_data.databasePath = CConnectManager::Instance()->GetFileDir(CQxDataBase::SysDataBase);
    Push();
}

void CJSDialog::FillFromChosenRow()
{
    if (!IsWindow())
        return;
    const QStringList pieces = SplitPieces(ChosenRow(), QStringLiteral("|"));
    if (!pieces.isEmpty()) {
        m_data.scriptPath = pieces.first();
        m_data.entries.clear();
        const QStringList parts = SplitPieces(pieces.first(), kBackslash);
        for (int i = 0; i < parts.size(); ++i)
            m_data.entries.insert(i, i == 0 ? parts[i] : parts.first() + kBackslash + parts[i]);
        m_data.selected = m_data.entries.isEmpty() ? -1 : 0;
    }
    QString text;
    m_data.scriptText = GetContent(text) ? text : QString();
    m_data.databasePath = CConnectManager::Instance()->GetFileDir(CQxDataBase::SysDataBase);
    m_data.databasePath.replace(QStringLiteral(".qxcd"), QStringLiteral(".mdb"));
    Push();
}

void CJSDialog::OnSelectScript(int index)
{
    if (index < 0 || index >= m_data.entries.size())
        return;
    m_data.selected = index;
    m_data.scriptPath = m_data.entries[index];
    GetContent(m_data.scriptText);
    Push();
}

QString CJSDialog::KeyFromBrowsedPath(const QString& path)
{
    int at = path.indexOf(QStringLiteral("SE"));
    if (at < 0)
        at = path.indexOf(QStringLiteral("se"));
    return at < 0 ? path : path.mid(at + 3);
}

void CJSDialog::OnBrowseScript()
{
    Pull();
    const QString old = m_data.scriptPath;
    QString chosen = CUIServices::Current().OpenFileName(QString(), QString(), QString());
    if (!chosen.isEmpty()) {
        // Keys are written with backslashes whatever the file chooser returns.
        chosen.replace(QLatin1Char('/'), QLatin1Char('\\'));
        m_data.scriptPath = KeyFromBrowsedPath(chosen);
        if (!m_data.scriptPath.contains(QStringLiteral(".js")))
            m_data.scriptPath = old;
    }
    GetContent(m_data.scriptText);
    if (m_data.scriptPath != old) {
        m_data.entries = QStringList{m_data.scriptPath};
        m_data.selected = 0;
    }
    Push();
}

QString CJSDialog::ReadFromAccess(const QString& database, const QString& key, bool& found)
{
    found = false;
    CConnectJSSysData connection;
    if (!connection.ConnectDatabase(database))
        return QString();
    CMacrosTable table(connection.GetDatabase());
    if (table.RetrieveByXml() < 0)
        return QString();
    using Fields = CSysMacrosTable::CFieldInfo;
    table.Sort(Fields::key_ch, true);
    for (int row = 1; row <= table.GetRowCount(); ++row) {
        if (table.GetAsString(Fields::key_ch, row) == key) {
            found = true;
            return table.GetAsString(Fields::content, row);
        }
    }
    return QString();
}

void CJSDialog::OnBrowseDatabase()
{
    Pull();
    const QString chosen = CUIServices::Current().OpenFileName(QString(), QString(), QString());
    if (!chosen.contains(QStringLiteral("mdb")))
        return;
    m_data.databasePath = chosen;
    bool found = false;
    const QString content = ReadFromAccess(chosen, m_data.scriptPath, found);
    if (found)
        m_data.scriptText = content;
    Push();
}

QString CJSDialog::BuildRunText(const QString& workbenchScript) const
{
    QString text = workbenchScript;
    QString stored;
    // An empty stored text matches nowhere (QString would match it everywhere).
    if (GetContent(stored) && !stored.isEmpty() && text.contains(stored))
        return text.replace(stored, m_data.scriptText);
    return text + m_data.scriptText;
}

void CJSDialog::OnRun()
{
    Pull();
    if (!m_host)
        return;
    if (m_host->RunScriptText(BuildRunText(m_host->GetGatheredScript())))
        UIFunction::QXMessageBox(QStringLiteral("脚本正确"));
}

void CJSDialog::OnSave()
{
    Pull();
    SetContent();
    // Deliberately unconditional: the table reports nothing the user can act on.
    UIFunction::QXMessageBox(QStringLiteral("成功！"));
}

void CJSDialog::Pull()
{
    if (m_window)
        m_window->Pull(m_data);
}

void CJSDialog::Push()
{
    if (m_window)
        m_window->Push(m_data);
}
