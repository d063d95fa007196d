// Puts a function of the test in the place of a system function that a loaded module imports.
#pragma once

#include <cstring>
#include <string_view>
#include <windows.h>

#include "pinned.h"

namespace vh::test {

// The system's own function, past any patch.
template <class Function>
Function* OfSystem(const char* name, const wchar_t* library = L"kernel32.dll")
{
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(library), name)));
}

class ImportPatch : Pinned {
public:
    // Does nothing when the module does not import the function; `found` tells.
    ImportPatch(HMODULE module, std::string_view function, void* replacement) : m_slot(Find(module, function))
    {
        if (m_slot)
            m_original = Write(replacement);
    }
    ~ImportPatch()
    {
        if (m_slot)
            Write(m_original);
    }

    bool found() const { return m_slot != nullptr; }
    // What stood there; null when the module does not import the function.
    void* original() const { return m_original; }

private:
    template <class Type>
    static Type* At(HMODULE module, std::size_t offset)
    {
        return reinterpret_cast<Type*>(reinterpret_cast<char*>(module) + offset);
    }

    static void** Find(HMODULE module, std::string_view function)
    {
        const auto* dos = At<IMAGE_DOS_HEADER>(module, 0);
        const auto* header = At<IMAGE_NT_HEADERS>(module, static_cast<std::size_t>(dos->e_lfanew));
        const auto& directory = header->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
        for (auto* library = At<IMAGE_IMPORT_DESCRIPTOR>(module, directory.VirtualAddress); library->Name; ++library) {
            const auto* name = At<IMAGE_THUNK_DATA>(module, library->OriginalFirstThunk);
            auto* slot = At<IMAGE_THUNK_DATA>(module, library->FirstThunk);
            for (; name->u1.AddressOfData; ++name, ++slot) {
                if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal))
                    continue;
                if (function == At<IMAGE_IMPORT_BY_NAME>(module, name->u1.AddressOfData)->Name)
                    return reinterpret_cast<void**>(&slot->u1.Function);
            }
        }
        return nullptr;
    }

    void* Write(void* value)
    {
        DWORD old = 0;
        VirtualProtect(m_slot, sizeof(*m_slot), PAGE_READWRITE, &old);
        void* before = *m_slot;
        *m_slot = value;
        VirtualProtect(m_slot, sizeof(*m_slot), old, &old);
        return before;
    }

    void** m_slot;
    void* m_original = nullptr;
};

// Counts the calls that VHRT.dll makes of a system function and passes them on, or answers for the system.
//     CallCounter<decltype(GetFileAttributesW)> looks("GetFileAttributesW");
// One counter of a signature and tag at a time.
template <class Signature, int Tag = 0>
class CallCounter;

template <class Result, class... Arguments, int Tag>
class CallCounter<Result(Arguments...), Tag> {
public:
    using Answer = Result (*)(Arguments...);

    explicit CallCounter(const char* function, Answer answer = nullptr)
        : m_patch(GetModuleHandleW(L"VHRT.dll"), function, reinterpret_cast<void*>(&Count))
    {
        s_answer = answer ? answer : OfSystem<Result(Arguments...)>(function);
        s_calls = 0;
    }

    int calls() const { return m_patch.found() ? s_calls : -1; }
    bool found() const { return m_patch.found(); }

private:
    static Result WINAPI Count(Arguments... arguments)
    {
        ++s_calls;
        return s_answer(arguments...);
    }

    static inline int s_calls = 0;
    static inline Answer s_answer = nullptr;
    ImportPatch m_patch;
};

} // namespace vh::test
