// Exported functions on versions.
#include "vhrt/versions.h"

#include "../diagnostics/trace.h"
#include "../diagnostics/trace_formats.h"
#include "../files/exists.h"
#include "../runtime/context.h"
#include "../runtime/frame.h"
#include "../scriptdata/format.h"
#include "../scriptdata/results.h"
#include "../system/version_info.h"
#include "vhrt/file_copy.h"
#include "vhrt/lists.h"

namespace {

constexpr int32_t no_such_file = -2;
constexpr int32_t no_version = -8;

// "65535.65535.65535.65535" and its end: the size of the caller's buffer too.
constexpr std::size_t version_units = 24;

constexpr const wchar_t* failure_format = L"Result=%s\t\tError=0x%08lx\tFileName=%s";
// What the buffer holds on entry is shown up to its size.
constexpr vh::TraceFormats version_formats = {L"FileName=%s\tFileVersion=%.23s", failure_format,
                                              L"Result=%s\tFileName=%s\tFileVersion=%s"};
constexpr vh::TraceFormats languages_formats = {L"FileName=%s", failure_format, L"Result=%s\tFileName=%s"};

// A path that can't be asked about is a path to nothing.
bool Exists(const wchar_t* path)
{
    try {
        return vh::exists(path, vh::exists_file | vh::exists_directory | vh::exists_url | vh::exists_raise);
    } catch (const vh::win32_exception&) {
        return false;
    }
}

int32_t Load(const wchar_t* path, vh::version_info& info)
{
    if (!Exists(path))
        return no_such_file;
    return info.load(path) ? 0 : no_version;
}

int32_t AddTranslations(ObjectContext& context, const vh::version_info& info, ListHandle list)
{
    for (const uint32_t word : info.translations()) {
        const auto value = static_cast<int32_t>(word);
        if (const int32_t code = context.lists.Find(list).AddItem(&value, ListAddAfter); code < 0)
            return code;
    }
    return 0;
}

} // namespace

int32_t VerGetFileVersion(const wchar_t* path, wchar_t* version)
{
    const vh::TracedCall call(L"VerGetFileVersion", version_formats.begin, path, version);
    vh::version_info info;
    wchar_t text[version_units] = L"";
    const int32_t code = Load(path, info);
    if (code == 0) {
        vh::FormatText(text, std::size(text), L"%d.%d.%d.%d", HIWORD(info.dwFileVersionMS),
                       LOWORD(info.dwFileVersionMS), HIWORD(info.dwFileVersionLS), LOWORD(info.dwFileVersionLS));
        vh::CopyOutUnlimited(text, version);
    }
    return call.End(code, version_formats.failure, version_formats.success, path, text);
}

int32_t _VerGetFileLanguages(ObjectContext* context, const wchar_t* path, ListHandle list)
{
    const vh::TracedCall call(L"VerGetFileLanguages", languages_formats.begin, path);
    return vh::Framed(context, [&](ObjectContext& c) {
        vh::version_info info;
        int32_t code = Load(path, info);
        if (code == 0)
            code = AddTranslations(c, info, list);
        return call.End(code, languages_formats.failure, languages_formats.success, path);
    });
}

int32_t _VerUpdateFile(ObjectContext* context, const wchar_t* source, const wchar_t* target, int32_t flags,
                       wchar_t* buffer)
{
    if (const int32_t code = _FileCopy(context, source, target, flags); code != 0)
        return code;
    vh::CopyOutUnlimited(vh::View(target), buffer);
    return 0;
}

int32_t IsOSTypeNT()
{
    OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof(version);
    return GetVersionExW(&version) && version.dwPlatformId == VER_PLATFORM_WIN32_NT;
}
