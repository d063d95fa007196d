// Export tables of sound and of damaged images.
#include "../support/test.h"
#include "tools/export_table.h"

namespace tools {

namespace {

// A small image: headers, one section at address 0x1000 that lies at offset 0x400, two exports.
struct SmallImage {
    std::vector<std::byte> bytes = std::vector<std::byte>(0x600);

    template <class Record>
    void Put(std::size_t offset, const Record& record)
    {
        std::memcpy(bytes.data() + offset, &record, sizeof record);
    }

    SmallImage()
    {
        IMAGE_DOS_HEADER dos{};
        dos.e_magic = IMAGE_DOS_SIGNATURE;
        dos.e_lfanew = 0x80;
        Put(0, dos);
        IMAGE_NT_HEADERS64 header{};
        header.Signature = IMAGE_NT_SIGNATURE;
        header.FileHeader.NumberOfSections = 1;
        header.FileHeader.SizeOfOptionalHeader = sizeof(IMAGE_OPTIONAL_HEADER64);
        header.OptionalHeader.Magic = IMAGE_NT_OPTIONAL_HDR64_MAGIC;
        header.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT].VirtualAddress = 0x1000;
        Put(0x80, header);
        IMAGE_SECTION_HEADER section{};
        section.VirtualAddress = 0x1000;
        section.SizeOfRawData = 0x200;
        section.PointerToRawData = 0x400;
        Put(0x80 + sizeof header, section);
        IMAGE_EXPORT_DIRECTORY exports{};
        exports.Base = 3;
        exports.NumberOfNames = 2;
        exports.AddressOfNames = 0x1040;
        exports.AddressOfNameOrdinals = 0x1050;
        Put(0x400, exports);
        Put(0x440, std::uint32_t{0x1060});
        Put(0x444, std::uint32_t{0x1068});
        Put(0x450, std::uint16_t{0});
        Put(0x452, std::uint16_t{4});
        std::memcpy(bytes.data() + 0x460, "First", 6);
        std::memcpy(bytes.data() + 0x468, "_Second", 8);
    }
};

} // namespace

TEST(ExportTable, GivesNamesWithTheirNumbers)
{
    const std::map<std::string, uint32_t> wanted{{"First", 3}, {"_Second", 7}};
    EXPECT_EQ(ReadExportTable(SmallImage().bytes), wanted);
}

TEST(ExportTable, RejectsEveryImageThatIsCutBeforeItsNames)
{
    const SmallImage image;
    for (std::size_t size = 0; size < 0x468; ++size)
        EXPECT_THROW(ReadExportTable(std::span(image.bytes).first(size)), std::runtime_error) << size;
}

TEST(ExportTable, StaysInsideTheImageWhateverItsBytesSay)
{
    for (std::size_t offset = 0; offset < 0x460; ++offset) {
        for (const int value : {0x00, 0x7F, 0xFF}) {
            SmallImage image;
            image.bytes[offset] = std::byte{static_cast<unsigned char>(value)};
            try {
                for (const auto& [name, number] : ReadExportTable(image.bytes))
                    EXPECT_LE(name.size(), image.bytes.size());
            } catch (const std::runtime_error&) {
                // A message is the other good answer.
            }
        }
    }
}

TEST(ExportTable, ReadsDefinitionFilesAndRejectsLinesWithoutNumber)
{
    const std::map<std::string, uint32_t> wanted{{"A", 1}, {"_B", 20}};
    EXPECT_EQ(ReadDefinitionFile("LIBRARY X\r\nEXPORTS\r\n    A @1\r\n    _B @20\r\n"), wanted);
    EXPECT_THROW(ReadDefinitionFile("A @1\n"), std::runtime_error);
    EXPECT_THROW(ReadDefinitionFile("EXPORTS\nA 1\n"), std::runtime_error);
    EXPECT_THROW(ReadDefinitionFile("EXPORTS\nA @x\n"), std::runtime_error);
}

} // namespace tools
