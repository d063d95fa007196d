#include "file_decision.h"

#include <cstring>
#include <memory>

#include "../product/pack.h"
#include "../sha256.h"
#include "undo_step.h"

namespace vh::engine {

namespace {

constexpr DWORD block_size = 256 * 1024;

std::wstring VersionOf(const FileToWrite& file)
{
    return file.version.empty() && !file.packed ? FileVersion(file.source) : file.version;
}

// By the log, which need not read the source; without its word by the source.
bool HoldsWhatWasPlaced(const Core& core, const FileToWrite& file)
{
    if (file.packed)
        return Sha256OfFile(file.target) == file.packed->digest;
    const LogRecord* record = core.log->Newest(file.kind, file.target);
    return record && !record->digest.empty() && !file.compare ? FromHex(Sha256OfFile(file.target)) == record->digest
                                                              : SameContent(file.source, file.target);
}

bool IsSame(const Core& core, const FileToWrite& file, const FileFacts& there)
{
    if (there.size != file.size)
        return false;
    if (there.time != file.time) {
        // A target that keeps times less exactly holds the one that it kept.
        const LogRecord* record = core.log->Newest(file.kind, file.target);
        if (!record || record->sourceTime != file.time || record->time != there.time)
            return false;
    }
    if (core.options.repair)
        return HoldsWhatWasPlaced(core, file);
    return !file.compare || SameContent(file.source, file.target);
}

// The product had this file here, or one in its place.
bool IsRepaired(const Core& core, const FileToWrite& file)
{
    return core.kind == RunKind::repair && core.log->Newest(file.kind, file.target);
}

} // namespace

Decision Decide(const Core& core, const FileToWrite& file, const FileFacts& there)
{
    Decision made{Act::keep, Why::same, KindWord(file.kind), file.target, file.feature};
    const auto keep = [&](Why why) { return made.why = why, made; };
    if (!there.exists()) {
        made.act = Act::add;
        made.size = file.size;
        return keep(IsRepaired(core, file) ? Why::missing : Why::fresh);
    }
    if (there.folder())
        throw engine_error(HRESULT_FROM_WIN32(ERROR_ALREADY_EXISTS), file.target,
                           L"a folder stands in the file's place");
    if (IsSame(core, file, there))
        return made;
    if (file.flags & file_never_overwrite)
        return keep(Why::never_overwrite);
    if ((file.flags & file_keep_changed) && !IsOurs(core, file, there))
        return keep(Why::keep_changed);
    if (!(file.flags & file_always_overwrite)) {
        if (made.before = FileVersion(file.target); !made.before.empty())
            made.after = VersionOf(file);
        if (!made.after.empty() && CompareVersions(made.before, made.after) > 0)
            return keep(Why::newer);
    }
    if ((there.attributes & FILE_ATTRIBUTE_READONLY) && !file.overReadOnly && !IsOurs(core, file, there))
        throw engine_error(HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED), file.target, L"the file is read-only");
    made.act = Act::replace;
    made.size = file.size;
    made.freed = there.size;
    if (!made.after.empty() && CompareVersions(made.before, made.after) != 0)
        return keep(Why::version);
    return keep(IsRepaired(core, file) ? Why::damaged : Why::differs);
}

// What stands there came neither from the product nor from an earlier version of it.
bool IsForeign(const Core& core, const FileToWrite& file)
{
    const LogRecord* record = core.log->Newest(file.kind, file.target);
    return !record || record->found;
}

bool SameContent(const std::wstring& a, const std::wstring& b)
{
    const auto open = [](const std::wstring& path) {
        return unique_file(CreateFileW(LongPath(path).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                       FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    };
    const unique_file first = open(a);
    const unique_file second = open(b);
    if (!first || !second)
        return false;
    const auto blocks = std::make_unique<std::byte[]>(std::size_t{2} * block_size);
    for (;;) {
        DWORD got = 0;
        DWORD gotToo = 0;
        if (!ReadFile(first.get(), blocks.get(), block_size, &got, nullptr) ||
            !ReadFile(second.get(), blocks.get() + block_size, block_size, &gotToo, nullptr) || got != gotToo ||
            memcmp(blocks.get(), blocks.get() + block_size, got) != 0)
            return false;
        if (!got)
            return true;
    }
}

bool IsOurs(const Core& core, const FileToWrite& file, const FileFacts& facts)
{
    const LogRecord* record = core.log->Newest(file.kind, file.target);
    return record && !record->found && record->size == facts.size && record->time == facts.time;
}

} // namespace vh::engine
