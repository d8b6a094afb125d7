#include "CJsStencilCache.h"

#include <QHash>

#include <cstdio>

RefPtr<JS::Stencil> CJsStencilCache::Find(const Key& key)
{
    for (auto it = m_entries.begin(); it != m_entries.end(); ++it)
    {
        // The same shared text (a library passed case after case) needs no
        // character comparison.
        const bool sameText = it->text.size() == key.text.size()
                              && (it->text.constData() == key.text.constData() || it->text == key.text);
        if (it->keepValue == key.keepValue && it->line == key.line && sameText && it->file == key.file)
        {
            m_entries.splice(m_entries.begin(), m_entries, it);
            return m_entries.front().stencil;
        }
    }
    return nullptr;
}

void CJsStencilCache::Add(const Key& key, JS::Stencil* stencil)
{
    if (!stencil)
        return;
    m_entries.push_front(Entry{key.text, key.keepValue, key.file, key.line, RefPtr<JS::Stencil>(stencil)});
    if (m_entries.size() > kCapacity)
        m_entries.pop_back();
}

std::string CJsStencilCache::ContentName(const QString& text)
{
    char name[32];
    std::snprintf(name, sizeof(name), "h%016llx%08llx", static_cast<unsigned long long>(qHash(text, 0x5eed)),
                  static_cast<unsigned long long>(text.size()));
    return name;
}
