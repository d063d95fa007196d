// Lets an object of ours go to another thread as it is, without a proxy.
#pragma once

#include <objbase.h>
#include <objidl.h>

#include "../scriptdata/com_ptr.h"

namespace vh {

template <>
inline constexpr GUID iid_of<IMarshal> = Guid("{00000003-0000-0000-C000-000000000046}");

namespace engine {

// Made on first use; belongs to the object that it serves.
class Marshaler {
public:
    HRESULT Query(IUnknown* owner, REFIID id, void** object)
    {
        if (id != iid_of<IMarshal>)
            return E_NOINTERFACE;
        if (!m_inner)
            if (const HRESULT code = CoCreateFreeThreadedMarshaler(owner, m_inner.put()); FAILED(code))
                return code;
        return m_inner->QueryInterface(id, object);
    }

private:
    com_ptr<IUnknown> m_inner;
};

} // namespace engine
} // namespace vh
