#include "CCliOptions.h"


namespace {

const char* const kValueOptions[] = {"--script", "--jobs", "--junit", "--home", "--system-db", "--cases", "--timeout", "--coverage"};

bool TakesValue(const QString& option)
{
    for (const char* name : kValueOptions) {
        if (option == QLatin1String(name))
            return true;
    }
    return false;
}

} // namespace

CCliOptions::Action CCliOptions::Parse(const QStringList& args)
{
    *this = CCliOptions();
    for (const QString& arg : args.mid(1)) {
        if (arg == QLatin1String("--help") || arg == QLatin1String("-h"))
            return Action::Help;
        if (arg == QLatin1String("--version"))
            return Action::Version;
    }
    return ReadValues(args) ? Action::Run : Action::Error;
}

bool CCliOptions::ReadValues(const QStringList& args)
{
    for (int i = 1; i < args.size(); ++i) {
        QString option = args.at(i);
        QString value;
        bool hasValue = false;
        const int eq = option.indexOf(QLatin1Char('='));
        if (option.startsWith(QLatin1String("--")) && eq > 2) {
            value = option.mid(eq + 1);
            option.truncate(eq);
            hasValue = true;
        }
        if (option == QLatin1String("--quiet") && !hasValue) {
            m_quiet = true;
            continue;
        }
        if (!TakesValue(option)) {
            m_error = option.startsWith(QLatin1Char('-')) ? QStringLiteral("unknown option %1").arg(option)
                                                          : QStringLiteral("unexpected argument %1").arg(option);
            return false;
        }
        if (!hasValue) {
            if (i + 1 >= args.size()) {
                m_error = QStringLiteral("option %1 needs a value").arg(option);
                return false;
            }
            value = args.at(++i);
        }
        if (value.isEmpty()) {
            m_error = QStringLiteral("option %1 needs a non-empty value").arg(option);
            return false;
        }
        if (option == QLatin1String("--jobs")) {
            if (!ReadPositiveInt(option, value, kMaxJobs, m_jobs))
                return false;
        } else if (option == QLatin1String("--timeout")) {
            if (!ReadPositiveInt(option, value, 24 * 3600 * 1000, m_timeoutMs))
                return false;
        } else if (option == QLatin1String("--script")) {
            m_script = value;
        } else if (option == QLatin1String("--junit")) {
            m_junit = value;
        } else if (option == QLatin1String("--home")) {
            m_home = value;
        } else if (option == QLatin1String("--system-db")) {
            m_systemDb = value;
        } else if (option == QLatin1String("--coverage")) {
            m_coverage = value;
        } else {
            m_cases = value;
        }
    }
    return true;
}

bool CCliOptions::ReadPositiveInt(const QString& option, const QString& text, int max, int& value)
{
    bool ok = false;
    const int number = text.toInt(&ok);
    if (!ok || number < 1 || number > max) {
        m_error = QStringLiteral("option %1 wants a whole number from 1 to %2, not \"%3\"").arg(option).arg(max).arg(text);
        return false;
    }
    value = number;
    return true;
}

QString CCliOptions::HelpText()
{
    return QStringLiteral(
        "Usage: velmora-test [options]\n"
        "Runs the stored test cases of the scripts in the system database and\n"
        "writes the result file. Exit status: 0 all passed, 1 a case failed,\n"
        "2 usage or setup error.\n"
        "\n"
        "Options (they override the VELMORA_* environment variables):\n"
        "  --script NAME     test only this script (its key_ch); default: every script\n"
        "  --jobs N          run scripts on N worker threads (default: one per core)\n"
        "  --junit FILE      also write the outcome of every case as JUnit XML\n"
        "  --home DIR        home folder (VELMORA_HOME); must exist\n"
        "  --system-db FILE  system database with the tables Macros and MacrosV2: a\n"
        "                    SQLite or MS Access file, or a postgresql:// URL\n"
        "                    (VELMORA_SYSTEM_DB); must exist\n"
        "  --cases DIR       test-case root folder (VELMORA_TESTCASE_ROOT); must exist\n"
        "  --timeout MS      time budget of one case run in milliseconds\n"
        "                    (VELMORA_SCRIPT_TIMEOUT_MS)\n"
        "  --coverage DIR    also record the script lines the cases reach (engine line\n"
        "                    coverage): DIR/lcov.info, and DIR/html with genhtml\n"
        "  --quiet           no progress bar on stderr\n"
        "  --help            show this text\n"
        "  --version         show the version\n"
        "\n"
        "A home folder without a system database is seeded with the sample rebar\n"
        "scripts and their cases first.\n");
}

QString CCliOptions::VersionText()
{
    return QStringLiteral("velmora-test " VELMORA_VERSION "\n");
}
