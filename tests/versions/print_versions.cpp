// Prints version and translations of each file of a list, as the library reads them: one line for each.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "../../exports/vhrt.h"

namespace {

std::wstring Wide(const std::string& text)
{
    return std::filesystem::path(std::u8string(text.begin(), text.end())).wstring();
}

void PrintVersion(const std::wstring& path)
{
    wchar_t version[24] = L"";
    if (const int32_t code = VerGetFileVersion(path.c_str(), version))
        std::printf("%d\t", static_cast<int>(code));
    else
        std::printf("%ls\t", version);
}

void PrintLanguages(ObjectContext* context, const std::wstring& path)
{
    ListHandle list = _ListCreate(context, ListTypeNumber);
    if (const int32_t code = _VerGetFileLanguages(context, path.c_str(), list))
        std::printf("%d", static_cast<int>(code));
    const char* separator = "";
    int32_t word = 0;
    for (int64_t more = _ListGetFirstItem(context, list, &word); more == 0;
         more = _ListGetNextItem(context, list, &word)) {
        std::printf("%s%08x", separator, static_cast<unsigned>(word));
        separator = " ";
    }
    std::printf("\n");
    _ListDestroy(context, &list);
}

} // namespace

int main(int count, char** words)
{
    if (count != 2)
        return 2;
    std::ifstream paths(words[1]);
    if (!paths)
        return 4;
    ObjectContext* context = __CreateObjectContext(nullptr, nullptr);
    std::string path;
    while (std::getline(paths, path)) {
        PrintVersion(Wide(path));
        PrintLanguages(context, Wide(path));
    }
    __ReleaseObjectContext(context);
    return 0;
}
