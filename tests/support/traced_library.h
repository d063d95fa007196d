// A second copy of VHRT.dll, loaded while the trace switch is set: a trace of its own for one test.
#pragma once

#include "../../diagnostics/trace_record.h"
#include "../../exports/vhrt.h"
#include "test.h"

namespace vh::test {

class TracedLibrary : Pinned {
public:
    // The values of the switch; an empty path leaves "FileNamePath" out.
    explicit TracedLibrary(const std::wstring& trace_path, bool on = true)
    {
        static int count = 0;
        const std::wstring copy = m_folder / (L"traced" + std::to_wstring(++count) + L".dll");
        std::filesystem::copy_file(Beside(L"VHRT.dll"), copy);
        if (on) {
            HKEY key = nullptr;
            RegCreateKeyExW(HKEY_CURRENT_USER, L"VHlogit", 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr);
            if (!trace_path.empty())
                RegSetValueExW(key, L"FileNamePath", 0, REG_SZ, reinterpret_cast<const BYTE*>(trace_path.c_str()),
                               static_cast<DWORD>((trace_path.size() + 1) * sizeof(wchar_t)));
            RegCloseKey(key);
        }
        m_library = LoadLibraryW(copy.c_str());
        RegDeleteTreeW(HKEY_CURRENT_USER, L"VHlogit");
    }
    ~TracedLibrary() { Unload(); }

    void Unload()
    {
        if (m_library)
            FreeLibrary(m_library);
        m_library = nullptr;
    }

    HMODULE module() const { return m_library; }
    template <class Function>
    Function* Get(Function*, const char* name) const
    {
        return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(m_library, name)));
    }

private:
    TempFolder m_folder;
    HMODULE m_library = nullptr;
};

// The text of a trace file; `records` counts its records. A damaged file ends the text with "<damaged>".
inline std::string DecodedTrace(const std::wstring& path, int* records = nullptr)
{
    const std::string bytes = BytesOf(path);
    trace_reader reader(std::as_bytes(std::span(bytes)));
    std::string text;
    std::span<const std::byte> payload;
    for (;;) {
        const trace_status status = reader.next(payload);
        if (status == trace_status::end)
            return text;
        if (status != trace_status::record)
            return text + "<damaged>";
        std::string part(reinterpret_cast<const char*>(payload.data()), payload.size());
        TraceDescramble(std::as_writable_bytes(std::span(part)));
        text += part;
        if (records)
            ++*records;
    }
}

} // namespace vh::test

// Gets an export of a library under its own name.
#define VHRT_GET(library, name) (library).Get(&name, #name)

namespace vh::test {

// What a traced run writes of the calls that `body` makes with a library and a context of its own.
template <class Body>
std::string TracedCalls(ISetupHost* host, IServiceProvider* services, Body&& body)
{
    const TempFolder folder;
    const std::wstring path = folder / L"t.bin";
    {
        const TracedLibrary library(path);
        ObjectContext* context = VHRT_GET(library, __CreateObjectContext)(host, services);
        body(library, context);
        VHRT_GET(library, __ReleaseObjectContext)(context);
    }
    const std::string text = DecodedTrace(path);
    const std::size_t begin = text.find("VHFuncBegin");
    return begin == text.npos ? text : text.substr(begin, text.find("VHSetupInit", begin) - begin);
}

// Results as most families show them.
inline const char* const success = "Success\t\t";
inline const char* const failure = "Failure\t\tError=0xffffffff\t";

// A call's records; without a result there is no end record. The first field of an end may stand behind a tab more.
inline std::string Record(const std::string& name, const std::string& fields, const char* result = nullptr)
{
    return "VHFuncBegin|" + name + "|" + fields + "\r\n" +
           (result ? "VHFuncEnd|" + name + "|Result=" + result + fields + "\r\n" : "");
}

} // namespace vh::test
