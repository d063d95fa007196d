#include "facts.h"

#include <algorithm>

namespace vh::engine {

namespace {

struct Fact {
    long number;
    variant (*value)(const Core& core);
};

variant NoText(const Core&) { return variant(L""); }
variant No(const Core&) { return variant(false); }
variant Yes(const Core&) { return variant(true); }
variant Nothing(const Core&) { return variant(0L); }
variant Silent(const Core& core) { return variant(core.options.silent); }

const Fact facts[] = {
    {2,
     [](const Core& core) {
         return variant(std::wstring_view(JoinPath(core.options.setupFolder, core.product->product->scripts.back())));
     }},
    {3, NoText},
    {4, NoText},
    {5, No},
    {6, NoText},
    {7, NoText},
    {8, NoText},
    {9, No},
    {10, Silent},
    {11, No},
    {12, [](const Core& core) { return variant(std::wstring_view(core.options.commandLine)); }},
    {16, Yes},
    {18, [](const Core& core) { return variant(static_cast<long>(core.language)); }},
    {19, No},
    {21, [](const Core& core) { return variant(std::wstring_view(core.product->product->skin)); }},
    {22, No},
    {24, Nothing},
    {29, No},
    {35, No},
    // Dialogs are answered too.
    {36, Silent},
    {40, Nothing},
    {43, No},
    {44, NoText},
};

} // namespace

const dispatch_entry<FactsObject> FactsObject::names[6] = {
    {L"Fact",
     [](FactsObject& object, const dispatch_call& call) {
         variant value;
         const HRESULT code = object.GetFact(call.number(0), value.put());
         return FAILED(code) ? code : call.give(std::move(value));
     },
     true},
    {L"ProductName",
     [](FactsObject& object, const dispatch_call& call) {
         return call.give(variant(std::wstring_view(object.core().product->product->name)));
     }},
    {L"ProductVersion",
     [](FactsObject& object, const dispatch_call& call) {
         return call.give(variant(std::wstring_view(object.core().product->product->version)));
     }},
    {L"Language",
     [](FactsObject& object, const dispatch_call& call) {
         return call.give(variant(static_cast<long>(object.core().language)));
     }},
    {L"Silent",
     [](FactsObject& object, const dispatch_call& call) { return call.give(variant(object.core().options.silent)); }},
    {L"CommandLine",
     [](FactsObject& object, const dispatch_call& call) {
         return call.give(variant(std::wstring_view(object.core().options.commandLine)));
     }},
};

HRESULT FactsObject::GetFact(long number, VARIANT* value)
{
    return Call("ISetupInfo.GetFact", number)([&] {
        if (!value)
            return E_POINTER;
        const auto given = core().options.facts.find(number);
        if (given != core().options.facts.end()) {
            variant(given->second).detach(value);
            return S_OK;
        }
        const auto* known =
            std::find_if(std::begin(facts), std::end(facts), [&](const Fact& fact) { return fact.number == number; });
        if (known == std::end(facts))
            return E_INVALIDARG;
        known->value(core()).detach(value);
        return S_OK;
    });
}

} // namespace vh::engine
