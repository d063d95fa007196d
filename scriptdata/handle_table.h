// Objects by handle, where the handle is the object's own address. Owns the objects.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace vh {

// A hash of addresses with open addressing. A handle is looked for, never trusted: one that is stale or made
// up finds nothing.
template <class Object>
class handle_table {
public:
    handle_table() = default;
    handle_table(const handle_table&) = delete;
    handle_table& operator=(const handle_table&) = delete;
    ~handle_table()
    {
        for (Object* object : m_slots)
            delete object;
    }

    int64_t Add(std::unique_ptr<Object> object)
    {
        if ((m_count + 1) * 2 > m_slots.size())
            Grow();
        Object* owned = object.release();
        Place(owned);
        ++m_count;
        return HandleOf(owned);
    }

    Object* Find(int64_t handle) const
    {
        // Scripts use one list many times in a row. No list and the handle 0 find nothing here, too.
        if (handle == HandleOf(m_last)) [[likely]]
            return m_last;
        if (m_slots.empty() || handle == 0)
            return nullptr;
        for (std::size_t at = Home(handle); Object* object = m_slots[at]; at = Next(at))
            if (HandleOf(object) == handle)
                return m_last = object;
        return nullptr;
    }

    // False when there is no such handle.
    bool Remove(int64_t handle)
    {
        if (m_slots.empty() || handle == 0)
            return false;
        std::size_t at = Home(handle);
        while (m_slots[at] && HandleOf(m_slots[at]) != handle)
            at = Next(at);
        const std::unique_ptr<Object> object(m_slots[at]);
        if (!object)
            return false;
        m_last = nullptr;
        --m_count;
        // What was pushed behind the gap moves up, so that look-ups need no marks.
        std::size_t gap = at;
        m_slots[gap] = nullptr;
        for (at = Next(at); Object* moved = m_slots[at]; at = Next(at)) {
            const std::size_t home = Home(HandleOf(moved));
            if (((at - home) & Mask()) >= ((at - gap) & Mask())) {
                m_slots[gap] = moved;
                m_slots[at] = nullptr;
                gap = at;
            }
        }
        return true;
    }

private:
    static int64_t HandleOf(const Object* object) { return reinterpret_cast<int64_t>(object); }
    std::size_t Mask() const { return m_slots.size() - 1; }
    std::size_t Next(std::size_t at) const { return (at + 1) & Mask(); }
    std::size_t Home(int64_t handle) const
    {
        const auto mixed = static_cast<uint64_t>(handle) * 0x9E3779B97F4A7C15;
        return static_cast<std::size_t>(mixed >> m_shift);
    }
    void Place(Object* object)
    {
        std::size_t at = Home(HandleOf(object));
        while (m_slots[at])
            at = Next(at);
        m_slots[at] = object;
    }
    void Grow()
    {
        std::vector<Object*> old(m_slots.empty() ? 8 : m_slots.size() * 2);
        old.swap(m_slots);
        m_shift = 64 - std::countr_zero(m_slots.size());
        for (Object* object : old)
            if (object)
                Place(object);
    }

    std::vector<Object*> m_slots;
    int m_shift = 64;
    std::size_t m_count = 0;
    mutable Object* m_last = nullptr;
};

} // namespace vh
