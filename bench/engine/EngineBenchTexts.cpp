#include "EngineBenchTexts.h"

#include "CMacroImplement.h"

#include <QDir>
#include <QFile>

namespace
{
CMacroParam Param(const QString& name, const QString& value, int type)
{
    CMacroParam param(name, value, QString());
    param.SetDataType(static_cast<std::uint32_t>(type));
    return param;
}

CArray<CMacroParam> Names(const QStringList& names)
{
    CArray<CMacroParam> params;
    for (const QString& name : names)
        params.Add(Param(name, QString(), 1));
    return params;
}

bool WriteFile(const QString& path, const QString& text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(text.toUtf8()) >= 0;
}

bool WriteCase(const QString& folder, const QString& name, const QString& text, const CArray<CMacroParam>& outputs)
{
    QStringList names;
    QStringList values;
    for (const CMacroParam& output : outputs)
    {
        names << output.GetName();
        values << output.GetValue();
    }
    const QDir dir(folder);
    return WriteFile(dir.filePath(name + QStringLiteral(".js")), text)
        && WriteFile(dir.filePath(name + QStringLiteral(".outputs")), names.join(QLatin1Char('\n')))
        && WriteFile(dir.filePath(name + QStringLiteral(".expected")), values.join(QLatin1Char('\n')));
}
} // namespace

CArray<CMacroParam> EngineBenchTexts::MacroInputs()
{
    CArray<CMacroParam> inputs;
    inputs.Add(Param(QStringLiteral("L"), QStringLiteral("1200"), 1));
    inputs.Add(Param(QStringLiteral("G"), QStringLiteral("HRB400"), 0));
    return inputs;
}

CArray<CMacroParam> EngineBenchTexts::MacroOutputs()
{
    return Names({QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")});
}

QString EngineBenchTexts::MacroScript()
{
    return QStringLiteral("var d = 25;\r\n"
                          "var area = Math.PI * d * d / 4;\r\n"
                          "var weight = area * L / 1000 * 7.85 / 1000;\r\n"
                          "var A = Math.round(weight * 1000) / 1000;\r\n"
                          "var B = G + \"-\" + d;\r\n"
                          "var C = L > 1000 ? \"长筋\" : \"短筋\";");
}

QString EngineBenchTexts::Library()
{
    QString text;
    for (int i = 1; i <= kLibraryFunctions; ++i)
    {
        if (i > 1)
            text += QStringLiteral("\r\n");
        text += QStringLiteral("function f_%1(a, b) {\r\n"
                               "  var x = a * %2;\r\n"
                               "  var y = b + %3;\r\n"
                               "  if (x > y) {\r\n"
                               "    x = x - y;\r\n"
                               "  } else {\r\n"
                               "    y = y - x;\r\n"
                               "  }\r\n"
                               "  return x * y + %1;\r\n"
                               "}")
                    .arg(i, 3, 10, QLatin1Char('0'))
                    .arg(i % 7 + 1)
                    .arg(i % 5);
    }
    return text;
}

CArray<CMacroParam> EngineBenchTexts::LibraryInputs()
{
    CArray<CMacroParam> inputs;
    inputs.Add(Param(QStringLiteral("L"), QStringLiteral("1200"), 1));
    return inputs;
}

CArray<CMacroParam> EngineBenchTexts::LibraryOutputs()
{
    return Names({QStringLiteral("R1"), QStringLiteral("R2")});
}

QString EngineBenchTexts::LibraryScript()
{
    return QStringLiteral("var R1 = f_001(L, 3) + f_150(L, 4);\r\nvar R2 = f_300(R1 % 97, L % 13);");
}

QString EngineBenchTexts::LoopScript()
{
    return QStringLiteral("var s = 0;\r\nfor (var i = 0; i < 10000000; i++) {\r\n  s += (i % 7) * 2 - 3;\r\n}");
}

CArray<CMacroParam> EngineBenchTexts::LoopOutputs()
{
    return Names({QStringLiteral("s")});
}

bool EngineBenchTexts::WriteTo(const QString& folder)
{
    if (!QDir().mkpath(folder))
        return false;
    CMacroImplement macro;
    CArray<CMacroParam> outputs = MacroOutputs();
    if (!macro.ExecuteScript(MacroScript(), MacroInputs(), outputs)
        || !WriteCase(folder, QStringLiteral("macro"), macro.GetLastScript(), outputs))
        return false;

    CMacroImplement library;
    library.AddGlobalScript(Library());
    outputs = LibraryOutputs();
    if (!library.ExecuteScript(LibraryScript(), LibraryInputs(), outputs)
        || !WriteCase(folder, QStringLiteral("library"), library.GetLastScript(), outputs))
        return false;

    CMacroImplement loop;
    outputs = LoopOutputs();
    return loop.ExecuteScript(LoopScript(), outputs) && WriteCase(folder, QStringLiteral("loop"), loop.GetLastScript(), outputs);
}
