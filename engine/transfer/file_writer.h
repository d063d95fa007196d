// Puts one file in its place: never half a file under a final name, and every step in the log before it is done.
#pragma once

#include <functional>

#include "../core.h"

namespace vh::engine {

struct FileToWrite {
    std::wstring source;
    std::wstring target;
    uint64_t size = 0;
    uint64_t time = 0;
    DWORD attributes = 0;
    std::wstring version;
    std::wstring feature;
    unsigned flags = 0;
    LogKind kind = LogKind::file;
    // Content that a removal puts back, kept in the log; for small files only.
    std::string previous{};
};

enum class Written { written, same, newer_stays, stays };

// Notes a folder that is about to be made.
void LogFolder(Core& core, const std::wstring& folder, const std::wstring& feature);

// What stands there is what the product's newest record of the file says.
bool IsOurs(const Core& core, const FileToWrite& file, const FileFacts& there);

// Makes the folder above as well. `advance` hears of bytes as they are written and may throw to stop. With
// `logged` false nothing is recorded, and a replaced file is gone.
Written WriteFileSafely(Core& core, const FileToWrite& file, bool logged, const std::function<void(uint64_t)>& advance);

} // namespace vh::engine
