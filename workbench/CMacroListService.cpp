#include "CMacroListService.h"

#include "CMacroDataManager.h"
#include "CMacroParamManager.h"
#include "NativePath.h"
#include "UIFunction.h"

#include <QSaveFile>
#include <algorithm>
#include <QXmlStreamWriter>

bool CMacroListService::Reload()
{
    CArray<CMacro> macros;
    if (!CMacroDataManager().LoadAllMacros(macros)) {
        UIFunction::QXMessageBox(QStringLiteral("读取宏列表失败"));
        return false;
    }
    // The database's own order moves updated rows on some servers; ids keep
    // the list where the user saw it.
    std::stable_sort(macros.begin(), macros.end(),
                     [](const CMacro& a, const CMacro& b) { return a.GetId() < b.GetId(); });
    m_macros.Copy(macros);
    return true;
}

bool CMacroListService::LoadWhole(int id, CMacro& macro)
{
    macro = CMacro();
    CMacroDataManager().LoadMacro(id, macro);
    // The store stops at the first empty parameter list; a macro with no
    // inputs may still have outputs.
    if (macro.OutputParams().IsEmpty())
        CMacroParamManager().LoadOutputParams(id, macro.OutputParams());
    return !macro.GetName().isEmpty();
}

bool CMacroListService::Open(int row, CMacro& macro)
{
    if (!ValidRow(row))
        return false;
    if (LoadWhole(m_macros[row].GetId(), macro))
        return true;
    UIFunction::QXMessageBox(QStringLiteral("宏“") + m_macros[row].GetName() + QStringLiteral("”已不在数据库中"));
    return false;
}

bool CMacroListService::Add(const CMacro& facts)
{
    CMacro macro(facts.GetType(), facts.GetName(), facts.GetDescription(), QString());
    if (CMacroDataManager().InsertMacro(macro) == -1) {
        UIFunction::QXMessageBox(QStringLiteral("添加失败"));
        return false;
    }
    return Reload();
}

bool CMacroListService::Modify(int row, const CMacro& facts)
{
    if (!ValidRow(row))
        return false;
    const int id = m_macros[row].GetId();
    CMacro macro;
    bool done = LoadWhole(id, macro);
    if (done) {
        macro.SetName(facts.GetName());
        macro.SetType(facts.GetType());
        macro.SetDescription(facts.GetDescription());
        done = CMacroDataManager().UpdateMacro(id, macro) == 1;
    }
    if (!done) {
        UIFunction::QXMessageBox(QStringLiteral("修改失败"));
        return false;
    }
    return Reload();
}

bool CMacroListService::Delete(int row)
{
    if (!ValidRow(row))
        return false;
    const QString question = QStringLiteral("确实要删除宏“") + m_macros[row].GetName() + QStringLiteral("”吗?(Y/N)");
    if (UIFunction::QXMessageBox(question, QString(), UIFunction::MB_YESNO) != UIFunction::IDYES)
        return false;
    if (!CMacroDataManager().DeleteMacro(m_macros[row].GetId())) {
        UIFunction::QXMessageBox(QStringLiteral("删除失败"));
        return false;
    }
    return Reload();
}

QByteArray CMacroListService::BuildXml(const CArray<CMacro>& macros)
{
    QByteArray bytes;
    QXmlStreamWriter writer(&bytes);
    writer.setAutoFormatting(false);
    writer.writeStartElement(QStringLiteral("Macros"));
    for (const CMacro& macro : macros) {
        writer.writeEmptyElement(QStringLiteral("Macro"));
        writer.writeAttribute(QStringLiteral("Name"), macro.GetName());
        writer.writeAttribute(QStringLiteral("Value"), macro.GetContent());
        writer.writeAttribute(QStringLiteral("Description"), macro.GetDescription());
    }
    writer.writeEndElement();
    return bytes;
}

bool CMacroListService::ExportXml(const QString& path) const
{
    const QByteArray bytes = BuildXml(m_macros);
    QSaveFile file(NativePath::Map(path));
    if (path.isEmpty() || !file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        UIFunction::QXMessageBox(QStringLiteral("导出失败：") + path);
        return false;
    }
    return true;
}
