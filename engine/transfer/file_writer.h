// Puts files in their places: never half a file under a final name, and every step in the log before it is done.
#pragma once

#include <functional>
#include <span>

#include "../core.h"

namespace vh::engine {

struct FileToWrite {
    std::wstring source;
    const PackedFile* packed = nullptr; // where the source is part of a pack
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
    // Recorded until the run ends; a removal knows nothing of it.
    bool loose = false;
    // A read-only file of somebody else is replaced as well.
    bool overReadOnly = false;
    // Equal size and time don't stand for equal content.
    bool compare = false;
};

struct WriterNews {
    // Bytes as they are written, and those of files that stay; may throw to stop.
    std::function<void(uint64_t, const FileToWrite&)> advance;
};

// Gives one file after another, and false at the end.
using FileSource = std::function<bool(FileToWrite&)>;

// Makes the folders above as well. Records reach the log in batches, and the disk before a file is replaced. After a
// failure everything is as before.
void WriteAllOrNothing(Core& core, const FileSource& files, const WriterNews& news);
void WriteAllOrNothing(Core& core, std::span<const FileToWrite> files, const WriterNews& news);

} // namespace vh::engine
