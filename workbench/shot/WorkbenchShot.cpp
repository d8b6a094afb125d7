// Opens the workbench on a sample script, runs it and saves pictures of the
// window, the macro dialogs and the macro list: velmora-workbench-shot <output folder>.
#include "CDlgLoad.h"
#include "CDlgMacro.h"
#include "CDlgMacroList.h"
#include "CDlgNew.h"
#include "CEditCtr.h"
#include "CEditListCtrl.h"
#include "CMacroDataManager.h"
#include "CQtUIService.h"
#include "CSampleDataSeeder.h"
#include "CToolFrm.h"
#include "CVelmoraDlg.h"
#include "HostContext.h"

#include <QApplication>
#include <QDir>
#include <QScreen>
#include <QTimer>
#include <cstdio>

namespace {

const char* const kScript = R"(// 框架梁箍筋: 单根长度、根数与总重
var d = 8;        // 箍筋直径(mm)
var b = 300;      // 梁宽(mm)
var h = 600;      // 梁高(mm)
var c = 25;       // 保护层(mm)
var L = 6000;     // 梁净跨(mm)
var s = 200;      // 箍筋间距(mm)
var W = Math.round(0.00617 * d * d * 1000) / 1000;
var len = 2 * (b + h) - 8 * c + 2 * 11.9 * d;
var n = Math.ceil((L - 100) / s) + 1;
var total = Math.round(W * n * len / 1000 * 100) / 100;
)";

bool Save(const QPixmap& pixmap, const QString& path)
{
    const bool ok = pixmap.save(path);
    std::printf("%s %s\n", ok ? "wrote" : "cannot write", qPrintable(path));
    return ok;
}

bool ShootDialog(QDialog& dialog, const QString& path)
{
    dialog.show();
    QApplication::processEvents();
    const bool ok = Save(dialog.grab(), path);
    dialog.close();
    return ok;
}

// A few stored macros, so the list has something to show.
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
        std::fprintf(stderr, "usage: velmora-workbench-shot <output folder>\n");
        return 2;
    }
    const QDir out(QString::fromLocal8Bit(argv[1]));
    QDir().mkpath(out.path());
    CQtUIService::InstallIfNone();
    HostContext::Instance().EnsureFolders();
    CSampleDataSeeder seeder;
    if (!seeder.SeedIfNeeded())
        std::fprintf(stderr, "seeding failed: %s\n", qPrintable(seeder.Error()));

    CVelmoraDlg* window = CVelmoraDlg::Instance();
    window->show();
    window->Editor()->setText(QString::fromUtf8(kScript));
    const char16_t* rows[][2] = {{u"W", u"每米重量(kg/m)"}, {u"len", u"单根长度(mm)"}, {u"n", u"根数"},
                                 {u"total", u"总重(kg)"}};
    for (const auto& row : rows)
        window->ParamList()->InsertRow({QString::fromUtf16(row[0]), QString(), QString::fromUtf16(row[1])});
    window->RunScript();
    window->Editor()->setCursorPosition(9, 0);

    int failures = 0;
    QTimer::singleShot(1500, [&] {
        QApplication::processEvents();
        failures += !Save(window->screen()->grabWindow(0), out.filePath(QStringLiteral("workbench.png")));
        CDlgMacro macro;
        CDlgNew settings;
        CDlgLoad load;
        failures += !ShootDialog(macro, out.filePath(QStringLiteral("dlg-macro.png")));
        failures += !ShootDialog(settings, out.filePath(QStringLiteral("dlg-new.png")));
        failures += !ShootDialog(load, out.filePath(QStringLiteral("dlg-load.png")));
        StoreSampleMacros();
        CDlgMacroList list;
        failures += !ShootDialog(list, out.filePath(QStringLiteral("macro-list.png")));
        CVelmoraDlg::DestroyInstance();
        app.exit(failures ? 1 : 0);
    });
    return app.exec();
}
