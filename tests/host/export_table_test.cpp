// Export tables of sound and of damaged images.
#include "../support/version_file.h"
#include "tools/export_table.h"

namespace tools {

namespace {

// A small image with two exports; their names come last.
constexpr std::size_t second_name = vh::test::section_offset + sizeof(IMAGE_EXPORT_DIRECTORY) + 18;
std::vector<std::byte> SmallImage()
{
    constexpr uint32_t behind = vh::test::section_address + sizeof(IMAGE_EXPORT_DIRECTORY);
    IMAGE_EXPORT_DIRECTORY exports{};
    exports.Base = 3;
    exports.NumberOfNames = 2;
    exports.AddressOfNames = behind;
    exports.AddressOfNameOrdinals = behind + 8;
    const uint32_t names[] = {behind + 12, behind + 18};
    const uint16_t numbers[] = {0, 4};
    std::string section = vh::test::BytesOf(exports) + vh::test::BytesOf(names) + vh::test::BytesOf(numbers);
    section.append("First\0_Second", 14);
    const std::string image = vh::test::ImageOf(IMAGE_DIRECTORY_ENTRY_EXPORT, section);
    const auto bytes = std::as_bytes(std::span(image));
    return {bytes.begin(), bytes.end()};
}

} // namespace

TEST(ExportTable, GivesNamesWithTheirNumbers)
{
    const std::map<std::string, uint32_t> wanted{{"First", 3}, {"_Second", 7}};
    EXPECT_EQ(ReadExportTable(SmallImage()), wanted);
}

TEST(ExportTable, RejectsEveryImageThatIsCutBeforeItsNames)
{
    const auto image = SmallImage();
    for (std::size_t size = 0; size < second_name; ++size)
        EXPECT_THROW(ReadExportTable(std::span(image).first(size)), std::runtime_error) << size;
}

TEST(ExportTable, StaysInsideTheImageWhateverItsBytesSay)
{
    for (std::size_t offset = 0; offset < second_name; ++offset) {
        for (const int value : {0x00, 0x7F, 0xFF}) {
            auto image = SmallImage();
            image[offset] = std::byte{static_cast<unsigned char>(value)};
            try {
                for (const auto& [name, number] : ReadExportTable(image))
                    EXPECT_LE(name.size(), image.size());
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
