// A screenshot of the macro list on sample data, for the README. Run
// under Xvfb: workbench_screenshots OUTPUT_FOLDER
#include "CDlgMacroList.h"
#include "CMacroDataManager.h"
#include "CQtUIService.h"
#include "CSampleDataSeeder.h"
#include "HostContext.h"

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QThread>
#include <cstdio>

namespace {

bool Shoot(QWidget& widget, const QString& file)
{
    widget.show();
    widget.raise();
    for (int i = 0; i < 20; ++i) {
        QApplication::processEvents();
        QThread::msleep(25);
    }
    const bool saved = widget.grab().save(file);
    std::fprintf(stderr, "%s %s\n", saved ? "wrote" : "could not write", qPrintable(file));
    return saved;
}

void StoreSampleMacros()
{
    const struct { const char* name; const char* description; const char* script; } macros[] = {
        {"钢筋每米重量", "按直径计算每米重量 (kg/m)", "var W = 0.00617 * d * d;"},
        {"矩形箍筋下料长度", "135°弯钩，含保护层", "var L = 2 * (b + h) - 8 * c + 2 * 11.9 * d;"},
        {"板分布筋根数", "", "var n = Math.ceil(span / s) + 1;"},
    };
    CMacroDataManager store;
    for (const auto& m : macros) {
        CMacro macro(0, QString::fromUtf8(m.name), QString::fromUtf8(m.description), QString::fromUtf8(m.script));
        store.InsertMacro(macro);
    }
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: workbench_screenshots OUTPUT_FOLDER\n");
        return 2;
    }
    const QString out = QString::fromLocal8Bit(argv[1]);
    QDir().mkpath(out);
    QTemporaryDir home;
    HostContext::Instance().SetHome(home.path());
    HostContext::Instance().EnsureFolders();
    CQtUIService::InstallIfNone();
    CSampleDataSeeder seeder;
    if (!seeder.SeedIfNeeded())
        return 1;
    StoreSampleMacros();

    CDlgMacroList list;
    list.move(60, 60);
    return Shoot(list, out + "/macro-list.png") ? 0 : 1;
}
