#include "CRecordingUIService.h"

#include "UIFunction.h"

QList<CRecordingUIService::Call> CRecordingUIService::CallsOf(const QString& kind) const
{
    QList<Call> found;
    for (const Call& call : calls)
        if (call.kind == kind)
            found.append(call);
    return found;
}

QStringList CRecordingUIService::MessageTexts() const
{
    QStringList texts;
    for (const Call& call : CallsOf(QStringLiteral("MessageBox")))
        texts.append(call.text);
    return texts;
}

int CRecordingUIService::MessageBox(const QString& text, const QString& caption, unsigned style)
{
    calls.append({QStringLiteral("MessageBox"), text, caption, style, 0, 0});
    if (!m_answers.empty()) {
        const int answer = m_answers.front();
        m_answers.pop_front();
        return answer;
    }
    return (style & UIFunction::MB_TYPEMASK) == UIFunction::MB_YESNO ? UIFunction::IDNO : UIFunction::IDOK;
}

void CRecordingUIService::ProgressBegin(const QString& title)
{
    calls.append({QStringLiteral("ProgressBegin"), title, {}, 0, 0, 0});
}

void CRecordingUIService::ProgressUpdate(const QString& text, int pos, int range)
{
    calls.append({QStringLiteral("ProgressUpdate"), text, {}, 0, pos, range});
}

void CRecordingUIService::ProgressEnd()
{
    calls.append({QStringLiteral("ProgressEnd"), {}, {}, 0, 0, 0});
}

bool CRecordingUIService::InputText(const QString& prompt, const QString& caption, QString& value)
{
    calls.append({QStringLiteral("InputText"), prompt, caption, 0, 0, 0});
    if (m_inputs.empty())
        return false;
    const auto [text, accept] = m_inputs.front();
    m_inputs.pop_front();
    if (accept)
        value = text;
    return accept;
}

QString CRecordingUIService::NextFile()
{
    if (m_files.empty())
        return {};
    const QString path = m_files.front();
    m_files.pop_front();
    return path;
}

QString CRecordingUIService::OpenFileName(const QString& caption, const QString& filter, const QString&)
{
    calls.append({QStringLiteral("OpenFileName"), filter, caption, 0, 0, 0});
    return NextFile();
}

QString CRecordingUIService::SaveFileName(const QString& caption, const QString& filter, const QString&)
{
    calls.append({QStringLiteral("SaveFileName"), filter, caption, 0, 0, 0});
    return NextFile();
}

bool CRecordingUIService::ShellOpen(const QString& target)
{
    calls.append({QStringLiteral("ShellOpen"), target, {}, 0, 0, 0});
    return m_shellOk;
}

void CRecordingUIService::CloseWindowByTitle(const QString& title)
{
    calls.append({QStringLiteral("CloseWindowByTitle"), title, {}, 0, 0, 0});
}
