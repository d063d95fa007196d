// Reads a setup in one file.
#pragma once

#include <functional>
#include <map>
#include <memory>

#include "../files.h"
#include "pack_format.h"

namespace vh::engine {

enum class PackRole {
    library, // the host's own: unpacked beside it
    setup,   // of the setup folder, but no payload: unpacked before the run
    payload, // read from the pack when it is installed
};
inline constexpr const char* pack_role_names[] = {"library", "setup", "payload"};

class Pack;

struct PackedFile {
    std::wstring path; // below the setup folder, with backslashes
    PackRole role = PackRole::setup;
    uint64_t size = 0;
    uint64_t time = 0;
    DWORD attributes = 0;
    std::wstring version;
    std::wstring digest; // SHA-256 of the content
    // Where its bytes are, and how many; fewer than its size are deflated.
    uint64_t at = 0;
    uint64_t stored = 0;
    uint32_t sum = 0; // CRC-32 of the stored bytes
    const Pack* of = nullptr;
};

// The whole index, as the file holds it.
std::string PackIndexText(const std::vector<PackedFile>& files);

class Pack {
public:
    // Null for a program without a pack. Throws engine_error for one that is cut or changed.
    static std::shared_ptr<const Pack> Open(const std::wstring& file);

    const std::wstring& File() const { return m_file; }
    const std::vector<PackedFile>& Files() const { return m_files; }
    // The program in front, without the pack.
    uint64_t ProgramSize() const { return m_programSize; }

    // Payload by its path below the setup folder, and what lies in a folder of it.
    const PackedFile* Find(const std::wstring& path) const;
    std::vector<Entry> List(const std::wstring& folder) const;

    // Throws when the stored bytes are not those that were packed; reads them all, and calls `between` from time to
    // time, which may throw to stop.
    void Check(const PackedFile& file, const std::function<void()>& between) const;
    // Writes a file with its time. Throws engine_error.
    void Unpack(const PackedFile& file, const std::wstring& target) const;
    // The program as it was before it was packed.
    void UnpackProgram(const std::wstring& target) const;

private:
    Pack() = default;
    void ReadIndex(const PackHeader& header);

    std::wstring m_file;
    uint64_t m_programSize = 0;
    std::vector<PackedFile> m_files;
    std::map<std::wstring, const PackedFile*> m_byPath;              // payload, in upper case
    std::map<std::wstring, std::map<std::wstring, Entry>> m_folders; // by folder in upper case, then by name
};

// What is read from a file of the payload, whether it lies in a folder or in a pack.
class PayloadReader {
public:
    // `packed` is null for a file of its own; one of a pack is read from there. Throws engine_error.
    PayloadReader(const std::wstring& source, const PackedFile* packed);
    ~PayloadReader();
    PayloadReader(const PayloadReader&) = delete;
    PayloadReader& operator=(const PayloadReader&) = delete;

    // Fewer bytes than there is room for only at the end. Throws engine_error.
    std::size_t Read(std::span<std::byte> room);

private:
    class Inflater;
    std::size_t ReadStored(std::span<std::byte> room);

    std::wstring m_source;
    unique_file m_file;
    uint64_t m_left; // stored bytes to come
    std::unique_ptr<Inflater> m_inflater;
};

} // namespace vh::engine
