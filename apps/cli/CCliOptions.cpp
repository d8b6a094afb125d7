#include "CCliOptions.h"

#include <QCommandLineParser>

namespace {

const QString kFooter = QStringLiteral(
    "\n"
    "Options override the VELMORA_* environment variables. Exit status: 0 all\n"
    "passed, 1 a case failed, 2 usage or setup error. A home folder without a\n"
    "system database is seeded with the sample rebar scripts and their cases first.\n");

void AddOptions(QCommandLineParser& parser)
{
    // "-jobs" is the long option, never -j -o -b -s.
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setApplicationDescription(QStringLiteral(
        "Runs the stored test cases of the scripts in the system database and\nwrites the result file."));
    parser.addOptions({
        {QStringLiteral("script"), QStringLiteral("Test only this script (its key_ch); default: every script."),
         QStringLiteral("NAME")},
        {QStringLiteral("jobs"), QStringLiteral("Run scripts on N worker threads (default: one per core)."),
         QStringLiteral("N")},
        {QStringLiteral("junit"), QStringLiteral("Also write the outcome of every case as JUnit XML."),
         QStringLiteral("FILE")},
        {QStringLiteral("home"), QStringLiteral("Home folder (VELMORA_HOME); must exist."), QStringLiteral("DIR")},
        {QStringLiteral("system-db"),
         QStringLiteral("System database with the tables Macros and MacrosV2: a SQLite or MS Access file, or a "
                        "postgresql:// URL (VELMORA_SYSTEM_DB); must exist."),
         QStringLiteral("FILE")},
        {QStringLiteral("cases"), QStringLiteral("Test-case root folder (VELMORA_TESTCASE_ROOT); must exist."),
         QStringLiteral("DIR")},
        {QStringLiteral("timeout"),
         QStringLiteral("Time budget of one case run in milliseconds (VELMORA_SCRIPT_TIMEOUT_MS)."),
         QStringLiteral("MS")},
        {QStringLiteral("shard"),
         QStringLiteral("Test only the scripts of shard K of N (1 <= K <= N), chosen by a hash of each script's "
                        "name; N shards together test every script once. Default: VELMORA_SHARD=K/N, else "
                        "CI_NODE_INDEX/CI_NODE_TOTAL."),
         QStringLiteral("K/N")},
        {QStringLiteral("coverage"),
         QStringLiteral("Also record the script lines the cases reach (engine line coverage): DIR/lcov.info, "
                        "and DIR/html through genhtml when it is installed."),
         QStringLiteral("DIR")},
        {QStringLiteral("list"), QStringLiteral("Print the scripts the run would test, one per line; run nothing.")},
        {QStringLiteral("quiet"), QStringLiteral("No progress bar on stderr.")},
        {QStringLiteral("strict"),
         QStringLiteral("Count a case whose table cannot be read as failed (default: it passes with a warning).")},
        {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this text.")},
        {QStringLiteral("version"), QStringLiteral("Show the version.")},
    });
}

// Qt names an unknown option without its dashes; show it as it was typed.
QString AsTyped(const QString& name, const QStringList& args)
{
    const QString single = QLatin1Char('-') + name;
    for (const QString& arg : args) {
        if (arg == single || arg.startsWith(single + QLatin1Char('=')))
            return single;
    }
    return QLatin1String("--") + name;
}

QString ParseError(const QCommandLineParser& parser, const QStringList& args)
{
    const QStringList unknown = parser.unknownOptionNames();
    if (!unknown.isEmpty())
        return QStringLiteral("unknown option %1").arg(AsTyped(unknown.first(), args.mid(1)));
    // Qt's own sentence, in the lower-case, no-period style of the other messages.
    QString text = parser.errorText().trimmed();
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    if (!text.isEmpty())
        text[0] = text[0].toLower();
    return text;
}

} // namespace

CCliOptions::Action CCliOptions::Parse(const QStringList& args, const QProcessEnvironment& env)
{
    *this = CCliOptions();
    QCommandLineParser parser;
    AddOptions(parser);
    const bool parsed = parser.parse(args);
    // Asking for help or the version never fails, whatever else is on the line.
    if (parser.isSet(QStringLiteral("help")))
        return Action::Help;
    if (parser.isSet(QStringLiteral("version")))
        return Action::Version;
    if (!parsed) {
        m_error = ParseError(parser, args);
        return Action::Error;
    }
    // Values first: "--timeout --home DIR" is a bad timeout, not a stray DIR.
    if (!ReadValues(parser) || !ReadShard(parser, env))
        return Action::Error;
    if (!parser.positionalArguments().isEmpty()) {
        m_error = QStringLiteral("unexpected argument %1").arg(parser.positionalArguments().first());
        return Action::Error;
    }
    return Action::Run;
}

bool CCliOptions::ReadValues(const QCommandLineParser& parser)
{
    m_quiet = parser.isSet(QStringLiteral("quiet"));
    m_list = parser.isSet(QStringLiteral("list"));
    m_strict = parser.isSet(QStringLiteral("strict"));
    const struct { const char* name; QString* target; } texts[] = {
        {"script", &m_script}, {"junit", &m_junit}, {"home", &m_home}, {"system-db", &m_systemDb}, {"cases", &m_cases},
        {"coverage", &m_coverage},
        {"jobs", nullptr},     {"timeout", nullptr},
    };
    for (const auto& option : texts) {
        const QString name = QLatin1String(option.name);
        if (!parser.isSet(name))
            continue;
        const QString value = parser.value(name);
        if (value.isEmpty())
            return Fail(QStringLiteral("option --%1 needs a non-empty value").arg(name));
        if (option.target)
            *option.target = value;
    }
    if (parser.isSet(QStringLiteral("jobs")) && !ReadPositiveInt(parser, QStringLiteral("jobs"), kMaxJobs, m_jobs))
        return false;
    return !parser.isSet(QStringLiteral("timeout"))
        || ReadPositiveInt(parser, QStringLiteral("timeout"), 24 * 3600 * 1000, m_timeoutMs);
}

bool CCliOptions::ReadPositiveInt(const QCommandLineParser& parser, const QString& name, int max, int& value)
{
    const QString text = parser.value(name);
    bool ok = false;
    const int number = text.toInt(&ok);
    if (!ok || number < 1 || number > max)
        return Fail(QStringLiteral("option --%1 wants a whole number from 1 to %2, not \"%3\"").arg(name).arg(max).arg(text));
    value = number;
    return true;
}

bool CCliOptions::ReadShard(const QCommandLineParser& parser, const QProcessEnvironment& env)
{
    QString source, text;
    const QString index = env.value(QStringLiteral("CI_NODE_INDEX")), total = env.value(QStringLiteral("CI_NODE_TOTAL"));
    if (parser.isSet(QStringLiteral("shard"))) {
        source = QStringLiteral("option --shard");
        text = parser.value(QStringLiteral("shard"));
    } else if (!env.value(QStringLiteral("VELMORA_SHARD")).isEmpty()) {
        // Named for this tool, so it wins over what the CI system sets for every job.
        source = QStringLiteral("VELMORA_SHARD");
        text = env.value(source);
    } else if (!index.isEmpty() || !total.isEmpty()) {
        if (index.isEmpty())
            return Fail(QStringLiteral("CI_NODE_TOTAL is set but CI_NODE_INDEX is not"));
        if (total.isEmpty())
            return Fail(QStringLiteral("CI_NODE_INDEX is set but CI_NODE_TOTAL is not"));
        source = QStringLiteral("CI_NODE_INDEX/CI_NODE_TOTAL");
        text = index + QLatin1Char('/') + total;
    } else {
        return true;
    }
    QString reason;
    return CTestShard::Parse(text, m_shard, reason) || Fail(source + QLatin1Char(' ') + reason);
}

bool CCliOptions::Fail(const QString& error)
{
    m_error = error;
    return false;
}

QString CCliOptions::HelpText()
{
    QCommandLineParser parser;
    AddOptions(parser);
    // Qt starts the usage line with argv[0], which may be a long path.
    QString text = parser.helpText();
    const qsizetype firstBreak = text.indexOf(QLatin1Char('\n'));
    text.replace(0, firstBreak, QStringLiteral("Usage: velmora-test [options]"));
    return text + kFooter;
}

QString CCliOptions::VersionText()
{
    return QStringLiteral("velmora-test " VELMORA_VERSION "\n");
}
