#include "file_bytes.h"

#include <algorithm>
#include <stdexcept>

#include "host/text.h"

namespace tools {

void ThrowFor(const std::wstring& file, unsigned long code)
{
    throw std::runtime_error(host::Utf8(file + L": " + host::SystemText(code)));
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

} // namespace tools
