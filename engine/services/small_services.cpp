#include "small_services.h"

#include "../../system/secure_object.h"
#include "../maintenance.h"
#include "../windows/window_object.h"
#include "reboot_texts.h"

namespace vh::engine {

const dispatch_entry<StringsObject> StringsObject::names[1] = {
    {L"String",
     [](StringsObject& strings, const dispatch_call& call) {
         bstr text;
         const HRESULT code = strings.GetString(call.text(0).get(), text.put());
         return FAILED(code) ? code : call.give(variant(std::wstring_view(text.view())));
     },
     true},
};

HRESULT StringsObject::GetString(BSTR id, BSTR* text)
{
    return Call("ISetupStrings.GetString", id)([&] {
        const std::wstring* found = core().FindString(TextOf(id));
        const HRESULT code = GiveText(text, found ? *found : L"");
        return code == S_OK && !found ? S_FALSE : code;
    });
}

HRESULT DirsObject::GetSupportDir(BSTR* directory)
{
    return Call("ISetupDirs.GetSupportDir")([&] { return GiveText(directory, core().supportDir); });
}

HRESULT DirsObject::GetContextGuid(BSTR* identifier)
{
    return Call("ISetupDirs.GetContextGuid")([&] { return GiveText(identifier, core().contextGuid); });
}

HRESULT ResourcesObject::Load(BSTR file, HMODULE* module)
{
    return Call("ISetupResources.Load", file)([&] {
        if (!module)
            return E_POINTER;
        const std::wstring path = core().FindFile(TextOf(file));
        *module = LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
        if (!*module)
            ThrowFileError(path, L"can't load the library of dialogs and texts", GetLastError());
        return S_OK;
    });
}

HRESULT ResourcesObject::Free(HMODULE module, long* result)
{
    return Call("ISetupResources.Free")([&] {
        unique_module closed(module);
        return result ? Give(result, 1) : S_OK;
    });
}

HRESULT ScriptLog::WriteLine(BSTR line)
{
    return Call("ISetupScriptLog.WriteLine", line)([&] {
        core().Note({}, TextOf(line));
        return S_OK;
    });
}

namespace {

class NotedSecureObject final : public CVHSecureObject {
public:
    explicit NotedSecureObject(Core& core) : m_core(core) {}
    void Log(const wchar_t* line) override { m_core.Note({}, line); }
    HRESULT GetHelper(com_ptr<ISetupPermissionHelper>&) override { return E_NOINTERFACE; }

private:
    Core& m_core;
};

} // namespace

HRESULT PermissionHelper::SetObjectPermissions(BSTR object, BSTR domain, BSTR account, long objectType, long access,
                                               long flags, long* result)
{
    return Call("ISetupPermissionHelper.SetObjectPermissions", object, domain, account, objectType, access, flags)([&] {
        if (core().options.planOnly) {
            core().Note(TextOf(object), L"its access rights would be set");
            return Give(result, 0L);
        }
        PermissionItem item(object, PermissionItem::key, domain, account, static_cast<uint32_t>(access), flags);
        item.platformKind = objectType;
        return Give(result, static_cast<long>(NotedSecureObject(core()).SetLocally(item)));
    });
}

const dispatch_entry<UserObject> UserObject::names[2] = {
    {L"Window", &GetProperty<&UserObject::GetWindow, UserObject>},
    {L"Message",
     [](UserObject& user, const dispatch_call& call) {
         user.core().Note({}, std::wstring(call.text(0).view()));
         return S_OK;
     }},
};

HRESULT UserObject::GetWindow(ISetupWindow** window)
{
    return Call("ISetupUser.GetWindow")([&] { return GiveObject(window, make_object<WindowObject>(shared_core())); });
}

const dispatch_entry<RebootObject> RebootObject::names[5] = {
    {L"Count",
     [](RebootObject& reboot, const dispatch_call& call) {
         return call.give(variant(static_cast<long>(reboot.core().rebootTexts.size())));
     },
     true},
    {L"LeftCount",
     [](RebootObject& reboot, const dispatch_call& call) {
         return call.give(variant(static_cast<long>(ReadRebootTexts(reboot.core().log->File()).size())));
     }},
    {L"LeftText",
     [](RebootObject& reboot, const dispatch_call& call) {
         const auto left = ReadRebootTexts(reboot.core().log->File());
         const auto row = static_cast<std::size_t>(call.number(0));
         const auto part = static_cast<std::size_t>(call.number(1));
         if (row >= left.size() || part >= left[row].size())
             return DISP_E_BADINDEX;
         return call.give(variant(std::wstring_view(left[row][part])));
     }},
    {L"Needed",
     [](RebootObject& reboot, const dispatch_call& call) { return call.give(variant(NeedsRestart(reboot.core()))); }},
    {L"PutString",
     [](RebootObject& reboot, const dispatch_call& call) {
         return reboot.PutString(call.text(0).get(), call.text(1).get(), call.text(2).get());
     }},
};

HRESULT RebootObject::PutString(BSTR first, BSTR second, BSTR third)
{
    return Call("ISetupReboot.PutString", first, second, third)([&] {
        core().rebootTexts.push_back({TextOf(first), TextOf(second), TextOf(third)});
        return S_OK;
    });
}

HRESULT PropertyBag::Read(BSTR name, VARIANT* value)
{
    return Call("ISetupPropertyBag.Read", name)([&] {
        if (!value)
            return E_POINTER;
        const auto found = m_values.find(Upper(TextOf(name)));
        return found == m_values.end() ? E_INVALIDARG : VariantCopy(value, const_cast<VARIANT*>(&found->second.get()));
    });
}

HRESULT PropertyBag::Write(BSTR name, VARIANT* value)
{
    return Call("ISetupPropertyBag.Write", name)([&] {
        if (!value)
            return E_POINTER;
        variant copy;
        const HRESULT code = VariantCopyInd(copy.put(), value);
        if (SUCCEEDED(code))
            m_values[Upper(TextOf(name))] = std::move(copy);
        return code;
    });
}

} // namespace vh::engine
