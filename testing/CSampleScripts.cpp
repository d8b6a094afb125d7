#include "CSampleScripts.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>

namespace {

QByteArray ReadResource(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// QJsonObject sorts its keys; the samples are listed in the file in the order
// a user should meet them, so recover that order from the text.
QStringList KeysInFileOrder(const QJsonObject& object, const QByteArray& json)
{
    QStringList keys = object.keys();
    auto position = [&json](const QString& key) {
        const qsizetype at = json.indexOf(QByteArray("\"") + key.toUtf8() + "\":");
        return at < 0 ? json.size() : at;
    };
    std::stable_sort(keys.begin(), keys.end(),
                     [&](const QString& a, const QString& b) { return position(a) < position(b); });
    return keys;
}

QString Text(const QJsonObject& object, const char* field)
{
    return object.value(QLatin1String(field)).toString();
}

} // namespace

bool CSampleScripts::LoadBuiltIn()
{
    const QByteArray json = ReadResource(QStringLiteral(":/velmora/samples/samples.json"));
    const QByteArray globalFun = ReadResource(QStringLiteral(":/velmora/samples/GlobalFun.js"));
    if (json.isEmpty() || globalFun.isEmpty())
        return Fail(QStringLiteral("the built-in sample scripts are missing"));
    return Load(json, globalFun);
}

bool CSampleScripts::Load(const QByteArray& json, const QByteArray& globalFun)
{
    m_scripts.clear();
    m_error.clear();
    m_globalFun = QString::fromUtf8(globalFun);
    m_globalFun.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    m_globalFun.replace(QLatin1Char('\n'), QStringLiteral("\r\n"));
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (!document.isObject())
        return Fail(QStringLiteral("sample scripts: %1").arg(parseError.errorString()));
    const QJsonObject root = document.object();
    for (const QString& id : KeysInFileOrder(root, json)) {
        if (!ReadScript(id, root.value(id).toObject()))
            return false;
    }
    return true;
}

bool CSampleScripts::ReadScript(const QString& id, const QJsonObject& object)
{
    Script script;
    script.keyCh = Text(object, "key_ch");
    script.keyEn = Text(object, "key_en");
    script.description = Text(object, "description");
    script.category = Text(object, "category");
    script.globalParm = Text(object, "globalParm");
    script.script = Text(object, "script");
    if (script.keyCh.isEmpty() || script.script.isEmpty())
        return Fail(QStringLiteral("sample script %1 has no key or no text").arg(id));
    for (const QJsonValue& caseValue : object.value(QLatin1String("cases")).toArray()) {
        const QJsonObject caseObject = caseValue.toObject();
        Case testCase{Text(caseObject, "name"), Text(caseObject, "script"), {}};
        if (testCase.name.isEmpty())
            return Fail(QStringLiteral("sample script %1 has a case without a name").arg(id));
        for (const QJsonValue& row : caseObject.value(QLatin1String("expect")).toArray()) {
            const QJsonArray cells = row.toArray();
            if (cells.size() != 3)
                return Fail(QStringLiteral("sample case %1/%2 has a bad expected row").arg(id, testCase.name));
            testCase.expected.append({cells.at(0).toString(), cells.at(1).toString(), cells.at(2).toString()});
        }
        script.cases.append(testCase);
    }
    m_scripts.append(script);
    return true;
}

bool CSampleScripts::Fail(const QString& error)
{
    m_scripts.clear();
    m_error = error;
    return false;
}

bool CSampleScripts::IsV2Key(const QString& keyCh)
{
    return keyCh.contains(QStringLiteral("通用脚本\\")) || keyCh.contains(QStringLiteral("图形法脚本\\"));
}
