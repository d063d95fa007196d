#include "log_object.h"

#include <algorithm>

namespace vh::engine {

namespace {

// Belong to one run: a later one must not get them back.
constexpr const wchar_t* passing_variables[] = {
    L"SRCDIR", L"ENGINEDIR", L"ENGINECOMMONDIR", L"SUPPORTDIR", L"SHAREDSUPPORTDIR", L"TEMPDIR", L"PACKAGE_LOCATION",
};

bool IsPassing(const std::wstring& name)
{
    return std::any_of(std::begin(passing_variables), std::end(passing_variables),
                       [&](const wchar_t* passing) { return SameText(name, passing); });
}

} // namespace

const dispatch_entry<LogObject> LogObject::names[3] = {
    {L"File",
     [](LogObject& object, const dispatch_call& call) {
         return call.give(variant(std::wstring_view(object.core().log->File())));
     },
     true},
    {L"Count",
     [](LogObject& object, const dispatch_call& call) {
         return call.give(variant(static_cast<long>(object.core().log->Records().size())));
     }},
    {L"Line",
     [](LogObject& object, const dispatch_call& call) {
         const auto& records = object.core().log->Records();
         const long number = call.number(0);
         if (number < 1 || number > static_cast<long>(records.size()))
             return DISP_E_BADINDEX;
         return call.give(variant(std::wstring_view(Readable(records[static_cast<std::size_t>(number - 1)]))));
     }},
};

void LogObject::SaveTexts(const std::wstring& name, const TextTable& texts)
{
    LogRecord record;
    record.kind = LogKind::texts;
    record.what = name;
    for (const auto& [key, variable] : texts.All())
        if (!IsPassing(variable.name))
            record.texts[variable.name] = variable.value;
    core().log->Append(std::move(record));
}

bool LogObject::LoadTexts(const std::wstring& name, TextTable& texts)
{
    const LogRecord* record = core().log->Newest(LogKind::texts, name);
    if (!record)
        return false;
    for (const auto& [key, value] : record->texts)
        texts.Set(key, value);
    return true;
}

const dispatch_entry<LogDatabase> LogDatabase::names[2] = {
    {L"Folder",
     [](LogDatabase& object, const dispatch_call& call) {
         return call.give(variant(std::wstring_view(FolderOf(object.core().log->File()))));
     },
     true},
    {L"Store", &GetProperty<&LogDatabase::GetStore, LogDatabase>},
};

HRESULT LogDatabase::GetStore(IUnknown** store)
{
    return Call("ISetupLogDB.GetStore")([&] {
        return GiveObject(store,
                          com_ptr<IUnknown>(static_cast<ISetupLog*>(make_object<LogObject>(shared_core()).get())));
    });
}

} // namespace vh::engine
