// Names of files on their way in and out, which a log may hold.
#include <algorithm>

#include "log_record.h"

namespace vh::engine {

namespace {

constexpr std::wstring_view aside_mark = L".~vh";
constexpr std::wstring_view aside_endings[] = {L".new", L".old"};

} // namespace

std::wstring AsideName(const std::wstring& target, const std::wstring& token, long number, const wchar_t* ending)
{
    return JoinPath(FolderOf(target), std::wstring(aside_mark) + token + L"-" + Number(number) + L"." + ending);
}

bool IsAsideName(std::wstring_view name)
{
    if (!name.starts_with(aside_mark))
        return false;
    return std::any_of(std::begin(aside_endings), std::end(aside_endings), [&](std::wstring_view ending) {
        if (!name.ends_with(ending) || name.size() < aside_mark.size() + ending.size() + 3)
            return false;
        const std::wstring_view middle =
            name.substr(aside_mark.size(), name.size() - aside_mark.size() - ending.size());
        return middle.find_first_not_of(L"0123456789abcdef-") == middle.npos;
    });
}

bool IsShortcutName(std::wstring_view path)
{
    constexpr std::wstring_view extension = L".lnk";
    return path.size() > extension.size() && SameText(path.substr(path.size() - extension.size()), extension);
}

bool IsAsideOf(const std::wstring& aside, const std::wstring& target)
{
    return SameText(FolderOf(aside), FolderOf(target)) && IsAsideName(FileNameOf(aside));
}

} // namespace vh::engine
