#include "script_file.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <optional>

#include "../diagnostics/url.h"
#include "../scriptdata/ascii.h"
#include "text_lines.h"

namespace {

bool Writes(int32_t mode) { return mode == 1 || mode == 3 || mode == 5; }

// A shorter line is padded with NULs up to the room; a line as long as the room has no terminator.
void Pad(wchar_t* buffer, std::size_t count, std::size_t room)
{
    std::memset(buffer + count, 0, (room - count) * sizeof(wchar_t));
}

void Deliver(std::wstring_view line, wchar_t* buffer, std::size_t room)
{
    const std::size_t count = std::min(room, line.size());
    line.copy(buffer, count);
    Pad(buffer, count, room);
}

// The result of a read or write that raised: the code of a network failure, else -1.
template <class Work>
int32_t Caught(Work&& work)
{
    try {
        return work();
    } catch (const vh::internet_file_exception& failure) {
        return static_cast<int32_t>(failure.code());
    } catch (const vh::win32_exception&) {
        return -1;
    }
}

// Nothing for an address that doesn't tell; a file of 4 GB or more counts as the largest size.
std::optional<DWORD> SizeIfTold(vh::file& file)
{
    try {
        DWORD high = 0;
        const DWORD low = file.size(&high);
        return high ? UINT32_MAX : low;
    } catch (const vh::internet_file_exception&) {
        return {};
    }
}

} // namespace

int32_t CVHFile::CheckMode(std::wstring_view path, int32_t mode)
{
    if (mode < 1 || mode > 5)
        return -1;
    return Writes(mode) && vh::IsUrl(path) ? FileErrorUrlNotReadable : 0;
}

int32_t CVHFile::Open(const wchar_t* path, int32_t mode, bool create)
{
    path = path ? path : L"";
    if (!create)
        if (const int32_t refused = CheckMode(path, mode))
            return refused;
    const DWORD access = create || Writes(mode) ? GENERIC_READ | GENERIC_WRITE : GENERIC_READ;
    const DWORD error = m_file.open(path, access, FILE_SHARE_READ | FILE_SHARE_WRITE, FILE_ATTRIBUTE_NORMAL,
                                    create ? CREATE_ALWAYS : OPEN_EXISTING);
    return error ? -1 : 0;
}

int32_t CVHFile::Close()
{
    try {
        m_file.close();
        return 0;
    } catch (const std::exception&) {
        return -1;
    }
}

int32_t CVHTextFile::Open(const wchar_t* path, int32_t mode, bool create)
{
    const int32_t result = CVHFile::Open(path, mode, create);
    if (mode == 5)
        m_markOnCreate = true;
    if (result != 0)
        return result;
    try {
        if (create && m_markOnCreate) {
            // The position stays behind the mark, as it does behind one that was found.
            m_file.write("\xFF\xFE", 2);
            m_wide = true;
        } else if (m_file.is_url()) {
            m_wide = FindMarkAtAddress();
        } else if (m_file.code_page() == 1200) {
            m_file.seek(2, FILE_BEGIN);
            m_wide = true;
        }
    } catch (const vh::win32_exception&) {
        // What can't be looked at counts as narrow.
    }
    return 0;
}

// The mark of a local file is known from its opening.
bool CVHTextFile::FindMarkAtAddress()
{
    unsigned char start[2] = {};
    if (m_file.size() < sizeof(start))
        return false;
    m_file.read(start, sizeof(start));
    if (start[0] == 0xFF && start[1] == 0xFE)
        return true;
    m_file.seek(0, FILE_BEGIN);
    return false;
}

bool CVHTextFile::TakeBuffer(std::size_t bytes)
{
    m_buffer.reset(new (std::nothrow) char[bytes + vh::text_line_end<wchar_t>::room]);
    return m_buffer != nullptr;
}

void CVHTextFile::AppendLineEnd()
{
    if (m_wide)
        std::memcpy(m_buffer.get() + m_dataSize, vh::text_line_end<wchar_t>::units, vh::text_line_end<wchar_t>::room);
    else
        std::memcpy(m_buffer.get() + m_dataSize, vh::text_line_end<char>::units, vh::text_line_end<char>::room);
    m_cursor = m_buffer.get();
}

int32_t CVHTextFile::Fill()
{
    try {
        const std::optional<DWORD> size = SizeIfTold(m_file);
        if (!size) {
            if (const int32_t result = FillFromStream())
                return result;
        } else {
            // Content is counted in 32 bits.
            if (*size > UINT32_MAX - vh::text_line_end<wchar_t>::room || !TakeBuffer(*size))
                return -1;
            // A download that was interrupted twice leaves a gap.
            if (m_file.is_url())
                std::memset(m_buffer.get(), 0, *size);
            m_dataSize = m_file.read_bytes(m_buffer.get(), *size);
        }
    } catch (const vh::win32_exception& failure) {
        m_buffer.reset();
        return static_cast<int32_t>(failure.code());
    }
    AppendLineEnd();
    return 0;
}

// A stream that does not tell its length is read in blocks. Each block is widened as narrow text, and as many
// bytes as came are taken of that wide text: a narrow stream so ends after its first unit.
int32_t CVHTextFile::FillFromStream()
{
    constexpr DWORD block_size = 10240;
    stringx text;
    stringx block_text;
    std::string block(block_size, '\0');
    uint32_t total = 0;
    for (DWORD count = block_size; count == block_size;) {
        count = m_file.read_bytes(block.data(), block_size);
        if (count < 1)
            break;
        block_text.clear();
        block_text.assign_narrow(block.data(), static_cast<int>(strnlen(block.data(), count)));
        text += block_text;
        total += count;
    }
    if (!TakeBuffer(total))
        return -1;
    const std::size_t present = std::min<std::size_t>(total, (text.size() + 1) * sizeof(wchar_t));
    std::memset(m_buffer.get(), 0, total);
    std::memcpy(m_buffer.get(), text.data(), present);
    m_dataSize = total;
    return 0;
}

