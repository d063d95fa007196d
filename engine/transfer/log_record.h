// One record of the install log, and its line in the file.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "../messages.h"

namespace vh::engine {

enum class LogKind {
    run,       // a run began
    commit,    // the run is complete
    ended,     // the run was rolled back whole
    clean,     // nothing of a committed run is left to tidy up
    features,  // the selection that the run leaves: `list`
    folder,    // a folder was made
    file,      // a file is written under `temp`, what stood there goes to `backup`, then it gets its name
    placed,    // the file of record `ref` kept another size or time than it was given
    waiting,   // what the step of record `ref` is for is in use: it is done behind the commit, or put off
    content,   // `texts`: the SHA-256 of what files hold, by the number of their record
    key,       // a registry key was made
    value,     // a registry value was written, or deleted (type -1); `old` is what it was
    set,       // a registry set was applied
    shell,     // a shortcut, written like a file
    texts,     // saved targets: `texts`
    taken,     // a file, shortcut or folder went to `backup`, where it waits for the end of the run
    unkey,     // a registry key was deleted, after what was in it
    forgotten, // record `ref` is left out of account
    undone,    // the record `ref` was undone
};

// Kinds that stand for a file on the machine.
constexpr bool IsFile(LogKind kind) { return kind == LogKind::file || kind == LogKind::shell; }
// Kinds with a step that can be taken back.
constexpr bool IsUndoable(LogKind kind)
{
    return IsFile(kind) || kind == LogKind::folder || kind == LogKind::key || kind == LogKind::value ||
           kind == LogKind::taken || kind == LogKind::unkey;
}

struct LogRecord {
    LogKind kind = LogKind::run;
    long id = 0;
    long run = 0;
    // Path of a file, shortcut or folder; root\key of the registry; name of a set or saved texts.
    std::wstring what;
    std::wstring feature;
    std::wstring source;
    std::wstring temp;
    std::wstring backup;
    std::wstring version;
    // SHA-256 of what was written, from the `content` record behind, as 32 bytes; empty when it is not known.
    std::string digest;
    // What the target holds; the source's time where the target keeps times less exactly.
    uint64_t size = 0;
    uint64_t time = 0;
    uint64_t sourceTime = 0;
    bool permanent = false;
    // Stood there already, the same: placed, but not the product's.
    bool found = false;
    // What stood there was not the product's: it comes back at removal. Behind the commit it waits at `waits`, which
    // the log works out and no line tells.
    bool original = false;
    bool shared = false; // the original, or the old value or shortcut, is another product's
    std::wstring waits;
    // A `waiting` record tells of it: the file at `temp` has not its name yet, or the taken one is still in its place.
    bool waiting = false;
    // Matters until the run ends; a removal knows nothing of it.
    bool loose = false;
    // A file has in data the name of what it replaces, where that is written otherwise (a.txt, A.TXT).
    // Registry value: name, type and bytes in hexadecimal; the old ones are there when oldType is not -1. A shortcut
    // has in oldData the content of one that is not the product's.
    std::wstring name;
    long type = -1;
    std::wstring data;
    long oldType = -1;
    std::wstring oldData;
    // What stood there before all products that share it, in the same forms.
    long firstType = -1;
    std::wstring firstData;
    // The earlier record that this one is about; but for `placed`, `waiting` and `undone` that one counts as undone
    // while this one stands.
    long ref = 0;
    std::vector<std::wstring> list;
    // Features that were there and not selected.
    std::vector<std::wstring> others;
    std::map<std::wstring, std::wstring> texts;
};

// What a removal has to undo, once the run is committed.
constexpr bool IsForRemoval(const LogRecord& record)
{
    return IsUndoable(record.kind) && record.kind != LogKind::taken && record.kind != LogKind::unkey && !record.loose &&
           record.ref == 0;
}

// One line of JSON with its check sum, without the line end.
std::string ToLine(const LogRecord& record);
// Nothing for a line that is damaged, or that names files which only a forged log would name.
std::optional<LogRecord> FromLine(std::string_view line);
// One readable line.
std::wstring Readable(const LogRecord& record);

// A name beside `target`, for a file on its way in (L"new") or out (L"old"). `token` tells one log from another, the
// number one name of it from the next.
std::wstring AsideName(const std::wstring& target, const std::wstring& token, long number, const wchar_t* ending);
// Whether the name is that of a shortcut.
bool IsShortcutName(std::wstring_view path);
// Whether a file's name has that form, and whether `aside` is such a name beside `target`.
bool IsAsideName(std::wstring_view name);
bool IsAsideOf(const std::wstring& aside, const std::wstring& target);

} // namespace vh::engine
