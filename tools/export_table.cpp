#include "export_table.h"

#include <algorithm>
#include <cstring>
#include <sstream>
#include <stdexcept>
#include <windows.h>

namespace tools {

namespace {

class Image {
public:
    explicit Image(std::span<const std::byte> bytes) : m_bytes(bytes) {}

    template <class Record>
    Record At(uint64_t offset) const
    {
        if (offset > m_bytes.size() || m_bytes.size() - offset < sizeof(Record))
            throw std::runtime_error("the image is cut off");
        Record record;
        std::memcpy(&record, m_bytes.data() + offset, sizeof record);
        return record;
    }

    // The file offset of an address in the loaded image.
    uint64_t OffsetOf(uint64_t address) const
    {
        const uint64_t header = At<IMAGE_DOS_HEADER>(0).e_lfanew;
        const auto file = At<IMAGE_FILE_HEADER>(header + 4);
        const uint64_t sections = header + 4 + sizeof file + file.SizeOfOptionalHeader;
        for (uint64_t i = 0; i < file.NumberOfSections; ++i) {
            const auto section = At<IMAGE_SECTION_HEADER>(sections + i * sizeof(IMAGE_SECTION_HEADER));
            if (address >= section.VirtualAddress && address - section.VirtualAddress < section.SizeOfRawData)
                return address - section.VirtualAddress + section.PointerToRawData;
        }
        throw std::runtime_error("an address of the image lies in no section");
    }

    std::string TextAt(uint64_t offset) const
    {
        if (offset >= m_bytes.size())
            throw std::runtime_error("the image is cut off");
        const auto* start = reinterpret_cast<const char*>(m_bytes.data() + offset);
        return std::string(start, strnlen(start, m_bytes.size() - offset));
    }

private:
    std::span<const std::byte> m_bytes;
};

} // namespace

std::map<std::string, uint32_t> ReadExportTable(std::span<const std::byte> bytes)
{
    const Image image(bytes);
    const auto dos = image.At<IMAGE_DOS_HEADER>(0);
    if (dos.e_magic != IMAGE_DOS_SIGNATURE || dos.e_lfanew < 0)
        throw std::runtime_error("not a Windows image");
    const auto header = image.At<IMAGE_NT_HEADERS64>(static_cast<uint64_t>(dos.e_lfanew));
    if (header.Signature != IMAGE_NT_SIGNATURE || header.OptionalHeader.Magic != IMAGE_NT_OPTIONAL_HDR64_MAGIC)
        throw std::runtime_error("not a 64-bit Windows image");
    const uint32_t directory = header.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT].VirtualAddress;
    std::map<std::string, uint32_t> table;
    if (directory == 0)
        return table;
    const auto exports = image.At<IMAGE_EXPORT_DIRECTORY>(image.OffsetOf(directory));
    for (uint64_t i = 0; i < exports.NumberOfNames; ++i) {
        const auto name = image.At<uint32_t>(image.OffsetOf(exports.AddressOfNames + 4 * i));
        const auto number = image.At<uint16_t>(image.OffsetOf(exports.AddressOfNameOrdinals + 2 * i));
        table[image.TextAt(image.OffsetOf(name))] = exports.Base + number;
    }
    return table;
}

std::map<std::string, uint32_t> ReadDefinitionFile(const std::string& text)
{
    std::map<std::string, uint32_t> table;
    std::istringstream lines(text);
    std::string name;
    std::string number;
    while (lines >> name && name != "EXPORTS") {
    }
    if (!lines)
        throw std::runtime_error("no definition file: there is no EXPORTS in it");
    while (lines >> name >> number) {
        if (number.size() < 2 || number[0] != '@' ||
            !std::all_of(number.begin() + 1, number.end(), [](char c) { return c >= '0' && c <= '9'; }))
            throw std::runtime_error("a line without a number: " + name + " " + number);
        table[name] = static_cast<uint32_t>(std::stoul(number.substr(1)));
    }
    return table;
}

} // namespace tools
