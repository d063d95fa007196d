// A host with an engine of its own: the library's functions work on what small_engine offers.
//     own_engine FILE TARGET [fail]
// copies the file to TARGET\files; with "fail" the run ends badly and is taken back.
#include <cstdio>
#include <filesystem>
#include <string_view>

#include <vhrt.h>

#include "small_engine.h"

namespace {

// What a setup script would do. Result: 0, or the code of what failed.
int32_t Script(ObjectContext* context, const wchar_t* file, bool fail)
{
    // Which parts there are is the library's own business: a media of the script.
    if (const int32_t code = _ComponentAddItem(context, L"PARTS", L"Files", 0, 1))
        return code;
    if (_ComponentIsItemSelected(context, L"PARTS", L"Files") != 1)
        return 0;
    if (const int32_t code = _CreateDir(context, L"<TARGETDIR>\\empty"))
        return code;
    if (const int32_t code = _FileCopy(context, file, L"<TARGETDIR>\\files", 0))
        return code;
    // There is no file of that name.
    return fail ? _FileCopy(context, L"<TARGETDIR>\\nothing", L"<TARGETDIR>", 0) : 0;
}

} // namespace

int wmain(int count, wchar_t** words)
{
    const bool fail = count == 4 && words[3] == std::wstring_view(L"fail");
    if (count != 3 && !fail) {
        std::fprintf(stderr, "usage: own_engine FILE TARGET [fail]\n");
        return 2;
    }
    small::Session session;
    // The library takes full paths alone.
    session.variables[L"TARGETDIR"] = std::filesystem::absolute(words[2]).wstring();
    ObjectContext* context = __CreateObjectContext(small::MakeHost().get(), small::MakeServices(session).get());
    if (!context)
        return 1;
    const int32_t code = Script(context, std::filesystem::absolute(words[1]).c_str(), fail);
    __ReleaseObjectContext(context);
    if (code == 0) {
        for (const std::wstring& path : session.made)
            std::printf("made %ls\n", path.c_str());
        return 0;
    }
    std::fprintf(stderr, "failed with 0x%08lX; %zu steps taken back\n", static_cast<unsigned long>(code),
                 session.TakeBack());
    return 1;
}
