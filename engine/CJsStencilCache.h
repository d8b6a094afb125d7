#pragma once
#include <QString>

#include <js/TypeDecls.h>
#include <js/experimental/JSStencil.h>
#include <mozilla/RefPtr.h>

#include <cstdint>
#include <list>
#include <string>

// Compiled forms of the longer texts a thread ran lately. A macro text with a
// large global function library is often run again unchanged (the same case
// twice, a benchmark, a workbench run after a save); its compiled form is
// then put into the new global directly instead of being parsed afresh.
// Texts are compared in full, never by hash alone.
class CJsStencilCache
{
public:
    // The compiled text, or null when it is not cached (or too short to be).
    RefPtr<JS::Stencil> Find(const QString& text, bool keepValue);
    void Add(const QString& text, bool keepValue, JS::Stencil* stencil);

    static bool IsWorthCaching(const QString& text) { return text.size() >= kMinLength; }
    // A name for the text that does not depend on when it was compiled, so
    // a cached stencil's file name stays right for every global it serves.
    static std::string ContentName(const QString& text);

    static constexpr qsizetype kMinLength = 2048;
    static constexpr std::size_t kCapacity = 16;

private:
    struct Entry
    {
        QString text;
        bool keepValue = false;
        RefPtr<JS::Stencil> stencil;
    };
    std::list<Entry> m_entries; // most recently used first
};
