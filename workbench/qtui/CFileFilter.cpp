#include "CFileFilter.h"

#include <QStringList>

QString CFileFilter::ToQt(const QString& windowsFilter)
{
    const QStringList parts = windowsFilter.split(QLatin1Char('|'));
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        const QString title = parts[i].trimmed();
        QString patterns = parts[i + 1].trimmed();
        if (title.isEmpty() && patterns.isEmpty())
            break; // the closing "||"
        patterns.replace(QLatin1Char(';'), QLatin1Char(' '));
        patterns.replace(QLatin1String("*.*"), QLatin1String("*"));
        // Qt reads the patterns from the last parentheses of the entry.
        QString entry = title;
        if (const qsizetype open = entry.lastIndexOf(QLatin1Char('(')); open >= 0 && entry.endsWith(QLatin1Char(')')))
            entry = entry.left(open).trimmed();
        filters << (entry.isEmpty() ? patterns : entry + QStringLiteral(" (") + patterns + QLatin1Char(')'));
    }
    return filters.join(QStringLiteral(";;"));
}
