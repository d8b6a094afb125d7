#include "CHostUIService.h"

#include "UIFunction.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>
#include <QProgressDialog>
#include <QUrl>

CHostUIService::~CHostUIService()
{
    delete m_progress;
}

int CHostUIService::MessageBox(const QString& text, const QString& caption, unsigned style)
{
    const QString title = caption.isEmpty() ? QApplication::applicationDisplayName() : caption;
    if ((style & UIFunction::MB_TYPEMASK) == UIFunction::MB_YESNO)
        return QMessageBox::question(m_parent, title, text) == QMessageBox::Yes ? UIFunction::IDYES
                                                                                : UIFunction::IDNO;
    QMessageBox::information(m_parent, title, text);
    return UIFunction::IDOK;
}

void CHostUIService::ProgressBegin(const QString& title)
{
    if (!m_progress) {
        m_progress = new QProgressDialog(m_parent);
        m_progress->setCancelButton(nullptr);
        m_progress->setMinimumDuration(0);
    }
    m_progress->setWindowTitle(title);
    m_progress->show();
}

void CHostUIService::ProgressUpdate(const QString& text, int pos, int range)
{
    if (!m_progress)
        ProgressBegin(QString());
    m_progress->setLabelText(text);
    m_progress->setRange(0, range);
    m_progress->setValue(pos);
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void CHostUIService::ProgressEnd()
{
    if (m_progress)
        m_progress->hide();
}

bool CHostUIService::InputText(const QString& prompt, const QString& caption, QString& value)
{
    bool ok = false;
    const QString text = QInputDialog::getText(m_parent, caption, prompt, QLineEdit::Normal, value, &ok);
    if (ok)
        value = text;
    return ok;
}

QString CHostUIService::QtFilter(const QString& filter)
{
    const QStringList parts = filter.split(QLatin1Char('|'), Qt::SkipEmptyParts);
    QStringList names;
    for (int i = 0; i < parts.size(); i += 2)
        names.append(parts.at(i));
    return names.join(QStringLiteral(";;"));
}

QString CHostUIService::OpenFileName(const QString& caption, const QString& filter, const QString& folder)
{
    return QFileDialog::getOpenFileName(m_parent, caption, folder, QtFilter(filter));
}

QString CHostUIService::SaveFileName(const QString& caption, const QString& filter, const QString& folder)
{
    return QFileDialog::getSaveFileName(m_parent, caption, folder, QtFilter(filter));
}

bool CHostUIService::ShellOpen(const QString& target)
{
    const QUrl url = QFileInfo::exists(target) ? QUrl::fromLocalFile(target) : QUrl(target);
    return QDesktopServices::openUrl(url);
}

void CHostUIService::CloseWindowByTitle(const QString& title)
{
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->isVisible() && window->windowTitle() == title)
            window->close();
}
