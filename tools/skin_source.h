// A skin as its parts: the files of a folder, or the entries of a container.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tools {

struct SkinEntry {
    std::string name;
    std::vector<std::byte> bytes;
};

struct SkinSource {
    // In the order of the container; of a folder by name, the text first.
    std::vector<SkinEntry> entries;
    // What keeps the whole from being a skin: a container that ends too early, folders in a folder. No line each.
    std::vector<std::string> faults;

    // Null without one.
    const SkinEntry* Text() const;
    const SkinEntry* Find(const std::string& name) const;
};

// Throws std::runtime_error for what can't be read.
SkinSource ReadSkin(const std::wstring& path);
// Scrambled, as the library reads it.
std::vector<std::byte> ContainerOf(const SkinSource& skin);

// A name from a file between quotes, fit for a console.
std::string ShownName(std::string_view name);
// Why a name can't be a file's in any folder, on any system: empty for one that can.
std::string FaultOfName(std::string_view name);

} // namespace tools
