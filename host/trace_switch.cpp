#include "trace_switch.h"

#include <stdexcept>
#include <vector>

#include "text.h"

namespace host {

namespace {

constexpr const wchar_t* switch_key = L"VHlogit";
constexpr const wchar_t* file_value = L"FileNamePath";
// What the switch was before, for the case that the run is killed: written before the switch is touched, and valid
// once it has its last value.
constexpr const wchar_t* note_key = L"Software\\VHSetup.TraceSwitch";
constexpr const wchar_t* former_value = L"Former";
constexpr const wchar_t* had_key_value = L"HadKey";
constexpr const wchar_t* ours_value = L"Ours";

struct Value {
    DWORD type = REG_NONE; // also of a value that is not there
    std::vector<BYTE> bytes;
    bool operator==(const Value&) const = default;
};

Value TextValue(const std::wstring& text)
{
    const auto* bytes = reinterpret_cast<const BYTE*>(text.c_str());
    return {REG_SZ, std::vector<BYTE>(bytes, bytes + (text.size() + 1) * sizeof(wchar_t))};
}

Value Read(HKEY key, const wchar_t* name)
{
    Value value;
    DWORD size = 0;
    if (RegQueryValueExW(key, name, nullptr, &value.type, nullptr, &size) != ERROR_SUCCESS)
        return {};
    value.bytes.resize(size);
    if (RegQueryValueExW(key, name, nullptr, &value.type, value.bytes.data(), &size) != ERROR_SUCCESS)
        return {};
    value.bytes.resize(size);
    return value;
}

void Require(LSTATUS code)
{
    if (code != ERROR_SUCCESS)
        throw std::runtime_error("the trace can't be turned on: " + Utf8(SystemText(static_cast<uint32_t>(code))));
}

void Write(HKEY key, const wchar_t* name, const Value& value)
{
    Require(RegSetValueExW(key, name, 0, value.type, value.bytes.data(), static_cast<DWORD>(value.bytes.size())));
}

vh::unique_key Make(const wchar_t* name, DWORD& disposition)
{
    vh::unique_key key;
    Require(RegCreateKeyExW(HKEY_CURRENT_USER, name, 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, key.put(),
                            &disposition));
    return key;
}

vh::unique_key Open(const wchar_t* name)
{
    vh::unique_key key;
    RegOpenKeyExW(HKEY_CURRENT_USER, name, 0, KEY_READ | KEY_WRITE, key.put());
    return key;
}

void TurnOn(const std::wstring& file)
{
    DWORD disposition = 0;
    const vh::unique_key note = Make(note_key, disposition);
    const vh::unique_key there = Open(switch_key);
    if (const Value former = there ? Read(there.get(), file_value) : Value(); former.type != REG_NONE)
        Write(note.get(), former_value, former);
    if (there)
        Write(note.get(), had_key_value, TextValue(L""));
    Write(note.get(), ours_value, TextValue(file));
    Write(Make(switch_key, disposition).get(), file_value, TextValue(file));
}

// A switch that somebody has set since stays as it is.
void PutBack()
{
    vh::unique_key note = Open(note_key);
    if (!note)
        return;
    const Value ours = Read(note.get(), ours_value);
    const Value former = Read(note.get(), former_value);
    const bool had_key = Read(note.get(), had_key_value).type != REG_NONE;
    vh::unique_key key = ours.type == REG_NONE ? vh::unique_key() : Open(switch_key);
    if (key) {
        const Value now = Read(key.get(), file_value);
        if (now == ours && former.type != REG_NONE)
            RegSetValueExW(key.get(), file_value, 0, former.type, former.bytes.data(),
                           static_cast<DWORD>(former.bytes.size()));
        else if (now == ours)
            RegDeleteValueW(key.get(), file_value);
        DWORD keys = 0, values = 0;
        RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr, nullptr,
                         nullptr, nullptr);
        key.reset();
        if (!had_key && !keys && !values)
            RegDeleteKeyW(HKEY_CURRENT_USER, switch_key);
    }
    note.reset();
    RegDeleteKeyW(HKEY_CURRENT_USER, note_key);
}

} // namespace

TraceSwitch::TraceSwitch(const std::wstring& file) : m_turn(CreateMutexW(nullptr, FALSE, L"Local\\VHSetup.TraceSwitch"))
{
    // A run that was killed in its turn has given the mutex up, and its note stays.
    WaitForSingleObject(m_turn.get(), INFINITE);
    try {
        PutBack();
        if (!file.empty())
            TurnOn(file);
    } catch (...) {
        PutBack();
        ReleaseMutex(m_turn.get());
        throw;
    }
}

TraceSwitch::~TraceSwitch()
{
    PutBack();
    ReleaseMutex(m_turn.get());
}

} // namespace host
