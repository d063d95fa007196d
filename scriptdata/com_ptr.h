// One counted reference to an interface.
#pragma once

#include <utility>

#include "../Src/inc/identifiers.h"

namespace vh {

template <class Interface>
class com_ptr {
public:
    com_ptr() = default;
    com_ptr(std::nullptr_t) {}
    // Takes a reference of its own.
    explicit com_ptr(Interface* shared) : m_pointer(shared)
    {
        if (m_pointer)
            m_pointer->AddRef();
    }
    com_ptr(const com_ptr& other) : com_ptr(other.m_pointer) {}
    com_ptr(com_ptr&& other) noexcept : m_pointer(std::exchange(other.m_pointer, nullptr)) {}
    ~com_ptr() { reset(); }

    com_ptr& operator=(const com_ptr& other)
    {
        reset(other.m_pointer);
        return *this;
    }
    com_ptr& operator=(com_ptr&& other) noexcept
    {
        if (this != &other)
            attach(std::exchange(other.m_pointer, nullptr));
        return *this;
    }

    // Takes over a reference that the caller holds.
    void attach(Interface* owned)
    {
        if (Interface* old = std::exchange(m_pointer, owned))
            old->Release();
    }
    // Takes a reference on the new value before it drops the old; an unchanged value costs nothing.
    void reset(Interface* shared = nullptr)
    {
        if (shared == m_pointer)
            return;
        if (shared)
            shared->AddRef();
        attach(shared);
    }
    // Drops the reference and tells what the object answers; 0 when nothing is held.
    unsigned long drop()
    {
        Interface* old = std::exchange(m_pointer, nullptr);
        return old ? old->Release() : 0;
    }
    // Gives the reference to the caller.
    [[nodiscard]] Interface* detach() { return std::exchange(m_pointer, nullptr); }

    Interface* get() const { return m_pointer; }
    Interface* operator->() const { return m_pointer; }
    explicit operator bool() const { return m_pointer != nullptr; }

    // The address for an out argument; what was held is released first.
    Interface** put()
    {
        reset();
        return &m_pointer;
    }
    void** put_void() { return reinterpret_cast<void**>(put()); }

    // Empty when the object does not have the interface, or when nothing is held.
    template <class Wanted>
    com_ptr<Wanted> query() const
    {
        com_ptr<Wanted> found;
        query(found);
        return found;
    }
    // The same with the code of the query; E_POINTER when nothing is held.
    template <class Wanted>
    HRESULT query(com_ptr<Wanted>& found) const
    {
        found.reset();
        if (!m_pointer)
            return E_POINTER;
        const HRESULT code = m_pointer->QueryInterface(iid_of<Wanted>, found.put_void());
        return SUCCEEDED(code) && !found ? E_NOINTERFACE : code;
    }

private:
    Interface* m_pointer = nullptr;
};

// The code of a call that gives an object: a success without one is a failure.
template <class Interface>
HRESULT Given(HRESULT code, const com_ptr<Interface>& object)
{
    return SUCCEEDED(code) && !object ? E_POINTER : code;
}

// A reference without a declared interface, held under IUnknown after a query for `id`.
inline com_ptr<IUnknown> QueryUnknown(IUnknown* object, const GUID& id)
{
    com_ptr<IUnknown> found;
    if (object)
        object->QueryInterface(id, found.put_void());
    return found;
}

} // namespace vh
