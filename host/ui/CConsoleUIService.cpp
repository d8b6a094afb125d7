#include "CConsoleUIService.h"

#include "UIFunction.h"

#include <QProcess>

#include <unistd.h>

CConsoleUIService::CConsoleUIService(std::FILE* out)
    : m_out(out), m_terminal(out && isatty(fileno(out)) == 1)
{
}

void CConsoleUIService::Print(const QString& line)
{
    if (m_progressOpen)
        std::fputc('\n', m_out);
    m_progressOpen = false;
    std::fprintf(m_out, "%s\n", line.toUtf8().constData());
    std::fflush(m_out);
}

int CConsoleUIService::MessageBox(const QString& text, const QString& caption, unsigned style)
{
    Print(caption.isEmpty() ? text : QStringLiteral("[%1] %2").arg(caption, text));
    if ((style & UIFunction::MB_TYPEMASK) == UIFunction::MB_YESNO)
        return m_yesNoAnswer;
    return UIFunction::IDOK;
}

void CConsoleUIService::ProgressBegin(const QString& title)
{
    if (m_progressVisible && !title.isEmpty())
        Print(title);
}

void CConsoleUIService::ProgressUpdate(const QString& text, int pos, int range)
{
    if (!m_progressVisible)
        return;
    if (!m_terminal) {
        if (!text.isEmpty() && text != m_lastProgress)
            Print(range > 0 ? QStringLiteral("%1/%2 %3").arg(pos).arg(range).arg(text) : text);
        m_lastProgress = text;
        return;
    }
    constexpr int width = 30;
    const int filled = range > 0 ? qBound(0, pos * width / range, width) : 0;
    const QString bar = QString(filled, QLatin1Char('#')) + QString(width - filled, QLatin1Char('.'));
    const QString counter = range > 0 ? QStringLiteral(" %1/%2 ").arg(pos).arg(range) : QStringLiteral(" ");
    std::fprintf(m_out, "\r\033[K[%s]%s%s", bar.toUtf8().constData(), counter.toUtf8().constData(),
                 text.toUtf8().constData());
    std::fflush(m_out);
    m_progressOpen = true;
}

void CConsoleUIService::ProgressEnd()
{
    if (m_progressOpen)
        std::fputc('\n', m_out);
    m_progressOpen = false;
    std::fflush(m_out);
}

bool CConsoleUIService::InputText(const QString& prompt, const QString&, QString& value)
{
    Print(prompt);
    if (m_inputAccepted)
        value = m_input;
    return m_inputAccepted;
}

QString CConsoleUIService::OpenFileName(const QString&, const QString&, const QString&)
{
    return {};
}

QString CConsoleUIService::SaveFileName(const QString&, const QString&, const QString&)
{
    return {};
}

bool CConsoleUIService::ShellOpen(const QString& target)
{
    if (!m_launchShell) {
        Print(target);
        return true;
    }
    return QProcess::startDetached(QStringLiteral("xdg-open"), {target});
}

void CConsoleUIService::CloseWindowByTitle(const QString&)
{
    // A console process has no windows of its own to close.
}
