#include "skin_files.h"

#include "../scriptdata/bstr.h"
#include "../scriptdata/exception.h"
#include "../scriptdata/format.h"
#include "../scriptdata/path_text.h"

namespace vh {

namespace {

unique_file Open(const stringx& path, DWORD access, DWORD sharing, DWORD creation)
{
    return unique_file(
        CreateFileW(path.c_str(), access, sharing, nullptr, creation, FILE_ATTRIBUTE_TEMPORARY, nullptr));
}

// A name that leads somewhere else goes; what it led to stays.
unique_file MakeNew(const stringx& path)
{
    DeleteFileW(path.c_str());
    return Open(path, GENERIC_WRITE, 0, CREATE_NEW);
}

bool WriteAll(HANDLE file, std::span<const std::byte> bytes)
{
    DWORD written = 0;
    return WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
           written == bytes.size();
}

stringx Joined(const stringx& folder, std::wstring_view name)
{
    stringx path(folder);
    PathAppend(path, name);
    return path;
}

template <class Number>
stringx Numbered(const wchar_t* format, Number number)
{
    wchar_t name[32] = L"";
    FormatText(name, std::size(name), format, number);
    return name;
}

// In the code page of narrow texts, as the skin has them.
std::string Narrow(std::wstring_view text)
{
    const int length = static_cast<int>(text.size());
    std::string narrow(
        static_cast<std::size_t>(WideCharToMultiByte(CP_ACP, 0, text.data(), length, nullptr, 0, nullptr, nullptr)),
        '\0');
    WideCharToMultiByte(CP_ACP, 0, text.data(), length, narrow.data(), static_cast<int>(narrow.size()), nullptr,
                        nullptr);
    return narrow;
}
std::wstring Wide(std::string_view text)
{
    const int length = static_cast<int>(text.size());
    std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, text.data(), length, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_ACP, 0, text.data(), length, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

} // namespace

stringx SkinTempFolder()
{
    wchar_t folder[MAX_PATH + 1] = L"";
    if (const DWORD length = GetTempPathW(MAX_PATH, folder); length > 0 && length < MAX_PATH) {
        // Somebody else's file of that name stays, and proves as much.
        const unique_file proof(CreateFileW(Joined(folder, L"123.tmp").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                            FILE_FLAG_DELETE_ON_CLOSE, nullptr));
        if (proof || GetLastError() == ERROR_FILE_EXISTS)
            return folder;
    }
    GetCurrentDirectoryW(MAX_PATH, folder);
    return Joined(folder, L"temp");
}

skin_copy::skin_copy(const stringx& file)
{
    constexpr std::size_t block = 10000;
    const unique_file from = Open(file, GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING);
    if (!from)
        return;
    // Another setup may hold the plain name.
    const stringx folder = SkinTempFolder();
    stringx path = Joined(folder, L"vhpro7");
    unique_file to = MakeNew(path);
    if (!to) {
        path = Joined(folder, Numbered(L"vhpro7.%lu", GetCurrentProcessId()).view());
        to = MakeNew(path);
    }
    if (!to)
        return;
    m_path = std::move(path);
    std::byte bytes[block];
    for (DWORD read = block; read == block;) {
        if (!ReadFile(from.get(), bytes, block, &read, nullptr) || !WriteAll(to.get(), {bytes, read})) {
            to.reset();
            DeleteFileW(std::exchange(m_path, {}).c_str());
            return;
        }
    }
}

skin_copy::~skin_copy()
{
    if (!m_path.empty())
        DeleteFileW(m_path.c_str());
}

skin_file::skin_file(const stringx& path)
{
    const unique_file file = Open(path, GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING);
    LARGE_INTEGER size{};
    if (!file || !GetFileSizeEx(file.get(), &size))
        return;
    const unique_handle mapping(CreateFileMappingW(file.get(), nullptr, PAGE_WRITECOPY, 0, 0, nullptr));
    m_view = mapping ? MapViewOfFile(mapping.get(), FILE_MAP_COPY, 0, 0, 0) : nullptr;
    m_size = m_view ? static_cast<std::size_t>(size.QuadPart) : 0;
}

skin_file::~skin_file()
{
    if (m_view)
        UnmapViewOfFile(m_view);
}

skin_text_file::~skin_text_file()
{
    if (!m_path.empty())
        DeleteFileW(m_path.c_str());
}

void skin_text_file::Write(std::span<const std::byte> text)
{
    // A second text replaces the first.
    if (!m_path.empty())
        DeleteFileW(std::exchange(m_path, {}).c_str());
    auto number = static_cast<uint16_t>(GetTickCount());
    for (int tries = 0; tries < 65535; ++tries) {
        const stringx path = Joined(m_directory, Numbered(L"%hx.rra", number++).view());
        const unique_file file = Open(path, GENERIC_WRITE, 0, CREATE_NEW);
        if (!file && GetLastError() == ERROR_FILE_EXISTS)
            continue;
        if (!file)
            throw win32_exception(GetLastError());
        m_path = path;
        if (!WriteAll(file.get(), text))
            throw win32_exception(GetLastError());
        return;
    }
    throw win32_exception(ERROR_FILE_EXISTS);
}

std::vector<std::string> skin_text_file::sections() const
{
    constexpr DWORD size = 3072;
    wchar_t names[size] = L"";
    std::vector<std::string> sections;
    if (m_path.empty())
        return sections;
    const DWORD length = GetPrivateProfileSectionNamesW(names, size, m_path.c_str());
    for (const wchar_t* name = names; name < names + length && *name; name += std::wcslen(name) + 1)
        sections.push_back(Narrow(name));
    return sections;
}

skin_reader skin_text_file::reader() const
{
    return [this](std::string_view section, std::string_view key, skin_form form) {
        const std::size_t size = RoomFor(form);
        std::wstring value(size, L'\0');
        const DWORD length = m_path.empty()
                                 ? 0
                                 : GetPrivateProfileStringW(Wide(section).c_str(), Wide(key).c_str(), L"", value.data(),
                                                            static_cast<DWORD>(size), m_path.c_str());
        return Narrow(std::wstring_view(value).substr(0, length));
    };
}

} // namespace vh
