// Objects in the place of the platform's or the engine's: methods at their positions in the interfaces that they have.
#pragma once

#include "test.h"

namespace vh::test {

// All other methods answer E_NOTIMPL. It lives as long as the test wants, whoever holds it.
class Stand {
public:
    Stand(std::initializer_list<GUID> interfaces, std::initializer_list<std::pair<int, void*>> methods)
        : m_interfaces(interfaces)
    {
        std::ranges::fill(m_table, Method([](Stand*) { return E_NOTIMPL; }));
        m_table[0] = Method([](Stand* self, REFIID id, void** object) {
            const auto& known = self->m_interfaces;
            const bool has = id == iid_of<IUnknown> || std::ranges::find(known, id) != known.end();
            return has ? self->Give(object) : E_NOINTERFACE;
        });
        m_table[1] = Method([](Stand*) { return ++references; });
        m_table[2] = Method([](Stand*) { return --references; });
        for (const auto& [position, method] : methods)
            m_table[position] = method;
    }
    // Another one of its kind.
    Stand(const Stand& kind, std::wstring name) : m_interfaces(kind.m_interfaces), m_name(std::move(name))
    {
        std::ranges::copy(kind.m_table, m_table);
    }
    Stand(const Stand&) = delete;
    Stand& operator=(const Stand&) = delete;

    template <class Function>
    static void* Method(Function function)
    {
        return reinterpret_cast<void*>(+function);
    }
    // With a reference for the caller.
    HRESULT Give(void* object)
    {
        ++references;
        *static_cast<void**>(object) = this;
        return S_OK;
    }

    // What others hold of all of them.
    static inline int references = 0;
    const std::wstring& name() const { return m_name; }

private:
    void** m_methods = m_table;
    void* m_table[70];
    std::vector<GUID> m_interfaces;
    std::wstring m_name;
};

} // namespace vh::test
