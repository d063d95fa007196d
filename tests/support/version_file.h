// Small Windows images whose version resource is put together by the test, sound or not.
#pragma once

#include "test.h"

namespace vh::test {

// One block of a version resource, with the lengths that belong to it.
struct VersionBlock {
    std::wstring key;
    std::string value;
    std::vector<VersionBlock> children;
    // Added to what the block says of its value's length.
    int lie = 0;

    std::string Bytes() const
    {
        std::string bytes(6, '\0');
        bytes.append(reinterpret_cast<const char*>(key.c_str()), (key.size() + 1) * sizeof(wchar_t));
        Align(bytes);
        bytes += value;
        for (const VersionBlock& child : children) {
            Align(bytes);
            bytes += child.Bytes();
        }
        const auto length = static_cast<uint16_t>(bytes.size());
        const auto value_length = static_cast<uint16_t>(static_cast<int>(value.size()) + lie);
        std::memcpy(bytes.data(), &length, sizeof(length));
        std::memcpy(bytes.data() + 2, &value_length, sizeof(value_length));
        return bytes;
    }

private:
    static void Align(std::string& bytes) { bytes.resize((bytes.size() + 3) & ~std::size_t{3}); }
};

template <class Record>
std::string BytesOf(const Record& record)
{
    return {reinterpret_cast<const char*>(&record), sizeof(record)};
}

inline std::string FixedPart(uint32_t high, uint32_t low)
{
    VS_FIXEDFILEINFO fixed{};
    fixed.dwSignature = VS_FFI_SIGNATURE;
    fixed.dwStrucVersion = VS_FFI_STRUCVERSION;
    fixed.dwFileVersionMS = high;
    fixed.dwFileVersionLS = low;
    return BytesOf(fixed);
}

// The translations' block, as it stands in a resource.
inline VersionBlock Translations(std::string value, int lie = 0)
{
    return {L"VarFileInfo", "", {{L"Translation", std::move(value), {}, lie}}};
}

// An image with one section, which lies at this address and offset and is what the directory of that number leads to.
constexpr uint32_t section_address = 0x1000, section_offset = 0x200;
inline std::string ImageOf(int directory, std::string section)
{
    section.resize((section.size() + 0x1FF) & ~std::size_t{0x1FF});
    const auto size = static_cast<DWORD>(section.size());
    IMAGE_DOS_HEADER dos{};
    dos.e_magic = IMAGE_DOS_SIGNATURE;
    dos.e_lfanew = sizeof(dos);
    IMAGE_NT_HEADERS64 header{};
    header.Signature = IMAGE_NT_SIGNATURE;
    header.FileHeader.Machine = IMAGE_FILE_MACHINE_AMD64;
    header.FileHeader.NumberOfSections = 1;
    header.FileHeader.SizeOfOptionalHeader = sizeof(IMAGE_OPTIONAL_HEADER64);
    header.FileHeader.Characteristics = IMAGE_FILE_EXECUTABLE_IMAGE | IMAGE_FILE_DLL;
    auto& optional = header.OptionalHeader;
    optional.Magic = IMAGE_NT_OPTIONAL_HDR64_MAGIC;
    optional.ImageBase = 0x180000000;
    optional.SectionAlignment = 0x1000;
    optional.FileAlignment = 0x200;
    optional.MajorSubsystemVersion = 6;
    optional.Subsystem = IMAGE_SUBSYSTEM_WINDOWS_GUI;
    optional.SizeOfHeaders = section_offset;
    optional.SizeOfImage = section_address + ((size + 0xFFF) & ~DWORD{0xFFF});
    optional.NumberOfRvaAndSizes = IMAGE_NUMBEROF_DIRECTORY_ENTRIES;
    optional.DataDirectory[directory] = {section_address, size};
    IMAGE_SECTION_HEADER entry{};
    std::memcpy(entry.Name, ".test", 5);
    entry.Misc.VirtualSize = entry.SizeOfRawData = size;
    entry.VirtualAddress = section_address;
    entry.PointerToRawData = section_offset;
    entry.Characteristics = IMAGE_SCN_CNT_INITIALIZED_DATA | IMAGE_SCN_MEM_READ;
    std::string image = BytesOf(dos) + BytesOf(header) + BytesOf(entry);
    image.resize(section_offset);
    return image + section;
}

// A resource-only image with these bytes as its version resource.
inline std::string ImageWithVersion(const std::string& resource)
{
    // Three levels of folders (type, name, language), each with one entry, and the leaf that they lead to.
    constexpr uint32_t folder = sizeof(IMAGE_RESOURCE_DIRECTORY) + sizeof(IMAGE_RESOURCE_DIRECTORY_ENTRY);
    constexpr uint32_t data = 3 * folder + sizeof(IMAGE_RESOURCE_DATA_ENTRY);
    const uint32_t ids[] = {16, VS_VERSION_INFO, 1033};
    std::string section;
    for (uint32_t level = 0; level < 3; ++level) {
        IMAGE_RESOURCE_DIRECTORY directory{};
        directory.NumberOfIdEntries = 1;
        const uint32_t next = (level + 1) * folder;
        const uint32_t entry[] = {ids[level], level < 2 ? next | IMAGE_RESOURCE_DATA_IS_DIRECTORY : next};
        section += BytesOf(directory) + BytesOf(entry);
    }
    section += BytesOf(IMAGE_RESOURCE_DATA_ENTRY{section_address + data, static_cast<DWORD>(resource.size()), 0, 0});
    return ImageOf(IMAGE_DIRECTORY_ENTRY_RESOURCE, section + resource);
}

} // namespace vh::test
