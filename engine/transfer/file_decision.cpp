#include "file_decision.h"

#include "../product/pack.h"
#include "../sha256.h"
#include "undo_step.h"

namespace vh::engine {

namespace {

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

// Builds of two versions may give a file one size and one time, and still another content. What the log knows of the
// target need not be read.
bool HoldsTheSource(const LogRecord& record, const FileToWrite& file, const FileFacts& there)
{
    const bool known = !record.digest.empty() && record.size == there.size && record.time == there.time;
    if (!known && !file.packed)
        return SameContent(file.source, file.target);
    return (known ? ToHex(record.digest) : Sha256OfFile(file.target)) ==
           (file.packed ? file.packed->digest : Sha256OfFile(file.source));
}

bool IsSame(const Core& core, const FileToWrite& file, const FileFacts& there)
{
    if (there.size != file.size)
        return false;
    const LogRecord* record = core.log->Newest(file.kind, file.target);
    // A target that keeps times less exactly holds the one that it kept.
    if (there.time != file.time && (!record || record->sourceTime != file.time || record->time != there.time))
        return false;
    if (core.IsOtherVersion() && record && !file.loose)
        return HoldsTheSource(*record, file, there);
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

bool IsOurs(const Core& core, const FileToWrite& file, const FileFacts& facts)
{
    const LogRecord* record = core.log->Newest(file.kind, file.target);
    return record && !record->found && record->size == facts.size && record->time == facts.time;
}

} // namespace vh::engine
