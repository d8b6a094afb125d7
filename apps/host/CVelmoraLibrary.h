#pragma once
#include <QString>
#include <QStringList>

// The script workbench library as the host loads it: dlopen at start-up and
// the four entry points resolved by their exported (mangled) names, exactly
// as an application that knows only the library's header would.
//
// A library, once opened, is never closed: its windows and its script engine
// live until the process ends.
class CVelmoraLibrary
{
public:
    static inline const QString kFileName = QStringLiteral("libvelmora.so");

    struct EntryPoint
    {
        const char* symbol;
        const char* name; // as the header spells it
    };
    static const EntryPoint kInstance;
    static const EntryPoint kDomodle;
    static const EntryPoint kRelease;
    static const EntryPoint kScriptTest;

    CVelmoraLibrary() = default;
    CVelmoraLibrary(const CVelmoraLibrary&) = delete;
    CVelmoraLibrary& operator=(const CVelmoraLibrary&) = delete;

    // The library to load: `override` (VELMORA_LIBRARY) when set, else the
    // file beside the executable.
    static QString Locate(const QString& applicationDir, const QString& override);

    // Loads and resolves. False when the file cannot be loaded or an entry
    // point is missing; Error() then says what, in the user's words.
    bool Load(const QString& path);

    bool HasWorkbench() const { return m_instance && m_domodle; }
    bool HasScriptTest() const { return m_scriptTest != nullptr; }
    // Names of the entry points not found ("CCeateDialog::Release", ...).
    const QStringList& Missing() const { return m_missing; }
    QString Error() const { return m_error; }
    QString Path() const { return m_path; }

    // CCeateDialog::Instance()->Domodle(). False when not available.
    bool OpenWorkbench();
    // CCeateDialog::Release(). False when not available.
    bool ReleaseWorkbench();
    // CVelmoraExport::DoJaveScriptTest(); -1 when not available.
    int RunScriptTest();

private:
    void* Resolve(const EntryPoint& entry);

    void* m_handle = nullptr;
    void* (*m_instance)() = nullptr;
    void (*m_domodle)(void*) = nullptr;
    void (*m_release)() = nullptr;
    int (*m_scriptTest)() = nullptr;
    QStringList m_missing;
    QString m_error;
    QString m_path;
};
