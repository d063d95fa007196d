#include "pack_command.h"

#include <algorithm>
#include <map>
#include <set>
#include <stdexcept>
#include <vector>

#include <windows.h>
#include <zlib.h>

#include "engine/product/pack.h"
#include "engine/product/product.h"
#include "engine/sha256.h"
#include "exit_codes.h"
#include "host/console.h"
#include "host/kept_host.h"
#include "host/text.h"

namespace tools {

namespace {

using namespace vh::engine;

constexpr std::size_t block_size = 256 * 1024;
// A program file can't be larger; its headers and the index need some room.
constexpr uint64_t largest_content = 0xF8000000;

// Writes the pack and knows where it stands.
class PackFile {
public:
    explicit PackFile(const std::wstring& path)
        : m_path(path), m_file(CreateFileW(LongPath(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                           FILE_ATTRIBUTE_NORMAL, nullptr))
    {
        if (!m_file)
            ThrowFileError(path, L"can't be written", GetLastError());
    }

    uint64_t At() const { return m_at; }
    void Write(std::span<const std::byte> bytes)
    {
        DWORD put = 0;
        if (!WriteFile(m_file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &put, nullptr) ||
            put != bytes.size())
            ThrowFileError(m_path, L"can't be written", put ? ERROR_DISK_FULL : GetLastError());
        m_at += bytes.size();
    }
    void GoTo(uint64_t at)
    {
        LARGE_INTEGER place{};
        place.QuadPart = static_cast<LONGLONG>(at);
        if (!SetFilePointerEx(m_file.get(), place, nullptr, FILE_BEGIN))
            ThrowFileError(m_path, L"can't be written", GetLastError());
        m_at = at;
    }
    void Cut()
    {
        if (!SetEndOfFile(m_file.get()))
            ThrowFileError(m_path, L"can't be written", GetLastError());
    }

private:
    const std::wstring& m_path;
    vh::unique_file m_file;
    uint64_t m_at = 0;
};

// Takes bytes in and hands them on deflated.
class Deflater {
public:
    explicit Deflater(Compression compression)
    {
        if (deflateInit(&m_stream, compression == Compression::fast ? Z_BEST_SPEED : Z_BEST_COMPRESSION) != Z_OK)
            throw std::bad_alloc();
    }
    ~Deflater() { deflateEnd(&m_stream); }
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;

