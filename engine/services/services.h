// The service provider that the host hands to the library.
#pragma once

#include "../object.h"

namespace vh::engine {

class ServicesObject final : public engine_object<ServicesObject, IServiceProvider> {
public:
    using engine_object::engine_object;

    HRESULT STDMETHODCALLTYPE QueryService(REFGUID service, REFIID id, void** object) override;
};

} // namespace vh::engine
