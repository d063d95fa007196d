// Fingerprints of payload files.
#pragma once

#include <string>

namespace vh::engine {

struct PackedFile;

// Sixteen characters, each one byte of the digest. Throws engine_error when the file can't be read.
std::wstring Md5OfFile(const std::wstring& path, const PackedFile* packed = nullptr);

} // namespace vh::engine
