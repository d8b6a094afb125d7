#pragma once
#include <QByteArray>
#include <QList>
#include <QString>

class QJsonObject;

// The sample rebar scripts shipped with the library (testing/samples, built in
// as a Qt resource): each script's table row, its global parameters and its
// test cases with their expected outputs, plus the "GlobalFun.txt" text all of
// them share.
class CSampleScripts
{
public:
    struct Expected
    {
        QString name;
        QString value;
        QString comment;
    };
    struct Case
    {
        QString name;
        QString script;
        QList<Expected> expected;
    };
    struct Script
    {
        QString keyCh;
        QString keyEn;
        QString description;
        QString category;
        QString globalParm;
        QString script;
        QList<Case> cases;
    };

    // Reads the built-in samples. False (with Error()) if they are damaged.
    bool LoadBuiltIn();
    // Reads samples from the JSON text and the shared global functions text;
    // LF line breaks of the latter become CR LF, as the host's files have them.
    bool Load(const QByteArray& json, const QByteArray& globalFun);

    const QList<Script>& Scripts() const { return m_scripts; }
    const QString& GlobalFun() const { return m_globalFun; }
    QString Error() const { return m_error; }

    // Scripts under these folders also belong in MacrosV2.
    static bool IsV2Key(const QString& keyCh);

private:
    bool ReadScript(const QString& id, const QJsonObject& object);
    bool Fail(const QString& error);

    QList<Script> m_scripts;
    QString m_globalFun;
    QString m_error;
};
