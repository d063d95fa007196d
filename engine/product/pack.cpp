#include "pack.h"

#include <algorithm>

#include <nlohmann/json.hpp>
#include <zlib.h>

#include "../sha256.h"

namespace vh::engine {

namespace {

using nlohmann::json;

constexpr DWORD block_size = 256 * 1024;
constexpr uint64_t largest_index = 256u << 20;

[[noreturn]] void ThrowDamaged(const std::wstring& file, const std::wstring& what)
{
    throw engine_error(HRESULT_FROM_WIN32(ERROR_FILE_CORRUPT), file, what);
}

unique_file OpenToRead(const std::wstring& file)
{
    unique_file opened(CreateFileW(LongPath(file).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                                   OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!opened)
        ThrowFileError(file, GetLastError());
    return opened;
}

void Seek(const unique_file& file, const std::wstring& name, uint64_t at)
{
    LARGE_INTEGER place{};
    place.QuadPart = static_cast<LONGLONG>(at);
    if (!SetFilePointerEx(file.get(), place, nullptr, FILE_BEGIN))
        ThrowFileError(name, GetLastError());
}

std::size_t ReadSome(const unique_file& file, const std::wstring& name, std::span<std::byte> room)
{
    DWORD got = 0;
    if (!ReadFile(file.get(), room.data(), static_cast<DWORD>(room.size()), &got, nullptr))
        ThrowFileError(name, GetLastError());
    return got;
}

uint64_t SizeOf(const unique_file& file, const std::wstring& name)
{
    LARGE_INTEGER size{};
    if (!GetFileSizeEx(file.get(), &size))
        ThrowFileError(name, GetLastError());
    return static_cast<uint64_t>(size.QuadPart);
}

std::wstring DigestOf(std::string_view bytes)
{
    Sha256 hash;
    hash.Add(std::as_bytes(std::span(bytes)));
    return hash.Finish();
}

PackRole RoleOf(const std::string& name)
{
    const auto* found = std::find(std::begin(pack_role_names), std::end(pack_role_names), name);
    if (found == std::end(pack_role_names))
        throw std::out_of_range(name);
    return static_cast<PackRole>(found - std::begin(pack_role_names));
}

PackedFile FileOf(const json& row)
{
    PackedFile file;
    file.path = ToWide(row.at("path").get<std::string>());
    file.role = RoleOf(row.at("role").get<std::string>());
    file.size = row.at("size").get<uint64_t>();
    file.time = row.at("time").get<uint64_t>();
    file.attributes = row.value("attributes", 0u);
    file.version = ToWide(row.value("version", ""));
    file.digest = ToWide(row.at("sha256").get<std::string>());
    file.at = row.at("at").get<uint64_t>();
    file.stored = row.at("stored").get<uint64_t>();
    file.sum = row.at("crc").get<uint32_t>();
    return file;
}

class Target {
public:
    explicit Target(const std::wstring& path)
        : m_path(path), m_file(CreateFileW(LongPath(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                           FILE_ATTRIBUTE_NORMAL, nullptr))
    {
        if (!m_file)
            ThrowFileError(path, L"can't unpack", GetLastError());
    }
    void Write(std::span<const std::byte> bytes)
    {
        DWORD put = 0;
        if (!WriteFile(m_file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &put, nullptr) ||
            put != bytes.size())
            ThrowFileError(m_path, L"can't unpack", put ? ERROR_DISK_FULL : GetLastError());
    }
    void SetTime(uint64_t time)
    {
        const FILETIME written{static_cast<DWORD>(time & 0xFFFFFFFF), static_cast<DWORD>(time >> 32)};
        SetFileTime(m_file.get(), nullptr, nullptr, &written);
    }

private:
    const std::wstring& m_path;
    unique_file m_file;
};

} // namespace

std::string PackIndexText(const std::vector<PackedFile>& files)
{
    json rows = json::array();
    for (const PackedFile& file : files) {
        json row{{"path", ToUtf8(file.path)},
                 {"role", pack_role_names[static_cast<int>(file.role)]},
                 {"size", file.size},
                 {"time", file.time},
                 {"sha256", ToUtf8(file.digest)},
                 {"at", file.at},
                 {"stored", file.stored},
                 {"crc", file.sum}};
        if (file.attributes)
            row["attributes"] = file.attributes;
        if (!file.version.empty())
            row["version"] = ToUtf8(file.version);
        rows.push_back(std::move(row));
    }
    return rows.dump();
}

std::shared_ptr<const Pack> Pack::Open(const std::wstring& path)
{
    const unique_file file = OpenToRead(path);
    std::array<std::byte, 4096> start{};
    const std::size_t got = ReadSome(file, path, start);
    const auto layout = LayoutOf(std::span(start).first(got));
    PackHeader header;
    if (!layout)
        return nullptr;
    Seek(file, path, layout->end);
    if (ReadSome(file, path, std::as_writable_bytes(std::span(&header, 1))) != sizeof header ||
        header.magic != pack_magic) {
        if (HasWindows(std::span(start).first(got), *layout))
            ThrowDamaged(path, L"the setup is cut or damaged: nothing is left of it behind the program");
        return nullptr;
    }
    const uint64_t size = SizeOf(file, path);
    if (header.end > size)
        ThrowDamaged(path, L"the setup is cut: " + std::to_wstring(header.end - size) + L" of its bytes are missing");
    if (header.indexAt < layout->end + sizeof header || header.indexAt > header.end || header.indexSize > largest_index)
        ThrowDamaged(path, L"the setup is damaged: its index lies outside of it");
    std::shared_ptr<Pack> pack(new Pack);
    pack->m_file = path;
    pack->m_programSize = layout->end;
    pack->ReadIndex(header);
    return pack;
}

void Pack::ReadIndex(const PackHeader& header)
{
    PackedFile index;
    index.at = header.indexAt;
    index.stored = header.end - header.indexAt;
    index.size = header.indexSize;
    std::string text(header.indexSize, '\0');
    PayloadReader reader(m_file, &index);
    const std::wstring wanted =
        ToHex({reinterpret_cast<const char*>(header.indexDigest.data()), header.indexDigest.size()});
    if (reader.Read(std::as_writable_bytes(std::span(text))) != text.size() || DigestOf(text) != wanted)
        ThrowDamaged(m_file, L"the setup is damaged: its index is not the one that was packed");
    try {
        for (const json& row : json::parse(text))
            m_files.push_back(FileOf(row));
    } catch (const std::exception&) {
        ThrowDamaged(m_file, L"the setup's index can't be read");
    }
    for (PackedFile& file : m_files) {
        file.of = this;
        if (!PathFault(file.path).empty() || file.at > header.indexAt || file.stored > header.indexAt - file.at)
            ThrowDamaged(m_file, L"the setup's index names what it can't hold: " + file.path);
        if (file.role != PackRole::payload)
            continue;
        m_byPath[Upper(file.path)] = &file;
        const FileFacts facts{file.attributes ? file.attributes : FILE_ATTRIBUTE_NORMAL, file.size, file.time};
        m_folders[Upper(FolderOf(file.path))][FileNameOf(file.path)] = {FileNameOf(file.path), facts};
        for (std::wstring at = FolderOf(file.path); !at.empty(); at = FolderOf(at))
            if (!m_folders[Upper(FolderOf(at))]
                     .try_emplace(FileNameOf(at), Entry{FileNameOf(at), {FILE_ATTRIBUTE_DIRECTORY}})
                     .second)
                break;
    }
}

const PackedFile* Pack::Find(const std::wstring& path) const
{
    const auto found = m_byPath.find(Upper(path));
    return found == m_byPath.end() ? nullptr : found->second;
}

std::vector<Entry> Pack::List(const std::wstring& folder) const
{
    std::vector<Entry> entries;
    if (const auto found = m_folders.find(Upper(folder)); found != m_folders.end())
        for (const auto& [name, entry] : found->second)
            entries.push_back(entry);
    return entries;
}

void Pack::Check(const PackedFile& packed, const std::function<void()>& between) const
{
    const unique_file file = OpenToRead(m_file);
    Seek(file, m_file, packed.at);
    const auto block = std::make_unique<std::byte[]>(block_size);
    uint32_t sum = 0;
    for (uint64_t left = packed.stored; left;) {
        const std::size_t want = static_cast<std::size_t>(std::min<uint64_t>(left, block_size));
        const std::size_t got = ReadSome(file, m_file, {block.get(), want});
        if (!got)
            break;
        sum = static_cast<uint32_t>(crc32(sum, reinterpret_cast<const Bytef*>(block.get()), static_cast<uInt>(got)));
        left -= got;
        between();
    }
    if (sum != packed.sum)
        ThrowDamaged(m_file, L"the setup is damaged: " + packed.path + L" is not what was packed");
}

void Pack::Unpack(const PackedFile& packed, const std::wstring& path) const
{
    MakeFolders(FolderOf(path));
    Target target(path);
    PayloadReader reader(m_file, &packed);
    Sha256 hash;
    const auto block = std::make_unique<std::byte[]>(block_size);
    uint64_t total = 0;
    for (std::size_t got = block_size; got == block_size && total <= packed.size; total += got) {
        got = reader.Read({block.get(), block_size});
        hash.Add({block.get(), got});
        target.Write({block.get(), got});
    }
    // What inflates beyond its size does not fill the drive.
    if (total != packed.size || hash.Finish() != packed.digest)
        ThrowDamaged(m_file, L"the setup is damaged: " + packed.path + L" is not what was packed");
    target.SetTime(packed.time);
}

void Pack::UnpackProgram(const std::wstring& path) const
{
    const unique_file file = OpenToRead(m_file);
    std::string program(static_cast<std::size_t>(m_programSize), '\0');
    const auto bytes = std::as_writable_bytes(std::span(program));
    if (ReadSome(file, m_file, bytes) != program.size())
        ThrowDamaged(m_file, L"the setup is cut");
    ShapeProgram(bytes, false);
    Target(path).Write(bytes);
}

// Inflates what comes from the stored bytes.
class PayloadReader::Inflater {
public:
    Inflater() : m_stored(std::make_unique<std::byte[]>(block_size))
    {
        if (inflateInit(&m_stream) != Z_OK)
            throw engine_error(E_OUTOFMEMORY, {}, L"no memory to inflate with");
    }
    ~Inflater() { inflateEnd(&m_stream); }
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;

    template <class ReadStored>
    std::size_t Read(std::span<std::byte> room, const std::wstring& source, ReadStored&& readStored)
    {
        m_stream.next_out = reinterpret_cast<Bytef*>(room.data());
        m_stream.avail_out = static_cast<uInt>(room.size());
        while (m_stream.avail_out && !m_ended) {
            if (!m_stream.avail_in) {
                m_stream.next_in = reinterpret_cast<Bytef*>(m_stored.get());
                m_stream.avail_in = static_cast<uInt>(readStored(std::span(m_stored.get(), block_size)));
            }
            const int code = inflate(&m_stream, Z_NO_FLUSH);
            m_ended = code == Z_STREAM_END;
            // Without any input left this is Z_BUF_ERROR.
            if (!m_ended && code != Z_OK)
                ThrowDamaged(source, L"the setup is damaged: it can't be inflated");
        }
        return room.size() - m_stream.avail_out;
    }

private:
    z_stream m_stream{};
    std::unique_ptr<std::byte[]> m_stored;
    bool m_ended = false;
};

PayloadReader::PayloadReader(const std::wstring& source, const PackedFile* packed)
    : m_source(packed && packed->of ? packed->of->File() : source), m_file(OpenToRead(m_source)),
      m_left(packed ? packed->stored : UINT64_MAX)
{
    if (!packed)
        return;
    Seek(m_file, m_source, packed->at);
    if (packed->stored != packed->size)
        m_inflater = std::make_unique<Inflater>();
}

PayloadReader::~PayloadReader() = default;

std::size_t PayloadReader::ReadStored(std::span<std::byte> room)
{
    const std::size_t want = static_cast<std::size_t>(std::min<uint64_t>(m_left, room.size()));
    const std::size_t got = want ? ReadSome(m_file, m_source, room.first(want)) : 0;
    m_left -= got;
    return got;
}

std::size_t PayloadReader::Read(std::span<std::byte> room)
{
    if (m_inflater)
        return m_inflater->Read(room, m_source, [this](std::span<std::byte> stored) { return ReadStored(stored); });
    return ReadStored(room);
}

} // namespace vh::engine
