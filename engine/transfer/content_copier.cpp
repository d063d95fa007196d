#include "content_copier.h"

#include "../product/pack.h"

namespace vh::engine {

namespace {

constexpr std::size_t block_size = 256 * 1024;
constexpr std::size_t room_size = 8 * block_size;
// From here on a second thread looks at what is copied.
constexpr uint64_t large_file = 2 * block_size;

} // namespace

void ContentCopier::Begin(const FileToWrite& file)
{
    // Only what is used of it is touched.
    if (!m_room)
        m_room = std::make_unique_for_overwrite<std::byte[]>(room_size);
    m_here = nullptr;
    m_beside = nullptr;
    if (file.loose)
        return;
    if (file.size < large_file)
        m_here = m_small ? &*m_small : &m_small.emplace();
    else
        m_beside = m_large ? &*m_large : &m_large.emplace(std::span(m_room.get(), room_size));
}

// Up to the end of the source. Result: its size.
uint64_t ContentCopier::CopyBlocks(const FileToWrite& file, HANDLE target, const WriterNews& news)
{
    PayloadReader source(file.source, file.packed);
    uint64_t copied = 0;
    std::size_t got = 0;
    do {
        const auto block = m_beside ? m_beside->Free() : std::span(m_room.get(), block_size);
        got = source.Read(block);
        if (m_here)
            m_here->Add(block.first(got));
        if (m_beside)
            m_beside->Add(got);
        DWORD put = 0;
        if (got && (!WriteFile(target, block.data(), static_cast<DWORD>(got), &put, nullptr) || put != got))
            ThrowFileError(file.target, L"can't write the file", put ? ERROR_WRITE_FAULT : GetLastError());
        copied += got;
        news.advance(got, file);
        // A block that is not full is the last one when nothing is missing.
    } while (got == block_size || (got && copied < file.size));
    return copied;
}

std::wstring ContentCopier::Finish()
{
    return m_here ? m_here->Finish() : m_beside ? m_beside->Finish() : std::wstring();
}

std::wstring ContentCopier::Copy(const FileToWrite& file, const std::wstring& temp, bool flushed,
                                 const WriterNews& news)
{
    Begin(file);
    const unique_file target(
        CreateFileW(LongPath(temp).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!target)
        ThrowFileError(file.target, L"can't write the file", GetLastError());
    if (CopyBlocks(file, target.get(), news) != file.size)
        throw engine_error(HRESULT_FROM_WIN32(ERROR_FILE_INVALID), file.source,
                           L"the payload changed during the setup");
    const FILETIME time{static_cast<DWORD>(file.time & 0xFFFFFFFF), static_cast<DWORD>(file.time >> 32)};
    if (!SetFileTime(target.get(), nullptr, nullptr, &time))
        ThrowFileError(file.target, L"can't set the file's time", GetLastError());
    if (flushed && !FlushFileBuffers(target.get()))
        ThrowFileError(file.target, L"can't write the file", GetLastError());
    std::wstring digest = Finish();
    if (file.packed && digest != file.packed->digest)
        throw engine_error(HRESULT_FROM_WIN32(ERROR_FILE_CORRUPT), file.source,
                           L"the setup is damaged: this is not what was packed");
    return digest;
}

} // namespace vh::engine
