// Files with a private key (PVK), plain or encrypted by a password.
#pragma once

#include <optional>

#include "signed_file.h"

namespace vh {

struct pvk_file {
    static constexpr uint32_t magic = 0xB0B5F11E;
    static constexpr std::size_t header_size = 24;
    // In front of what is encrypted: kind, version, algorithm.
    static constexpr std::size_t blob_header_size = 8;
    static constexpr std::size_t algorithm_at = 4;

    bool encrypted;
    byte_span salt;
    byte_span key;
};

inline std::optional<pvk_file> ReadPvk(byte_span bytes)
{
    constexpr uint32_t private_key = 7;
    if (bytes.size() < pvk_file::header_size || ReadNumber(bytes, 0) != pvk_file::magic)
        return std::nullopt;
    const bool encrypted = ReadNumber(bytes, 12) != 0;
    const uint32_t salt = ReadNumber(bytes, 16);
    const uint32_t key = ReadNumber(bytes, 20);
    const byte_span rest = bytes.subspan(pvk_file::header_size);
    // Behind its header a key begins with the word that tells a decrypted one.
    if (salt > rest.size() || key > rest.size() - salt || key < pvk_file::blob_header_size + 4)
        return std::nullopt;
    const pvk_file read{encrypted, rest.first(salt), rest.subspan(salt, key)};
    if (std::to_integer<uint32_t>(read.key[0]) != private_key)
        return std::nullopt;
    return read;
}

// A wrong password leaves something else.
inline bool IsPrivateKey(byte_span key)
{
    constexpr uint32_t rsa_private = 0x32415352; // "RSA2"
    return key.size() >= pvk_file::blob_header_size + 4 && ReadNumber(key, pvk_file::blob_header_size) == rsa_private;
}

} // namespace vh