int32_t CVHTextFile::TakeLine(raw_line& line)
{
    if (!m_buffer)
        if (const int32_t result = Fill())
            return result;
    const bool taken = m_wide ? vh::TakeLine<wchar_t>(m_buffer.get(), m_dataSize, m_cursor, line.wide)
                              : vh::TakeLine<char>(m_buffer.get(), m_dataSize, m_cursor, line.narrow);
    return taken ? 0 : -1;
}

int32_t CVHTextFile::ReadLine(stringx& line)
{
    if (!m_pendingLine.empty() && &line != &m_pendingLine) {
        line = m_pendingLine;
        m_pendingLine.clear();
        m_lineResult = 0;
        return 0;
    }
    raw_line found;
    if (const int32_t result = TakeLine(found))
        return result;
    if (m_wide)
        line = found.wide;
    else if (found.narrow.empty())
        line.clear();
    else
        line.assign_narrow(found.narrow.data(), static_cast<int>(found.narrow.size()));
    return 0;
}

int32_t CVHTextFile::GetLineSize(int32_t* size)
{
    if (!m_pendingValid) {
        m_pendingLine.clear();
        m_lineResult = ReadLine(m_pendingLine);
        m_pendingValid = true;
    }
    *size = static_cast<int32_t>(m_pendingLine.size());
    return m_lineResult;
}

int32_t CVHTextFile::GetLine(wchar_t* buffer, int32_t* size)
{
    if (!buffer)
        return GetLineSize(size);
    const std::size_t room = *size > 0 ? static_cast<std::size_t>(*size) : 0;
    if (m_pendingValid) {
        Deliver(m_pendingLine, buffer, room);
        m_pendingLine.clear();
        m_pendingValid = false;
        return std::exchange(m_lineResult, 0);
    }

    // Most lines go from the content to the caller without a stop.
    raw_line line;
    const int32_t result = TakeLine(line);
    if (!m_wide && vh::IsAscii(line.narrow)) {
        const std::string_view part = line.narrow.substr(0, room);
        vh::WidenAscii(part, buffer);
        Pad(buffer, part.size(), room);
    } else if (!m_wide) {
        Deliver(stringx(line.narrow.data(), static_cast<int>(line.narrow.size())), buffer, room);
    } else {
        Deliver(line.wide, buffer, room);
    }
    return result;
}

int32_t CVHTextFile::WriteLine(std::wstring_view text)
{
    try {
        m_output.clear();
        if (m_wide) {
            m_output.append(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t));
            m_output.append(reinterpret_cast<const char*>(vh::text_line_end<wchar_t>::units), 4);
        } else {
            const bool ascii = std::ranges::all_of(text, [](wchar_t unit) { return unit && unit < 0x80; });
            if (ascii)
                for (const wchar_t unit : text)
                    m_output += static_cast<char>(unit);
            else
                m_output += stringx(text).AsNarrow();
            m_output += "\r\n";
        }
        LONG beyond_4_gb = 0;
        m_file.seek(0, FILE_END, &beyond_4_gb);
        const auto bytes = static_cast<DWORD>(m_output.size());
        return m_file.write_bytes(m_output.data(), bytes) == bytes ? 0 : -1;
    } catch (const vh::win32_exception&) {
        return -1;
    }
}

int32_t CVHBinaryFile::ReadBytes(uint8_t* buffer, uint32_t size, uint32_t offset, uint32_t count)
{
    if (offset >= size)
        return -1;
    return Caught(
        [&] { return static_cast<int32_t>(m_file.read_bytes(buffer + offset, std::min(size - offset, count))); });
}

int32_t CVHBinaryFile::WriteBytes(const uint8_t* buffer, uint32_t size, uint32_t offset, uint32_t count)
{
    if (offset >= size)
        return -1;
    try {
        return static_cast<int32_t>(m_file.write_bytes(buffer + offset, std::min(size - offset, count)));
    } catch (const vh::win32_exception&) {
        return -1;
    }
}

int32_t CVHBinaryFile::SeekBytes(int32_t distance, int32_t origin)
{
    if (origin < 1 || origin > 3)
        return -1;
    return Caught([&] {
        m_file.seek(distance, static_cast<DWORD>(origin - 1));
        return 0;
    });
}

CVHFileError& CVHFileError::Instance()
{
    static CVHFileError instance;
    return instance;
}

int32_t FileTable::Open(const wchar_t* path, int32_t mode, bool create)
{
    if (const int32_t refused = CVHFile::CheckMode(path ? path : L"", mode))
        return refused;
    const auto handle = static_cast<int32_t>(m_counter++ * 463);
    std::unique_ptr<CVHFile> file;
    if (mode == 1 || mode == 4)
        file = std::make_unique<CVHBinaryFile>();
    else
        file = std::make_unique<CVHTextFile>();
    if (file->Open(path, mode, create) == -1)
        return -1;
    return m_files.try_emplace(handle, std::move(file)).second ? handle : -1;
}

int32_t FileTable::Close(int32_t handle)
{
    const auto found = m_files.find(handle);
    if (found == m_files.end())
        return FileErrorBadHandle;
    // A file that can't be closed stays open for a retry.
    if (found->second->Close() == -1)
        return -1;
    m_files.erase(found);
    return 0;
}

CVHFile& FileTable::Find(int32_t handle)
{
    const auto found = m_files.find(handle);
    return found == m_files.end() ? CVHFileError::Instance() : *found->second;
}
