// Seeds a home folder with a generated suite (the samples' JSON form) the way
// a fresh home is seeded with the built-in samples, for the suite benchmark.
// Usage: velmora-suite-seed HOME SUITE.json GlobalFun.js
#include "CSampleDataSeeder.h"
#include "CSampleScripts.h"
#include "HostContext.h"

#include <QCoreApplication>
#include <QFile>
#include <cstdio>

namespace {

QByteArray ReadAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    if (args.size() != 4) {
        std::fprintf(stderr, "usage: velmora-suite-seed HOME SUITE.json GlobalFun.js\n");
        return 2;
    }
    HostContext::Instance().SetHome(args[1]);
    CSampleScripts suite;
    if (!suite.Load(ReadAll(args[2]), ReadAll(args[3]))) {
        std::fprintf(stderr, "velmora-suite-seed: %s\n", qPrintable(suite.Error()));
        return 2;
    }
    CSampleDataSeeder seeder;
    if (!seeder.SeedIfNeeded(suite) || !seeder.Seeded()) {
        std::fprintf(stderr, "velmora-suite-seed: %s\n",
                     seeder.Error().isEmpty() ? "the home has a system database already" : qPrintable(seeder.Error()));
        return 2;
    }
    std::printf("seeded %d scripts, %d cases into %s\n", seeder.ScriptCount(), seeder.CaseCount(), qPrintable(args[1]));
    return 0;
}
