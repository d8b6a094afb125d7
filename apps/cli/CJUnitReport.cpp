#include "CJUnitReport.h"

#include "COutPutTextTable.h"

#include <QDateTime>
#include <QSaveFile>
#include <QXmlStreamWriter>

namespace {

// XML 1.0 cannot carry most control characters or lone surrogates; an
// engine error may hold either, and a CI server rejects the whole file.
QString XmlSafe(const QString& text)
{
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        const ushort u = c.unicode();
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            out += c;
            out += text.at(++i);
        } else if (c.isSurrogate() || u == 0xFFFE || u == 0xFFFF || (u < 0x20 && u != 0x9 && u != 0xA && u != 0xD)) {
            out += QChar(0xFFFD);
        } else {
            out += c;
        }
    }
    return out;
}

QString FailureType(const CTestCaseOutcome& outcome)
{
    if (outcome.caseName.isEmpty())
        return QStringLiteral("script");
    return outcome.rows.isEmpty() ? QStringLiteral("error") : QStringLiteral("mismatch");
}

QString Seconds(double s)
{
    return QString::number(s, 'f', 3);
}

void WriteCase(QXmlStreamWriter& xml, const CTestCaseOutcome& outcome, double seconds)
{
    xml.writeStartElement(QStringLiteral("testcase"));
    xml.writeAttribute(QStringLiteral("classname"), XmlSafe(outcome.script));
    const QString name = outcome.caseName.isEmpty() ? CJUnitReport::ScriptLevelCaseName() : outcome.caseName;
    xml.writeAttribute(QStringLiteral("name"), XmlSafe(name));
    xml.writeAttribute(QStringLiteral("time"), Seconds(seconds));
    if (outcome.passed && outcome.tableUnreadable)
        xml.writeTextElement(QStringLiteral("system-err"), XmlSafe(CJUnitReport::TableWarning(outcome)));
    if (!outcome.passed) {
        xml.writeStartElement(QStringLiteral("failure"));
        xml.writeAttribute(QStringLiteral("message"), XmlSafe(outcome.message));
        xml.writeAttribute(QStringLiteral("type"), FailureType(outcome));
        const QString message = outcome.where.isEmpty() ? outcome.message
                                                        : outcome.message + QStringLiteral(" (") + outcome.where + QLatin1Char(')');
        const QString text = outcome.rows.isEmpty() ? message
                                                    : outcome.message + QLatin1Char('\n') + CJUnitReport::FormatRows(outcome.rows);
        xml.writeCharacters(XmlSafe(text));
        xml.writeEndElement();
    }
    xml.writeEndElement();
}

void WriteSuite(QXmlStreamWriter& xml, const QString& name, const QList<CTestCaseOutcome>& cases, double seconds,
                const QString& stamp)
{
    int failures = 0;
    for (const CTestCaseOutcome& outcome : cases)
        failures += outcome.passed ? 0 : 1;
    // The run is timed per script; each case gets its share.
    const double perCase = cases.isEmpty() ? 0 : seconds / double(cases.size());
    xml.writeStartElement(QStringLiteral("testsuite"));
    xml.writeAttribute(QStringLiteral("name"), XmlSafe(name));
    xml.writeAttribute(QStringLiteral("tests"), QString::number(cases.size()));
    xml.writeAttribute(QStringLiteral("failures"), QString::number(failures));
    xml.writeAttribute(QStringLiteral("errors"), QStringLiteral("0"));
    xml.writeAttribute(QStringLiteral("time"), Seconds(seconds));
    xml.writeAttribute(QStringLiteral("timestamp"), stamp);
    for (const CTestCaseOutcome& outcome : cases)
        WriteCase(xml, outcome, perCase);
    xml.writeEndElement();
}

} // namespace

void CJUnitReport::Add(const CScriptTestReport& report, double seconds)
{
    m_suites.push_back(Suite{report.script, report.outcomes, seconds});
}

int CJUnitReport::Tests() const
{
    int n = 0;
    for (const Suite& suite : m_suites)
        n += int(suite.cases.size());
    return n;
}

int CJUnitReport::Failures() const
{
    int n = 0;
    for (const Suite& suite : m_suites) {
        for (const CTestCaseOutcome& outcome : suite.cases)
            n += outcome.passed ? 0 : 1;
    }
    return n;
}

QString CJUnitReport::ScriptLevelCaseName()
{
    return QStringLiteral("(script)");
}

QString CJUnitReport::FormatRows(const QList<CTestCaseOutcome::Row>& rows)
{
    // The same table the result file shows, with plain line breaks.
    COutPutTextTable table;
    table.AddTextNode(QStringLiteral("ParmName"));
    table.AddTextNode(QStringLiteral("ParmValue"));
    table.AddTextNode(QStringLiteral("NewParmValue"));
    for (const CTestCaseOutcome::Row& row : rows) {
        table.AddNodeValue(row.name);
        table.AddNodeValue(row.storedValue);
        table.AddNodeValue(row.newValue);
    }
    return table.ToText().replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}

QByteArray CJUnitReport::ToXml() const
{
    double seconds = 0;
    for (const Suite& suite : m_suites)
        seconds += suite.seconds;
    QByteArray bytes;
    QXmlStreamWriter xml(&bytes);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("testsuites"));
    const QString shard = m_shard.isEmpty() ? QString() : QStringLiteral(" (shard %1)").arg(m_shard);
    xml.writeAttribute(QStringLiteral("name"), QStringLiteral("velmora-test") + shard);
    xml.writeAttribute(QStringLiteral("tests"), QString::number(Tests()));
    xml.writeAttribute(QStringLiteral("failures"), QString::number(Failures()));
    xml.writeAttribute(QStringLiteral("errors"), QStringLiteral("0"));
    xml.writeAttribute(QStringLiteral("time"), Seconds(seconds));
    const QString stamp = QDateTime::currentDateTime().toString(Qt::ISODate);
    for (const Suite& suite : m_suites)
        WriteSuite(xml, suite.name + shard, suite.cases, suite.seconds, stamp);
    xml.writeEndElement();
    xml.writeEndDocument();
    return bytes;
}

bool CJUnitReport::Write(const QString& path, QString& error) const
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        error = QStringLiteral("cannot write the JUnit file %1: %2").arg(path, file.errorString());
        return false;
    }
    file.write(ToXml());
    if (!file.commit()) {
        error = QStringLiteral("cannot write the JUnit file %1: %2").arg(path, file.errorString());
        return false;
    }
    return true;
}

QString CJUnitReport::TableWarning(const CTestCaseOutcome& outcome)
{
    return QStringLiteral("warning: %1 / %2: %3, compared as empty").arg(outcome.script, outcome.caseName, kTableUnreadable);
}
