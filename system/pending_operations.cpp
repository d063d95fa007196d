#include "pending_operations.h"

#include <algorithm>
#include <optional>

#include "../scriptdata/exception.h"
#include "../scriptdata/format.h"
#include "../scriptdata/unique.h"
#include "pending_path.h"
#include "user_rights.h"

namespace vh {

namespace {

constexpr REGSAM key_access = 0x2001F;
constexpr const wchar_t* count_name = L"Count";
constexpr const wchar_t* source_name = L"source%d";
constexpr const wchar_t* target_name = L"dest%d";

HKEY Root()
{
    const bool machine = IsInLocalGroup(local_group::administrators, membership::granted) ||
                         IsInLocalGroup(local_group::power_users, membership::granted);
    return machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

// Result: 0 or the system's error.
LSTATUS Open(unique_key& key) { return RegOpenKeyExW(Root(), pending_operations_key, 0, key_access, key.put()); }

// The name of a value of the entry with this number.
struct value_name {
    value_name(const wchar_t* format, DWORD number) { FormatText(text, std::size(text), format, number); }
    wchar_t text[32];
};

std::optional<stringxi> ReadPath(HKEY key, const wchar_t* format, DWORD number)
{
    wchar_t text[longest_pending_path + 1];
    DWORD size = sizeof(text);
    DWORD type = 0;
    if (RegQueryValueExW(key, value_name(format, number).text, nullptr, &type, reinterpret_cast<BYTE*>(text), &size) ||
        type != REG_SZ)
        return {};
    const std::wstring_view read(text, size / sizeof(wchar_t));
    return stringxi(read.substr(0, read.find(L'\0')));
}

LSTATUS WritePath(HKEY key, const wchar_t* format, DWORD number, const wchar_t* path)
{
    const std::size_t size = (std::wcslen(path) + 1) * sizeof(wchar_t);
    return RegSetValueExW(key, value_name(format, number).text, 0, REG_SZ, reinterpret_cast<const BYTE*>(path),
                          static_cast<DWORD>(size));
}

DWORD ReadCount(HKEY key)
{
    DWORD count = 0;
    DWORD size = sizeof(count);
    const bool read =
        RegQueryValueExW(key, count_name, nullptr, nullptr, reinterpret_cast<BYTE*>(&count), &size) == ERROR_SUCCESS;
    return read && size == sizeof(count) ? count : 0;
}

struct entry : pending_operation {
    DWORD number = 0;
};

// The numbers of entries that have a source, by rising number. A count says nothing of how many there are, so the
// values are asked for.
std::vector<DWORD> NumbersOf(HKEY key)
{
    constexpr std::wstring_view prefix(source_name, std::wstring_view(source_name).size() - 2);
    std::vector<DWORD> numbers;
    wchar_t name[64];
    for (DWORD at = 0, size = std::size(name);; ++at, size = std::size(name)) {
        const LSTATUS error = RegEnumValueW(key, at, name, &size, nullptr, nullptr, nullptr, nullptr);
        if (error == ERROR_MORE_DATA)
            continue;
        if (error)
            break;
        const DWORD number = size > prefix.size() ? std::wcstoul(name + prefix.size(), nullptr, 10) : 0;
        if (stringxi(value_name(source_name, number).text) == name)
            numbers.push_back(number);
    }
    std::ranges::sort(numbers);
    return numbers;
}

// Those that can be read, in their order.
std::vector<entry> ReadEntries(HKEY key)
{
    const DWORD count = ReadCount(key);
    std::vector<entry> entries;
    for (const DWORD number : NumbersOf(key)) {
        const std::optional<stringxi> target = ReadPath(key, target_name, number);
        const std::optional<stringxi> source = ReadPath(key, source_name, number);
        if (number >= 1 && number <= count && target && source)
            entries.push_back({{*source, *target}, number});
    }
    return entries;
}

bool IsSame(const stringxi& one, const stringxi& other)
{
    return stringxi(PlainPath(one.view())) == stringxi(PlainPath(other.view()));
}

void Append(HKEY key, const wchar_t* source, const wchar_t* target)
{
    const DWORD number = ReadCount(key) + 1;
    if (number == 0 || WritePath(key, target_name, number, target) || WritePath(key, source_name, number, source))
        return;
    RegSetValueExW(key, count_name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof(number));
}

// Result: 0 or the system's error.
DWORD CarryOut(const pending_operation& operation)
{
    if (operation.target.empty()) {
        DeleteFileW(operation.source.c_str());
        return 0;
    }
    return MoveFileExW(operation.source.c_str(), operation.target.c_str(), MOVEFILE_REPLACE_EXISTING) ? 0
                                                                                                      : GetLastError();
}

} // namespace

void RecordPendingOperation(const wchar_t* source, const wchar_t* target)
{
    if (!source || !target)
        throw com_exception(E_FAIL);
    unique_key key;
    if (RegCreateKeyExW(Root(), pending_operations_key, 0, nullptr, 0, key_access, nullptr, key.put(), nullptr))
        return;
    for (const entry& one : ReadEntries(key.get())) {
        const bool on_target = IsSame(one.target, target);
        if (on_target && IsSame(one.source, source))
            return;
        if (on_target || IsSame(one.source, target)) {
            DeleteFileW(one.source.c_str());
            WritePath(key.get(), source_name, one.number, source);
            return;
        }
    }
    Append(key.get(), source, target);
}

void FindPendingOperation(const stringxi& target, stringxi& source)
{
    for (const pending_operation& one : ListPendingOperations())
        if (IsSame(one.target, target)) {
            source = one.source;
            return;
        }
}

void ForgetPendingOperations(const std::set<stringxi>& sources)
{
    unique_key key;
    if (Open(key))
        return;
    const std::vector<entry> entries = ReadEntries(key.get());
    std::set<stringxi> plain;
    for (const stringxi& source : sources)
        plain.emplace(PlainPath(source.view()));
    const auto is_on_source = [&](const entry& one) { return plain.contains(stringxi(PlainPath(one.source.view()))); };
    if (!entries.empty() && std::ranges::all_of(entries, is_on_source)) {
        ClearPendingOperations();
        return;
    }
    for (const entry& one : entries)
        if (is_on_source(one))
            for (const wchar_t* name : {source_name, target_name})
                RegDeleteValueW(key.get(), value_name(name, one.number).text);
}

HRESULT ApplyPendingOperations()
{
    unique_key key;
    if (const LSTATUS error = Open(key))
        return error == ERROR_FILE_NOT_FOUND ? S_OK : HRESULT_FROM_WIN32(static_cast<DWORD>(error));
    DWORD last = 0;
    for (const entry& one : ReadEntries(key.get()))
        if (const DWORD error = CarryOut(one))
            last = error;
    key.reset();
    ClearPendingOperations();
    return HRESULT_FROM_WIN32(last);
}

std::vector<pending_operation> ListPendingOperations()
{
    std::vector<pending_operation> operations;
    unique_key key;
    if (!Open(key))
        for (entry& one : ReadEntries(key.get()))
            operations.push_back(std::move(one));
    return operations;
}

LSTATUS ClearPendingOperations()
{
    const LSTATUS error = RegDeleteKeyW(Root(), pending_operations_key);
    return error == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : error;
}

} // namespace vh
