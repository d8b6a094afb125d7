#pragma once
#include <QString>

#include <js/TypeDecls.h>
#include <js/experimental/JSStencil.h>
#include <mozilla/RefPtr.h>

#include <cstdint>
#include <list>
#include <string>

// Compiled forms of the texts a thread ran lately. A macro text with a large
// global function library is often run again unchanged (the same case twice,
// a benchmark, a workbench run after a save), and a case run piece by piece
// repeats its library, global parameters and script in every case; the
// compiled form is then put into the new global directly instead of being
// parsed afresh. A compiled form holds the file name and first line it was
// compiled with, so those are part of the key. Texts are compared in full,
// never by hash alone.
class CJsStencilCache
{
public:
    struct Key
    {
        const QString& text;
        bool keepValue = false;
        const std::string& file;
        int line = 1;
    };
    // The compiled text, or null when it is not cached.
    RefPtr<JS::Stencil> Find(const Key& key);
    void Add(const Key& key, JS::Stencil* stencil);

    // Whole texts are cached from this length on; pieces of a case always.
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
        std::string file;
        int line = 1;
        RefPtr<JS::Stencil> stencil;
    };
    std::list<Entry> m_entries; // most recently used first
};
