// The last failure of an engine call, for scripts.
#pragma once

#include "../object.h"

namespace vh::engine {

class ErrorObject final : public engine_object<ErrorObject, IDispatch> {
public:
    ErrorObject(std::shared_ptr<Core> core, Message message)
        : engine_object(std::move(core)), m_message(std::move(message))
    {
    }

    static const dispatch_entry<ErrorObject> names[4];

private:
    Message m_message;
};

} // namespace vh::engine
