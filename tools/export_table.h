// The export table of a 64-bit Windows image, read from the file without loading it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string>

namespace tools {

// Names with their ordinals. Throws std::runtime_error for bytes that are no such image.
std::map<std::string, uint32_t> ReadExportTable(std::span<const std::byte> image);

// The same from the text of a module-definition file, lines "Name @1" behind EXPORTS.
std::map<std::string, uint32_t> ReadDefinitionFile(const std::string& text);

} // namespace tools
