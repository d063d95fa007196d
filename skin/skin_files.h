// The files around the loading of a skin: its container, a copy of it, and its text for the time of reading.
#pragma once

#include <span>
#include <utility>

#include "../scriptdata/stringx.h"
#include "../scriptdata/unique.h"
#include "skin_container.h"
#include "skin_text.h"

namespace vh {

// The folder for temporary files, if a file can be made there; else "temp" below the current one.
stringx SkinTempFolder();

// A copy of a file in that folder, over nothing that somebody else put there. It goes with this object.
class skin_copy {
public:
    skin_copy() = default;
    explicit skin_copy(const stringx& file);
    skin_copy(skin_copy&& other) noexcept { swap(other); }
    skin_copy& operator=(skin_copy&& other) noexcept
    {
        swap(other);
        return *this;
    }
    ~skin_copy();

    explicit operator bool() const { return !m_path.empty(); }
    const stringx& path() const { return m_path; }

private:
    void swap(skin_copy& other) { std::swap(m_path, other.m_path); }

    stringx m_path;
};

// A file in memory; what is written there does not reach it.
class skin_file {
public:
    explicit skin_file(const stringx& path);
    skin_file(const skin_file&) = delete;
    skin_file& operator=(const skin_file&) = delete;
    ~skin_file();

    explicit operator bool() const { return m_view != nullptr; }
    std::span<std::byte> bytes() const { return {static_cast<std::byte*>(m_view), m_size}; }

private:
    void* m_view = nullptr;
    std::size_t m_size = 0;
};

// The text as the system reads it: in a file of its own, which goes with this object.
class skin_text_file {
public:
    explicit skin_text_file(const stringx& directory) : m_directory(directory) {}
    skin_text_file(const skin_text_file&) = delete;
    skin_text_file& operator=(const skin_text_file&) = delete;
    ~skin_text_file();

    // Raises failure 80 when no name is free, and the system's error otherwise.
    void Write(std::span<const std::byte> text);
    std::vector<std::string> sections() const;
    skin_reader reader() const;

private:
    const stringx& m_directory;
    stringx m_path;
};

} // namespace vh
