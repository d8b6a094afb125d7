#include "CTestCli.h"

#include <QCoreApplication>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("velmora-test"));
    CTestCli cli;
    return cli.Run(QCoreApplication::arguments());
}
