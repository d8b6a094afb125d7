#include "CJsStencilCache.h"

#include <QHash>

#include <cstdio>

RefPtr<JS::Stencil> CJsStencilCache::Find(const QString& text, bool keepValue)
{
    if (!IsWorthCaching(text))
        return nullptr;
    for (auto it = m_entries.begin(); it != m_entries.end(); ++it)
    {
        if (it->keepValue == keepValue && it->text == text)
        {
            m_entries.splice(m_entries.begin(), m_entries, it);
            return m_entries.front().stencil;
        }
    }
    return nullptr;
}

void CJsStencilCache::Add(const QString& text, bool keepValue, JS::Stencil* stencil)
{
    if (!IsWorthCaching(text) || !stencil)
        return;
    m_entries.push_front(Entry{text, keepValue, RefPtr<JS::Stencil>(stencil)});
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
