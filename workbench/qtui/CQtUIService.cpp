#include "CQtUIService.h"

#include "CFileFilter.h"
#include "CUIServices.h"
#include "UIFunction.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QProcess>
#include <QProgressDialog>
#include <QStandardPaths>
#include <QUrl>

namespace {

// Windows message-box style bits to Qt's buttons and icon, and back to the
// answer codes the callers compare with.
QMessageBox::StandardButtons ButtonsOf(unsigned style)
{
    switch (style & UIFunction::MB_TYPEMASK) {
    case 1: return QMessageBox::Ok | QMessageBox::Cancel;
    case 2: return QMessageBox::Abort | QMessageBox::Retry | QMessageBox::Ignore;
    case 3: return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case 4: return QMessageBox::Yes | QMessageBox::No;
    case 5: return QMessageBox::Retry | QMessageBox::Cancel;
    default: return QMessageBox::Ok;
    }
}

QMessageBox::Icon IconOf(unsigned style)
{
    switch (style & 0xF0u) {
    case 0x10: return QMessageBox::Critical;
    case 0x20: return QMessageBox::Question;
    case 0x30: return QMessageBox::Warning;
    case 0x40: return QMessageBox::Information;
    default: return QMessageBox::NoIcon;
    }
}

int AnswerOf(int button)
{
    switch (button) {
    case QMessageBox::Cancel: return 2;
    case QMessageBox::Abort: return 3;
    case QMessageBox::Retry: return 4;
    case QMessageBox::Ignore: return 5;
    case QMessageBox::Yes: return UIFunction::IDYES;
    case QMessageBox::No: return UIFunction::IDNO;
    default: return UIFunction::IDOK;
    }
}

} // namespace

CQtUIService::CQtUIService() = default;

CQtUIService::~CQtUIService()
{
    delete m_progress.data();
}

void CQtUIService::InstallIfNone()
{
    if (!CUIServices::IsInstalled())
        CUIServices::Install(std::make_shared<CQtUIService>());
}

QWidget* CQtUIService::DialogParent()
{
    return QApplication::activeWindow();
}

int CQtUIService::MessageBox(const QString& text, const QString& caption, unsigned style)
{
    QMessageBox box(IconOf(style), caption, text, ButtonsOf(style), DialogParent());
    return AnswerOf(box.exec());
}

void CQtUIService::ProgressBegin(const QString& title)
{
    if (!m_progress) {
        m_progress = new QProgressDialog(DialogParent());
        m_progress->setWindowModality(Qt::WindowModal);
        m_progress->setMinimumDuration(0);
        m_progress->setAutoClose(false);
        m_progress->setAutoReset(false);
        m_progress->setMinimumWidth(420);
    }
    m_progress->setWindowTitle(title);
    m_progress->setValue(0);
    m_progress->show();
    QCoreApplication::processEvents();
}

void CQtUIService::ProgressUpdate(const QString& text, int pos, int range)
{
    if (!m_progress)
        ProgressBegin(QString());
    m_progress->setLabelText(text);
    m_progress->setRange(0, qMax(range, 0));
    if (range > 0)
        m_progress->setValue(qBound(0, pos, range));
    QCoreApplication::processEvents();
}

void CQtUIService::ProgressEnd()
{
    if (m_progress)
        m_progress->hide();
}

bool CQtUIService::ProgressCancelled()
{
    QCoreApplication::processEvents();
    return m_progress && m_progress->wasCanceled();
}

bool CQtUIService::InputText(const QString& prompt, const QString& caption, QString& value)
{
    bool ok = false;
    const QString answer = QInputDialog::getText(DialogParent(), caption, prompt, QLineEdit::Normal, value, &ok);
    if (ok)
        value = answer;
    return ok;
}

QString CQtUIService::OpenFileName(const QString& caption, const QString& filter, const QString& folder)
{
    return QFileDialog::getOpenFileName(DialogParent(), caption, folder, CFileFilter::ToQt(filter));
}

QString CQtUIService::SaveFileName(const QString& caption, const QString& filter, const QString& folder)
{
    return QFileDialog::getSaveFileName(DialogParent(), caption, folder, CFileFilter::ToQt(filter));
}

bool CQtUIService::ShellOpen(const QString& target)
{
    const QUrl url = target.contains(QLatin1String("://")) ? QUrl(target) : QUrl::fromLocalFile(target);
    return QDesktopServices::openUrl(url);
}

void CQtUIService::CloseWindowByTitle(const QString& title)
{
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->windowTitle() == title)
            window->close();
    }
    // Windows of other programs (a text viewer showing a log) through the
    // window manager, when one answers; silently nothing otherwise.
    const QString wmctrl = QStandardPaths::findExecutable(QStringLiteral("wmctrl"));
    if (!wmctrl.isEmpty() && QGuiApplication::platformName() == QLatin1String("xcb"))
    {
        // Quiet: without a window manager wmctrl only complains.
        QProcess process;
        process.setProgram(wmctrl);
        process.setArguments({QStringLiteral("-F"), QStringLiteral("-c"), title});
        process.setStandardOutputFile(QProcess::nullDevice());
        process.setStandardErrorFile(QProcess::nullDevice());
        process.startDetached();
    }
}
