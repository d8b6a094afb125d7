// Saves COUNT macros named PREFIX0.. into the system database the host
// context names (VELMORA_SYSTEM_DB), as a second process beside the tests.
// Exits 1 at the first failure that is not a lost race for a new id.
#include "CComDB.h"
#include "CDBFactory.h"
#include "CMacro.h"
#include "CMacroDataManager.h"
#include "HostContext.h"

#include <QCoreApplication>
#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc != 3)
        return 2;
    HostContext::Instance().LoadFromEnvironment();
    const QString prefix = QString::fromUtf8(argv[1]);
    const int count = std::atoi(argv[2]);
    CMacroDataManager macros;
    int races = 0;
    for (int i = 0; i < count; ++i) {
        const CMacro macro(1, prefix + QString::number(i), QStringLiteral("d"), QStringLiteral("var a = 1;"));
        // Two writers may read the same greatest id; the loser's insert fails
        // on the key and is tried again, as a user would save again.
        while (macros.InsertMacro(macro) == -1) {
            const QString error = CDBFactory::GetSingle(CDBFactory::kSystemDatabase)->GetError();
            if (!error.contains(QLatin1String("UNIQUE constraint failed")) || ++races > count) {
                std::fprintf(stderr, "%s: %s\n", argv[1], qPrintable(error));
                return 1;
            }
        }
    }
    std::printf("%d races\n", races);
    return 0;
}
