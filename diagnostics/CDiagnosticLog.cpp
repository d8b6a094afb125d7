#include "CDiagnosticLog.h"

#include "NativePath.h"
#include "QxMfcFun.h"

#include <QFile>

namespace {

QString SysDataFile(const char* name)
{
    return QxMfc::Fun::GetSysDataPath() + QString::fromLatin1(name);
}

QString TwoDigits(int value)
{
    return QStringLiteral("%1").arg(value, 2, 10, QLatin1Char('0'));
}

} // namespace

void CDiagnosticLog::AppendToFile(const QString& path, const QString& text)
{
    QxMfc::Fun::AppendCString2File(path, text);
}

QString CDiagnosticLog::TimeStamp(const QDateTime& time)
{
    const QDate date = time.date();
    const QTime clock = time.time();
    return QString::number(date.year()) + QLatin1Char('.') + QString::number(date.month()) + QLatin1Char('.')
        + TwoDigits(date.day()) + QStringLiteral("  ") + TwoDigits(clock.hour()) + QLatin1Char(':')
        + TwoDigits(clock.minute()) + QStringLiteral("\r\n");
}

QString CDiagnosticLog::AnalyseHeader(const QDateTime& time)
{
    return QStringLiteral("\r\n\t\tTime：") + TimeStamp(time);
}

void CDiagnosticLog::WriteAnalyseLog(const QString& message)
{
    AppendToFile(CalAnalyseLogPath(), AnalyseHeader(QDateTime::currentDateTime()) + message);
}

void CDiagnosticLog::WriteTimeLog(const QString& path, const QString& message)
{
    AppendToFile(path, TimeStamp(QDateTime::currentDateTime()) + message);
}

QString CDiagnosticLog::CalAnalyseLogPath()
{
    return SysDataFile("\\CalAnalyse.log");
}

QString CDiagnosticLog::MacroListLogPath()
{
    return SysDataFile("\\macrolist.log");
}

QString CDiagnosticLog::MacLogPath()
{
    return SysDataFile("\\mac.log");
}

QString CDiagnosticLog::JiaobenLogPath()
{
    return SysDataFile("\\jiaoben.log");
}

QString CDiagnosticLog::AllParmLogPath()
{
    return SysDataFile("\\AllParm.log");
}

QString CDiagnosticLog::VelmoraLogPath()
{
    return QStringLiteral("C:\\Velmora.log");
}

void CDiagnosticLog::DeleteSessionLogs()
{
    QFile::remove(NativePath::Map(MacLogPath()));
    QFile::remove(NativePath::Map(JiaobenLogPath()));
}
