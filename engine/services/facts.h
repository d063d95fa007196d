// The numbered facts of this run.
#pragma once

#include "../object.h"

namespace vh::engine {

class FactsObject final : public engine_object<FactsObject, ISetupInfo> {
public:
    using engine_object::engine_object;

    HRESULT STDMETHODCALLTYPE GetFact(long number, VARIANT* value) override;

    static const dispatch_entry<FactsObject> names[6];
};

} // namespace vh::engine
