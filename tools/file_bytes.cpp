#include "file_bytes.h"

#include <algorithm>
#include <stdexcept>

#include "diagnostics/file.h"
#include "host/text.h"
#include "scriptdata/exception.h"

namespace tools {

void ThrowFor(const std::wstring& file, unsigned long code)
{
    throw std::runtime_error(host::Utf8((file.empty() ? L"\"\"" : file) + L": " + host::SystemText(code)));
}

vh::unique_file OpenShared(const std::wstring& file)
{
    return vh::unique_file(CreateFileW(host::LongPath(file).c_str(), GENERIC_READ,
                                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                       FILE_ATTRIBUTE_NORMAL, nullptr));
}

std::vector<std::byte> ReadBytes(const std::wstring& file, uint64_t offset)
{
    const vh::unique_file handle = OpenShared(file);
    LARGE_INTEGER size{};
    LARGE_INTEGER start{};
    start.QuadPart = static_cast<LONGLONG>(offset);
    if (!handle || !GetFileSizeEx(handle.get(), &size) || !SetFilePointerEx(handle.get(), start, nullptr, FILE_BEGIN)) {
        const DWORD code = GetLastError();
        ThrowFor(file, code);
    }
    std::vector<std::byte> bytes(static_cast<std::size_t>(std::max<LONGLONG>(size.QuadPart - start.QuadPart, 0)));
    std::size_t done = 0;
    while (done < bytes.size()) {
        const auto wanted = static_cast<DWORD>(std::min<std::size_t>(bytes.size() - done, 1 << 30));
        DWORD read = 0;
        if (!ReadFile(handle.get(), bytes.data() + done, wanted, &read, nullptr)) {
            const DWORD code = GetLastError();
            ThrowFor(file, code);
        }
        if (read == 0)
            break;
        done += read;
    }
    bytes.resize(done);
    return bytes;
}

void WriteBytes(HANDLE handle, const std::wstring& name, std::string_view bytes)
{
    while (!bytes.empty()) {
        const auto wanted = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1 << 20));
        DWORD written = 0;
        if (!WriteFile(handle, bytes.data(), wanted, &written, nullptr)) {
            const DWORD code = GetLastError();
            ThrowFor(name, code);
        }
        bytes.remove_prefix(written);
    }
}

void SaveFile(const std::wstring& path, std::string_view bytes, bool replace)
{
    stringx temporary;
    try {
        temporary = vh::make_temp_name(path);
    } catch (const vh::win32_exception& failure) {
        ThrowFor(path, failure.code());
    }
    const auto fail = [&] {
        const DWORD code = GetLastError();
        DeleteFileW(temporary.c_str());
        ThrowFor(path, code);
    };
    try {
        const vh::unique_file made(CreateFileW(host::LongPath(std::wstring(temporary.view())).c_str(), GENERIC_WRITE, 0,
                                               nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!made)
            fail();
        WriteBytes(made.get(), path, bytes);
    } catch (const std::runtime_error&) {
        DeleteFileW(temporary.c_str());
        throw;
    }
    if (!MoveFileExW(temporary.c_str(), path.c_str(), replace ? DWORD{MOVEFILE_REPLACE_EXISTING} : 0))
        fail();
}

} // namespace tools