    template <class Take>
    void Add(std::span<const std::byte> bytes, bool last, Take&& take)
    {
        m_stream.next_in = reinterpret_cast<Bytef*>(const_cast<std::byte*>(bytes.data()));
        m_stream.avail_in = static_cast<uInt>(bytes.size());
        do {
            m_stream.next_out = reinterpret_cast<Bytef*>(m_room.data());
            m_stream.avail_out = static_cast<uInt>(m_room.size());
            deflate(&m_stream, last ? Z_FINISH : Z_NO_FLUSH);
            take(std::span<const std::byte>(m_room).first(m_room.size() - m_stream.avail_out));
        } while (!m_stream.avail_out);
    }

private:
    z_stream m_stream{};
    std::vector<std::byte> m_room = std::vector<std::byte>(block_size);
};

struct Source {
    std::wstring path; // of the file to read
    PackedFile packed;
};

// All files below the folder, but links: a payload can't lie behind them.
void Collect(const std::wstring& folder, std::map<std::wstring, Source>& sources)
{
    std::vector<std::wstring> waiting{{}};
    while (!waiting.empty()) {
        const std::wstring below = std::move(waiting.back());
        waiting.pop_back();
        for (const Entry& entry : ReadFolder(JoinPath(folder, below))) {
            const std::wstring path = JoinPath(below, entry.name);
            if (entry.facts.folder()) {
                if (!(entry.facts.attributes & FILE_ATTRIBUTE_REPARSE_POINT))
                    waiting.push_back(path);
                continue;
            }
            Source source{JoinPath(folder, path), {}};
            if (const std::wstring fault = PathFault(path); !fault.empty())
                throw engine_error(E_INVALIDARG, source.path, L"can't be packed: its name " + fault);
            source.packed.path = path;
            source.packed.size = entry.facts.size;
            source.packed.time = entry.facts.time;
            source.packed.attributes =
                entry.facts.attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
            sources[Upper(path)] = std::move(source);
        }
    }
}

// Paths of the files, in upper case.
std::set<std::wstring> FilesBelow(const Item& top)
{
    std::set<std::wstring> files;
    std::vector<const Item*> waiting{&top};
    while (!waiting.empty()) {
        const Item* item = waiting.back();
        waiting.pop_back();
        for (const FileGroup& group : item->groups)
            for (const ProductFile& file : group.files)
                files.insert(Upper(file.source));
        for (const auto& child : item->children)
            waiting.push_back(child.get());
    }
    return files;
}

// In the order of their paths. What both a feature and the setup itself need is there twice.
std::vector<Source> SourcesOf(const std::wstring& folder)
{
    const auto product = ReadProduct(JoinPath(folder, L"product.json"));
    const std::set<std::wstring> payload = FilesBelow(product->data);
    const std::set<std::wstring> support = FilesBelow(product->support);
    std::map<std::wstring, Source> found;
    Collect(folder, found);
    std::vector<Source> sources;
    for (const wchar_t* name : host::kept_libraries) {
        const std::wstring path = JoinPath(host::ProgramFolder(), name);
        const FileFacts facts = FactsOf(path);
        if (!facts.file() && name == host::kept_libraries[0])
            throw engine_error(E_FAIL, path, L"is missing: no setup runs without it");
        if (!facts.file())
            continue;
        Source library{path, {}};
        library.packed.path = name;
        library.packed.role = PackRole::library;
        library.packed.size = facts.size;
        library.packed.time = facts.time;
        sources.push_back(std::move(library));
    }
    for (auto& [upper, source] : found) {
        const bool brought = payload.contains(Upper(source.path));
        if (!brought || support.contains(Upper(source.path)))
            sources.push_back(source);
        if (brought) {
            source.packed.role = PackRole::payload;
            source.packed.version = FileVersion(source.path);
            sources.push_back(std::move(source));
        }
    }
    return sources;
}

void Store(PackFile& pack, Source& source, Compression compression)
{
    PackedFile& packed = source.packed;
    packed.at = pack.At();
    const auto block = std::make_unique<std::byte[]>(block_size);
    const auto pass = [&](auto&& add) {
        PayloadReader reader(source.path, nullptr);
        uint64_t read = 0;
        Sha256 hash;
        packed.sum = 0;
        for (std::size_t got = block_size; got == block_size;) {
            got = reader.Read({block.get(), block_size});
            read += got;
            hash.Add({block.get(), got});
            add(std::span<const std::byte>(block.get(), got), got != block_size);
        }
        const FileFacts now = FactsOf(source.path);
        if (read != packed.size || now.size != packed.size || now.time != packed.time)
            throw engine_error(E_FAIL, source.path, L"changed while it was packed");
        packed.digest = hash.Finish();
    };
    const auto write = [&](std::span<const std::byte> bytes) {
        packed.sum = static_cast<uint32_t>(
            crc32(packed.sum, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size())));
        pack.Write(bytes);
    };
    if (compression != Compression::none && packed.size) {
        Deflater deflater(compression);
        pass([&](std::span<const std::byte> bytes, bool last) { deflater.Add(bytes, last, write); });
        packed.stored = pack.At() - packed.at;
        if (packed.stored < packed.size)
            return;
        // It does not get smaller.
        pack.GoTo(packed.at);
    }
    pass([&](std::span<const std::byte> bytes, bool) { write(bytes); });
    packed.stored = packed.size;
    pack.Cut();
}

void WriteIndex(PackFile& pack, const std::vector<Source>& sources, uint64_t headerAt)
{
    std::vector<PackedFile> files;
    for (const Source& source : sources)
        files.push_back(source.packed);
    const std::string text = PackIndexText(files);
    const auto bytes = std::as_bytes(std::span(text));
    PackHeader header;
    header.indexAt = pack.At();
    header.indexSize = text.size();
    Sha256 hash;
    hash.Add(bytes);
    const std::string digest = FromHex(hash.Finish());
    std::copy_n(reinterpret_cast<const std::byte*>(digest.data()), header.indexDigest.size(),
                header.indexDigest.begin());
    Deflater deflater(Compression::best);
    deflater.Add(bytes, true, [&](std::span<const std::byte> part) { pack.Write(part); });
    header.end = pack.At();
    pack.Cut();
    pack.GoTo(headerAt);
    pack.Write(std::as_bytes(std::span(&header, 1)));
}

// The host's program in front, as one with windows.
void WriteProgram(PackFile& pack)
{
    const std::wstring path = JoinPath(host::ProgramFolder(), host::kept_program);
    std::string program = ReadWhole(path, 256u << 20);
    const auto layout = LayoutOf(std::as_bytes(std::span(program)));
    if (!layout || layout->end > program.size())
        throw engine_error(E_FAIL, path, L"is no program that a setup can begin with");
    program.resize(static_cast<std::size_t>(layout->end));
    ShapeProgram(std::as_writable_bytes(std::span(program)), true);
    pack.Write(std::as_bytes(std::span(program)));
}

void WritePack(const PackOptions& options, std::vector<Source>& sources, const std::wstring& draft, uint64_t total)
{
    PackFile pack(draft);
    WriteProgram(pack);
    const uint64_t headerAt = pack.At();
    const PackHeader room;
    pack.Write(std::as_bytes(std::span(&room, 1)));
    uint64_t done = 0;
    for (Source& source : sources) {
        host::Status(std::to_wstring(total ? done * 100 / total : 100) + L" %  " + source.packed.path);
        Store(pack, source, options.compression);
        done += source.packed.size;
    }
    host::Status({});
    WriteIndex(pack, sources, headerAt);
}

} // namespace

int PackSetup(const PackOptions& options)
{
    try {
        if (LiesIn(options.output, options.folder))
            throw engine_error(E_INVALIDARG, options.output, L"lies in the folder that it is to hold");
        std::vector<Source> sources = SourcesOf(options.folder);
        uint64_t total = 0;
        for (const Source& source : sources)
            total += source.packed.size;
        if (total > largest_content)
            throw engine_error(E_INVALIDARG, options.folder,
                               L"holds " + Number(static_cast<int64_t>(total)) +
                                   L" bytes; a program file can't be larger than 4 GiB: hand out the folder");
        const std::wstring draft = options.output + L".~vhpack";
        try {
            WritePack(options, sources, draft, total);
            if (!MoveFileExW(LongPath(draft).c_str(), LongPath(options.output).c_str(), MOVEFILE_REPLACE_EXISTING))
                ThrowFileError(options.output, L"can't be written", GetLastError());
        } catch (...) {
            RemoveFile(draft);
            throw;
        }
        host::Say(options.output + L": " + std::to_wstring(sources.size()) + L" files with " + std::to_wstring(total) +
                  L" bytes in " + std::to_wstring(FactsOf(options.output).size));
        return exit_done;
    } catch (const engine_error& error) {
        host::Complain(error.message().Text());
        return exit_file;
    }
}

} // namespace tools
