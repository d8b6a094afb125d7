#pragma once
#include <cstddef>
#include <utility>
#include <vector>

// The ordered container the system passes records in: indexed from 0, grown by
// appending copies, emptied by setting its size to 0. Copies are element-wise.
template <typename T>
class CArray
{
public:
    CArray() = default;

    int GetSize() const { return static_cast<int>(m_items.size()); }
    int GetCount() const { return GetSize(); }
    bool IsEmpty() const { return m_items.empty(); }

    // Growing fills with default elements; shrinking drops the tail.
    void SetSize(int size) { m_items.resize(size < 0 ? 0 : static_cast<std::size_t>(size)); }
    void RemoveAll() { m_items.clear(); }

    int Add(const T& item)
    {
        m_items.push_back(item);
        return GetSize() - 1;
    }
    void InsertAt(int index, const T& item) { m_items.insert(m_items.begin() + index, item); }
    void RemoveAt(int index, int count = 1)
    {
        m_items.erase(m_items.begin() + index, m_items.begin() + index + count);
    }
    void SetAt(int index, const T& item) { m_items.at(static_cast<std::size_t>(index)) = item; }

    const T& GetAt(int index) const { return m_items.at(static_cast<std::size_t>(index)); }
    T& ElementAt(int index) { return m_items.at(static_cast<std::size_t>(index)); }
    const T& operator[](int index) const { return GetAt(index); }
    T& operator[](int index) { return ElementAt(index); }

    // Replaces the content with a copy of `other`'s elements.
    void Copy(const CArray& other)
    {
        if (this != &other)
            m_items = other.m_items;
    }
    int Append(const CArray& other)
    {
        const int start = GetSize();
        m_items.insert(m_items.end(), other.m_items.begin(), other.m_items.end());
        return start;
    }

    auto begin() { return m_items.begin(); }
    auto end() { return m_items.end(); }
    auto begin() const { return m_items.begin(); }
    auto end() const { return m_items.end(); }

private:
    std::vector<T> m_items;
};
