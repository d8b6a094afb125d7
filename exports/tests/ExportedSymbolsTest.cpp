#include <QProcess>
#include <QRegularExpression>
#include <QStringList>
#include <gtest/gtest.h>

namespace {

// The dynamic symbols the library defines, demangled, one per entry.
QStringList DefinedDynamicSymbols()
{
    QProcess nm;
    nm.start(QStringLiteral("nm"), {QStringLiteral("-D"), QStringLiteral("--defined-only"), QStringLiteral("-C"),
                                    QStringLiteral(VELMORA_LIBRARY_FILE)});
    if (!nm.waitForFinished(30000) || nm.exitCode() != 0)
        return {};
    QStringList names;
    for (const QString& line : QString::fromUtf8(nm.readAllStandardOutput()).split(QLatin1Char('\n'))) {
        // "<address> <type> <name>"; the name may hold spaces.
        const qsizetype second = line.indexOf(QLatin1Char(' '), line.indexOf(QLatin1Char(' ')) + 1);
        if (second > 0)
            names << line.mid(second + 1);
    }
    return names;
}

} // namespace

TEST(ExportedSymbolsTest, OnlyTheEntryClassesAreVisible)
{
    const QStringList names = DefinedDynamicSymbols();
    ASSERT_FALSE(names.isEmpty()) << "nm gave nothing for " VELMORA_LIBRARY_FILE;

    const QRegularExpression entryClass(QStringLiteral("\\b(CCeateDialog|CVelmoraExport)\\b"));
    const QRegularExpression linkerSymbol(QStringLiteral("^(_init|_fini|_edata|_end|__bss_start)$"));
    QStringList foreign;
    for (const QString& name : names)
        if (!entryClass.match(name).hasMatch() && !linkerSymbol.match(name).hasMatch())
            foreign << name;
    EXPECT_TRUE(foreign.isEmpty()) << foreign.join(QLatin1Char('\n')).toStdString();
    for (const char* entry : {"CCeateDialog::Instance()", "CCeateDialog::Domodle()", "CCeateDialog::Release()",
                              "CVelmoraExport::DoJaveScriptTest()"})
        EXPECT_TRUE(names.contains(QLatin1String(entry))) << entry;
}
