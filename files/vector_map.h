// A vector of named elements in the order of their coming, with an index from the name to the position.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "../scriptdata/stringx.h"

namespace vh {

// Small letters for A to Z. No locale folds ASCII units in another way.
inline wchar_t FoldAscii(wchar_t unit)
{
    return unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit | 0x20) : unit;
}

// Without regard to case. The run-time is asked only about what is not ASCII.
inline bool SameName(std::wstring_view a, std::wstring_view b)
{
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (a[i] >= 0x80 || b[i] >= 0x80)
            return char_traitsi::compare(a.data() + i, b.data() + i, a.size() - i) == 0;
        if (FoldAscii(a[i]) != FoldAscii(b[i]))
            return false;
    }
    return true;
}

// Positions by the hash of a key without regard to case. The keys themselves lie in the vector, so that each is
// kept once. Names are equal as the run-time's locale says, which may change; the hash folds every unit that any
// locale folds, so that equal names have equal hashes under all of them.
class map_i {
public:
    static constexpr uint32_t none = UINT32_MAX;

    static uint32_t hash(std::wstring_view key)
    {
        uint32_t value = 2166136261u;
        const auto add = [&](wchar_t unit) { value = (value ^ unit) * 16777619u; };
        for (std::size_t i = 0; i < key.size(); ++i) {
            if (key[i] < 0x80) {
                add(FoldAscii(key[i]));
                continue;
            }
            // The rest in blocks, as each goes through the system.
            for (wchar_t folded[block]; i < key.size(); i += block)
                std::ranges::for_each(fold(key.substr(i, block), folded), add);
        }
        return value ^ value >> 15;
    }

    // The position whose key `is_wanted` accepts, or none.
    template <class Accept>
    uint32_t find(uint32_t hash, Accept&& is_wanted) const
    {
        if (m_slots.empty())
            return none;
        for (std::size_t i = hash & mask(); m_slots[i].position != none; i = (i + 1) & mask())
            if (m_slots[i].hash == hash && is_wanted(m_slots[i].position))
                return m_slots[i].position;
        return none;
    }

    void add(uint32_t hash, uint32_t position)
    {
        if ((m_count + 1) * 4 > m_slots.size() * 3)
            grow();
        place({hash, position});
        ++m_count;
    }

    void clear()
    {
        m_slots.clear();
        m_count = 0;
    }

    void take_out(uint32_t hash, uint32_t position)
    {
        std::size_t hole = hash & mask();
        while (m_slots[hole].position != position)
            hole = (hole + 1) & mask();
        close(hole);
        --m_count;
    }
    // The same, and those behind it move up by one.
    void remove(uint32_t hash, uint32_t position)
    {
        take_out(hash, position);
        for (slot& one : m_slots)
            if (one.position != none && one.position > position)
                --one.position;
    }
    // The new place of each position, or none for those that go. Takes no memory.
    void renumber(const std::vector<uint32_t>& places)
    {
        for (std::size_t i = 0; i < m_slots.size(); ++i)
            for (; m_slots[i].position != none && places[m_slots[i].position] == none; --m_count)
                close(i);
        for (slot& one : m_slots)
            if (one.position != none)
                one.position = places[one.position];
    }

private:
    struct slot {
        uint32_t hash = 0;
        uint32_t position = none;
    };

    static constexpr std::size_t block = 64;

    static std::wstring_view fold(std::wstring_view text, wchar_t (&folded)[block])
    {
        const auto count = static_cast<int>(text.size());
        LCMapStringW(LOCALE_INVARIANT, LCMAP_LOWERCASE, text.data(), count, folded, count);
        return {folded, text.size()};
    }

    std::size_t mask() const { return m_slots.size() - 1; }

    void place(slot one)
    {
        std::size_t i = one.hash & mask();
        while (m_slots[i].position != none)
            i = (i + 1) & mask();
        m_slots[i] = one;
    }

    void grow()
    {
        std::vector<slot> old(m_slots.empty() ? 8 : m_slots.size() * 2);
        old.swap(m_slots);
        for (const slot& one : old)
            if (one.position != none)
                place(one);
    }

