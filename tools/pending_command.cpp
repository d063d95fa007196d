#include "pending_command.h"

#include <algorithm>

#include <nlohmann/json.hpp>

#include "diagnostics/file_exception.h"
#include "exit_codes.h"
#include "file_bytes.h"
#include "files/remove_tree.h"
#include "host/console.h"
#include "host/text.h"
#include "scriptdata/path_text.h"
#include "system/pending_operations.h"
#include "system/reboot_move.h"

namespace tools {

namespace {

std::wstring Text(const stringxi& text) { return std::wstring(text.view()); }

int SayAll(bool json)
{
    nlohmann::ordered_json array = nlohmann::ordered_json::array();
    for (const vh::pending_operation& one : vh::ListPendingOperations()) {
        if (json)
            array.push_back({{"source", host::Utf8(one.source.view())}, {"target", host::Utf8(one.target.view())}});
        else
            host::Say(Text(one.source) + L"\t" + Text(one.target));
    }
    if (json)
        host::Say(host::Wide(array.dump(2)));
    return exit_done;
}

bool IsRecorded(const std::wstring& source)
{
    return std::ranges::any_of(vh::ListPendingOperations(),
                               [&](const vh::pending_operation& one) { return one.source == stringxi(source); });
}

} // namespace

int ListPending(const std::wstring& target, bool json)
{
    if (target.empty())
        return SayAll(json);
    stringxi source;
    vh::FindPendingOperation(stringxi(target), source);
    if (source.empty()) {
        host::Complain(target + L": no operation that is put off has this target");
        return exit_found;
    }
    host::Say(Text(source));
    return exit_done;
}

int RecordPending(const std::wstring& source, const std::wstring& target, bool at_reboot)
{
    if (at_reboot) {
        if (const DWORD error = vh::ScheduleAtReboot(stringxi(source), stringxi(target)))
            ThrowFor(source, error);
        return exit_done;
    }
    // The list would keep them and never carry them out.
    for (const std::wstring& path : {source, target})
        if (path.size() > vh::longest_pending_path)
            ThrowFor(path, ERROR_FILENAME_EXCED_RANGE);
    vh::RecordPendingOperation(source.c_str(), target.c_str());
    if (IsRecorded(source))
        return exit_done;
    host::Complain(source + L": the operation could not be put off");
    return exit_file;
}

int ApplyPending()
{
    const HRESULT result = vh::ApplyPendingOperations();
    if (SUCCEEDED(result))
        return exit_done;
    host::Complain(L"the last operation that failed: " + host::SystemText(static_cast<uint32_t>(HRESULT_CODE(result))));
    return exit_file;
}

int ClearPending()
{
    if (const LSTATUS error = vh::ClearPendingOperations())
        ThrowFor(L"the list of operations", static_cast<unsigned long>(error));
    return exit_done;
}

int RemoveFolder(const std::wstring& path, bool ignore_file_failure)
{
    constexpr std::wstring_view prefix = L"\\\\?\\";
    // What lies far below may have a path that only the prefix opens.
    const bool on_drive = path.size() > 2 && path[1] == L':';
    try {
        vh::RemoveTree(vh::Concat(on_drive ? prefix : L"", path), ignore_file_failure);
    } catch (const vh::file_exception& failure) {
        const std::wstring_view name = failure.name();
        ThrowFor(std::wstring(name.substr(on_drive && name.starts_with(prefix) ? prefix.size() : 0)), failure.code());
    }
    return exit_done;
}

bool IsRoot(const std::wstring& path)
{
    const std::wstring_view root = vh::PathRoot(std::wstring_view(path));
    return path == root || path.substr(root.size()) == L"\\";
}

} // namespace tools
