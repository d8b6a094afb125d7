#pragma once
#include <QDateTime>
#include <QString>

// The run logs: an append primitive and the time-stamped writers, plus the
// names of the log files. Logs are 8-bit text in the host's code page, no
// byte-order mark; a file that cannot be opened is skipped without a word.
class CDiagnosticLog
{
public:
    // Appends the text to the file, creating it when missing, never truncating.
    static void AppendToFile(const QString& path, const QString& text);

    // "\r\n\t\tTime：<Y>.<m>.<d>  <H>:<M>\r\n" and the message, appended to
    // "\CalAnalyse.log" of the system data folder.
    static void WriteAnalyseLog(const QString& message);
    // "<Y>.<m>.<d>  <H>:<M>\r\n" and the message, appended to `path`.
    static void WriteTimeLog(const QString& path, const QString& message);

    // The stamps for a given local time: month without a leading zero; day,
    // hour and minute with two digits (strftime "%Y.%#m.%d  %H:%M").
    static QString AnalyseHeader(const QDateTime& time);
    static QString TimeStamp(const QDateTime& time);

    // Files of the system data folder (each name begins with a backslash).
    static QString CalAnalyseLogPath();
    static QString MacroListLogPath();
    static QString MacLogPath();
    static QString JiaobenLogPath();
    static QString AllParmLogPath();
    // Fixed path of the save-script command's file.
    static QString VelmoraLogPath();

    // Deletes "\mac.log" and "\jiaoben.log" (the workbench does so on close);
    // missing files are fine.
    static void DeleteSessionLogs();
};
