// Screenshots of the workbench dialogs on sample data, for the README. Run
// under Xvfb: workbench_screenshots OUTPUT_FOLDER
#include "CDlgMacroList.h"
#include "CJSDialog.h"
#include "CJSDialogHost.h"
#include "CJSDialogWnd.h"
#include "CMacroDataManager.h"
#include "CQtUIService.h"
#include "CSampleDataSeeder.h"
#include "HostContext.h"

#include <QApplication>
#include <QDir>
#include <QScreen>
#include <QTemporaryDir>
#include <QThread>
#include <cstdio>

namespace {

// The screen under the widget when there is one (so dialogs over their
// owner show both), else the widget alone.
bool Shoot(QWidget& widget, const QString& file)
{
    widget.show();
    widget.raise();
    for (int i = 0; i < 20; ++i) {
        QApplication::processEvents();
        QThread::msleep(25);
    }
    QScreen* screen = QGuiApplication::primaryScreen();
    const QPixmap shot = QGuiApplication::platformName() == QLatin1String("xcb") && screen
                             ? screen->grabWindow(0, widget.x(), widget.y(), widget.width(), widget.height())
                             : widget.grab();
    const bool saved = shot.save(file);
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

// Until the workbench window stands, a plain owner with a chosen row.
class ChosenRow : public CJSDialogHost
{
public:
    QString GetChosenScriptName() const override { return QStringLiteral("梁\\矩形箍筋下料长度.js|弯起钢筋长度.js"); }
    QString GetGatheredScript() const override { return QString(); }
    bool RunScriptText(const QString&) override { return false; }
};

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
    bool ok = Shoot(list, out + "/macro-list.png");
    list.hide();

    QWidget owner;
    owner.setWindowTitle(QStringLiteral("脚本调试工具"));
    owner.setGeometry(0, 0, 1200, 800);
    owner.show();
    ChosenRow host;
    CJSDialog import(&host);
    import.Create(&owner);
    ok = Shoot(*import.GetWindow(), out + "/import-dialog-alone.png") && ok;
    return ok ? 0 : 1;
}
