// Copies what files hold, and works out what the log keeps of it.
#pragma once

#include <memory>
#include <optional>

#include "../sha256.h"
#include "file_writer.h"

namespace vh::engine {

// One for many files: room and hashes are made once. A copy that failed ends its use.
class ContentCopier {
public:
    // Writes `temp`, with the file's time; `flushed` content reaches the disk before this returns. Result: the
    // content's SHA-256; empty for a loose file, which nobody compares later. Throws engine_error.
    std::wstring Copy(const FileToWrite& file, const std::wstring& temp, bool flushed, const WriterNews& news);

private:
    void Begin(const FileToWrite& file);
    uint64_t CopyBlocks(const FileToWrite& file, HANDLE target, const WriterNews& news);
    std::wstring Finish();

    std::unique_ptr<std::byte[]> m_room;
    std::optional<Sha256> m_small;
    std::optional<Sha256Beside> m_large;
    // The one of these that the file in hand goes to.
    Sha256* m_here = nullptr;
    Sha256Beside* m_beside = nullptr;
};

} // namespace vh::engine
