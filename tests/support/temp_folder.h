// A folder of its own for one test, removed with all that is in it.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <windows.h>

#include "pinned.h"

namespace vh::test {

inline std::string BytesOf(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class TempFolder : Pinned {
public:
    TempFolder()
    {
        static int count = 0;
        m_path = std::filesystem::temp_directory_path() /
                 (L"vhrt test " + std::to_wstring(GetCurrentProcessId()) + L"." + std::to_wstring(++count));
        std::filesystem::create_directories(m_path);
    }
    ~TempFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    const std::filesystem::path& path() const { return m_path; }
    std::wstring operator/(const std::wstring& name) const { return (m_path / name).wstring(); }

    std::ptrdiff_t Entries() const { return std::distance(std::filesystem::directory_iterator(m_path), {}); }

    // Makes a file with the bytes and gives its path.
    std::wstring Write(const std::wstring& name, std::string_view bytes) const
    {
        const std::filesystem::path file = m_path / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return file.wstring();
    }

    // Makes a file of zeros that takes no room, and gives its path.
    std::wstring Large(const std::wstring& name, int64_t size) const
    {
        const std::wstring path = Write(name, "");
        std::filesystem::resize_file(path, static_cast<std::uintmax_t>(size));
        return path;
    }

private:
    std::filesystem::path m_path;
};

} // namespace vh::test
