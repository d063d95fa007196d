// Whole files as bytes, and plain output.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "scriptdata/unique.h"

namespace tools {

// Open for reading while others write to it, and even delete it. The last error tells why it is empty.
vh::unique_file OpenShared(const std::wstring& file);

// From an offset to the end. Throws std::runtime_error that names the file and the reason.
std::vector<std::byte> ReadBytes(const std::wstring& file, uint64_t offset = 0);

// Throws std::runtime_error when not all could be written.
void WriteBytes(HANDLE handle, const std::wstring& name, std::string_view bytes);

// The file is whole or as it was before. Throws std::runtime_error; without `replace` also when the file is there.
void SaveFile(const std::wstring& path, std::string_view bytes, bool replace = true);

// The error that names a file and the reason.
[[noreturn]] void ThrowFor(const std::wstring& file, unsigned long code);

} // namespace tools
