// Loading and unloading the library.
#include <filesystem>

#include "../tests/support/temp_folder.h"
#include "areas.h"
#include "modules.h"

namespace bench {

namespace {

work LoadAndUnload(const std::wstring& path)
{
    return {[=](long count) {
        for (; count > 0; --count) {
            const module loaded(path.c_str());
            Keep(loaded.handle());
        }
    }};
}

} // namespace

// A copy of the library, since the library itself stays loaded for the other areas.
void Load(suite& s)
{
    const vh::test::TempFolder folder;
    const auto copy = [&](const wchar_t* name) {
        const std::wstring path = folder / name;
        std::filesystem::copy_file(ProgramFolder() + name, path);
        return path;
    };
    s.Compare("load and unload, to a DLL of the size", 1.3, LoadAndUnload(copy(L"VHRT.dll")),
              LoadAndUnload(copy(L"vhsize.dll")));
}

} // namespace bench
