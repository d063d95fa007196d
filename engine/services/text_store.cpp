#include "text_store.h"

namespace vh::engine {

const dispatch_entry<TextStore> TextStore::names[3] = {
    {L"Value",
     [](TextStore& store, const dispatch_call& call) {
         if (call.put())
             return store.SetValue(call.text(0).get(), call.text(1).get());
         bstr value;
         const HRESULT code = store.GetValue(call.text(0).get(), value.put());
         return FAILED(code) ? code : call.give(variant(std::move(value)));
     },
     true},
    {L"Substitute",
     [](TextStore& store, const dispatch_call& call) {
         bstr text = call.text(0);
         BSTR held = text.detach();
         const HRESULT code = store.Substitute(&held);
         text.attach(held);
         return FAILED(code) ? code : call.give(variant(std::move(text)));
     }},
    {L"Protect",
     [](TextStore& store, const dispatch_call& call) {
         return store.Protect(call.text(0).get(), call.count() > 1 ? call.number(1) : 1);
     }},
};

HRESULT TextStore::GetValue(BSTR name, BSTR* value)
{
    return Call("ISetupTextSub.GetValue", name)([&] {
        const std::wstring* found = table().Find(TextOf(name));
        if (!found && m_local)
            found = core().globalTexts.Find(TextOf(name));
        const HRESULT code = GiveText(value, found ? *found : L"");
        return code == S_OK && !found ? S_FALSE : code;
    });
}

HRESULT TextStore::SetValue(BSTR name, BSTR value)
{
    return Call("ISetupTextSub.SetValue", name, value)([&] {
        const std::wstring given = TextOf(name);
        if (given.empty() || given.find_first_of(L"<>") != std::wstring::npos)
            return E_INVALIDARG;
        const std::wstring* before = table().Find(given);
        const bool news = core().options.onVariable && (!before || *before != TextOf(value));
        if (!table().Set(given, TextOf(value)))
            return E_ACCESSDENIED;
        if (news)
            core().options.onVariable(given, TextOf(value));
        return S_OK;
    });
}

HRESULT TextStore::Substitute(BSTR* text)
{
    return Call("ISetupTextSub.Substitute", text ? *text : nullptr)([&] {
        if (!text)
            return E_POINTER;
        bstr replaced(std::wstring_view(core().Substitute(TextOf(*text), m_local)));
        bstr old;
        old.attach(std::exchange(*text, replaced.detach()));
        return S_OK;
    });
}

HRESULT TextStore::Load(BSTR name, IUnknown* store)
{
    return Call("ISetupTextSub.Load", name)([&] {
        const auto archive = com_ptr<IUnknown>(store).query<IEngineTextArchive>();
        if (!archive)
            return E_INVALIDARG;
        return archive->LoadTexts(TextOf(name), table()) ? S_OK : S_FALSE;
    });
}

HRESULT TextStore::Save(BSTR name, IUnknown* store)
{
    return Call("ISetupTextSub.Save", name)([&] {
        const auto archive = com_ptr<IUnknown>(store).query<IEngineTextArchive>();
        if (!archive)
            return E_INVALIDARG;
        archive->SaveTexts(TextOf(name), table());
        return S_OK;
    });
}

HRESULT TextStore::Protect(BSTR name, long protection)
{
    return Call("ISetupTextSubEx.Protect", name, protection)([&] {
        table().Protect(TextOf(name), protection != 0);
        return S_OK;
    });
}

} // namespace vh::engine
