#include "CTestCli.h"

#include <QCoreApplication>

#include <malloc.h>

namespace {

// Cases allocate and free in waves, on several threads at once. By default
// glibc hands freed memory back to the system and then grows a thread's heap
// again a few pages at a time; each such change of the address space makes
// the other CPUs flush their TLBs. The runner keeps what it freed instead.
void KeepFreedMemory()
{
    mallopt(M_TRIM_THRESHOLD, 128 << 20);
    mallopt(M_TOP_PAD, 16 << 20);
}

// Each result line carries the local time. Without TZ, glibc looks at
// /etc/localtime again for every conversion to see whether it changed; named
// explicitly, the zone is read once.
void ReadTimeZoneOnce()
{
    if (qEnvironmentVariableIsEmpty("TZ") && !qEnvironmentVariableIsSet("TZ"))
        qputenv("TZ", ":/etc/localtime");
}

} // namespace

int main(int argc, char** argv)
{
    KeepFreedMemory();
    ReadTimeZoneOnce();
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("velmora-test"));
    CTestCli cli;
    return cli.Run(QCoreApplication::arguments());
}