    // Moves later slots of the same run into the hole, so that no search ends too early.
    void close(std::size_t hole)
    {
        for (std::size_t i = (hole + 1) & mask(); m_slots[i].position != none; i = (i + 1) & mask()) {
            const std::size_t home = m_slots[i].hash & mask();
            if (((i - home) & mask()) >= ((i - hole) & mask())) {
                m_slots[hole] = m_slots[i];
                hole = i;
            }
        }
        m_slots[hole] = slot();
    }

    std::vector<slot> m_slots;
    std::size_t m_count = 0;
};

template <class Element, class Index, class Key>
class _vector_map {
public:
    using value_type = std::pair<Key, Element>;
    using const_iterator = typename std::vector<value_type>::const_iterator;

    uint32_t size() const { return static_cast<uint32_t>(m_items.size()); }
    bool empty() const { return m_items.empty(); }
    const_iterator begin() const { return m_items.begin(); }
    const_iterator end() const { return m_items.end(); }
    const Key& key_at(uint32_t position) const { return m_items[position].first; }
    Element& at(uint32_t position) { return m_items[position].second; }
    const Element& at(uint32_t position) const { return m_items[position].second; }

    // The position, or Index::none.
    uint32_t position_of(std::wstring_view key) const { return position_of(key, Index::hash(key)); }
    bool contains(std::wstring_view key) const { return position_of(key) != Index::none; }
    // Null when there is none; valid until the next change.
    Element* find(std::wstring_view key)
    {
        const uint32_t position = position_of(key);
        return position == Index::none ? nullptr : &m_items[position].second;
    }
    const Element* find(std::wstring_view key) const
    {
        const uint32_t position = position_of(key);
        return position == Index::none ? nullptr : &m_items[position].second;
    }

    // A key that is there already keeps its element. Gives the element's position.
    uint32_t insert(std::wstring_view key, Element element = Element())
    {
        const uint32_t hash = Index::hash(key);
        if (!m_allow_duplicates)
            if (const uint32_t present = position_of(key, hash); present != Index::none)
                return present;
        const uint32_t position = size();
        m_items.emplace_back(Key(key), std::move(element));
        m_index.add(hash, position);
        return position;
    }

    void erase_at(uint32_t position)
    {
        m_index.remove(Index::hash(m_items[position].first), position);
        m_items.erase(m_items.begin() + position);
    }
    // All elements whose key is accepted, in one pass. Gives their count.
    template <class Accept>
    uint32_t erase_if(Accept&& accept)
    {
        std::vector<uint32_t> places(m_items.size());
        uint32_t kept = 0;
        for (uint32_t at = 0; at < places.size(); ++at) {
            places[at] = accept(m_items[at].first) ? Index::none : kept++;
            if (places[at] != Index::none && places[at] != at)
                m_items[places[at]] = std::move(m_items[at]);
        }
        const uint32_t removed = size() - kept;
        m_items.erase(m_items.begin() + kept, m_items.end());
        if (removed)
            m_index.renumber(places);
        return removed;
    }
    void clear()
    {
        m_items.clear();
        m_index.clear();
    }

    // The new key must not be there yet.
    void rename_at(uint32_t position, std::wstring_view key)
    {
        // It may be a part of the old one.
        Key made(key);
        m_index.take_out(Index::hash(m_items[position].first), position);
        m_items[position].first = std::move(made);
        m_index.add(Index::hash(m_items[position].first), position);
    }
    // Takes the element out and puts it behind another one.
    void move_behind(uint32_t position, uint32_t other)
    {
        const auto first = m_items.begin();
        if (position < other)
            std::rotate(first + position, first + position + 1, first + other + 1);
        else if (position > other)
            std::rotate(first + other + 1, first + position, first + position + 1);
        rewrite_positions();
    }
    void sort()
    {
        std::ranges::stable_sort(m_items, [](const value_type& a, const value_type& b) { return a.first < b.first; });
        rewrite_positions();
    }

private:
    uint32_t position_of(std::wstring_view key, uint32_t hash) const
    {
        return m_index.find(hash, [&](uint32_t position) { return SameName(m_items[position].first, key); });
    }
    void rewrite_positions()
    {
        m_index.clear();
        for (uint32_t position = 0; position < size(); ++position)
            m_index.add(Index::hash(m_items[position].first), position);
    }

    std::vector<value_type> m_items;
    Index m_index;
    bool m_allow_duplicates = false;
};

template <class Element, class Key>
using vector_map_i = _vector_map<Element, map_i, Key>;

} // namespace vh
