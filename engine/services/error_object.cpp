#include "error_object.h"

namespace vh::engine {

const dispatch_entry<ErrorObject> ErrorObject::names[4] = {
    {L"Text",
     [](ErrorObject& error, const dispatch_call& call) {
         return call.give(variant(std::wstring_view(error.m_message.Text())));
     },
     true},
    {L"Code", [](ErrorObject& error,
                 const dispatch_call& call) { return call.give(variant(static_cast<long>(error.m_message.code))); }},
    {L"File", [](ErrorObject& error,
                 const dispatch_call& call) { return call.give(variant(std::wstring_view(error.m_message.file))); }},
    {L"Reason",
     [](ErrorObject& error, const dispatch_call& call) {
         return call.give(variant(std::wstring_view(error.m_message.reason)));
     }},
};

} // namespace vh::engine
