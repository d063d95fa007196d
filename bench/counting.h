// Counts the calls that a module makes of one imported function.
#pragma once

#include "../tests/support/import_patch.h"

namespace bench {

// The functions counted here take no more than seven words and give one; each counter has a slot of its own.
class call_counter {
public:
    call_counter(HMODULE module, const char* function)
        : m_slot(TakeSlot()), m_patch(module, function, replacements[m_slot])
    {
        s_original[m_slot] = reinterpret_cast<Call>(m_patch.original());
        s_calls[m_slot] = 0;
    }
    call_counter(const call_counter&) = delete;
    call_counter& operator=(const call_counter&) = delete;
    ~call_counter() { s_taken[m_slot] = false; }

    // -1 when the module does not import the function.
    long calls() const { return m_patch.found() ? s_calls[m_slot] : -1; }

private:
    using Word = std::intptr_t;
    using Call = Word (*)(Word, Word, Word, Word, Word, Word, Word);
    static constexpr int slots = 8;

    template <int Slot>
    static Word Count(Word a, Word b, Word c, Word d, Word e, Word f, Word g)
    {
        ++s_calls[Slot];
        return s_original[Slot](a, b, c, d, e, f, g);
    }
    static int TakeSlot()
    {
        int slot = 0;
        while (s_taken[slot])
            ++slot;
        s_taken[slot] = true;
        return slot;
    }

    static inline long s_calls[slots];
    static inline Call s_original[slots];
    static inline bool s_taken[slots];
    static inline void* const replacements[slots] = {
        reinterpret_cast<void*>(&Count<0>), reinterpret_cast<void*>(&Count<1>), reinterpret_cast<void*>(&Count<2>),
        reinterpret_cast<void*>(&Count<3>), reinterpret_cast<void*>(&Count<4>), reinterpret_cast<void*>(&Count<5>),
        reinterpret_cast<void*>(&Count<6>), reinterpret_cast<void*>(&Count<7>)};

    int m_slot;
    vh::test::ImportPatch m_patch;
};

} // namespace bench
