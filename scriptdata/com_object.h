// Reference count and interface look-up for objects of our own.
#pragma once

#include <type_traits>

#include "com_ptr.h"

namespace vh {

// Counts references for a class that implements the given interfaces; the first one also answers for
// IUnknown, and for IDispatch when it derives from it. The last Release deletes.
template <class First, class... More>
class com_object : public First, public More... {
public:
    com_object(const com_object&) = delete;
    com_object& operator=(const com_object&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override
    {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (id == iid_of<IUnknown>)
            *object = static_cast<First*>(this);
        else if (!answer<First>(id, object) && !(answer<More>(id, object) || ...))
            return QueryMore(id, object);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&m_references)); }
    ULONG STDMETHODCALLTYPE Release() override
    {
        const LONG left = InterlockedDecrement(&m_references);
        if (left == 0)
            delete this;
        return static_cast<ULONG>(left);
    }

protected:
    com_object() = default;
    virtual ~com_object() = default;

    // For what the list of interfaces can't say; sets the object with a reference, or fails.
    virtual HRESULT QueryMore(REFIID, void**) { return E_NOINTERFACE; }

private:
    template <class Interface>
    bool answer(REFIID id, void** object)
    {
        if constexpr (requires { Interface::iid; }) {
            if (id == Interface::iid) {
                *object = static_cast<Interface*>(this);
                return true;
            }
        }
        if constexpr (std::is_base_of_v<IDispatch, Interface>) {
            if (id == iid_of<IDispatch>) {
                *object = static_cast<IDispatch*>(static_cast<Interface*>(this));
                return true;
            }
        }
        return false;
    }

    LONG m_references = 1;
};

// A new object with its one reference in the caller's hand.
template <class Object, class... Arguments>
com_ptr<Object> make_object(Arguments&&... arguments)
{
    com_ptr<Object> made;
    made.attach(new Object(std::forward<Arguments>(arguments)...));
    return made;
}

} // namespace vh
