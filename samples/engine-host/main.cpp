// A host with the embedded engine and without a script: installs what the product file selects, or removes it.
//     engine_host FOLDER TARGET DATA [remove]
#include <cstdio>
#include <exception>
#include <string_view>

#include <engine/engine.h>
#include <vhrt.h>

namespace {

using namespace vh::engine;

Options OptionsOf(wchar_t** words)
{
    Options options;
    options.setupFolder = words[1];
    options.targetDir = words[2];
    options.dataDir = words[3];
    options.onProgress = [](const Progress& progress) {
        std::printf("%3d %%  %ls\n", progress.percent, progress.file.c_str());
        return true;
    };
    return options;
}

// What a script would do, as calls of the library.
int32_t MoveData(Engine& engine)
{
    ObjectContext* context = __CreateObjectContext(engine.Host().get(), engine.Services().get());
    if (!context)
        return -1;
    const int32_t result = _ComponentMoveData(context, L"DATA", 0);
    __ReleaseObjectContext(context);
    return result;
}

int Install(wchar_t** words)
{
    const auto engine = Engine::Open(OptionsOf(words));
    const int32_t result = MoveData(*engine);
    if (result < 0) {
        for (const Message& message : engine->Messages())
            std::fprintf(stderr, "%ls\n", message.Text().c_str());
        engine->Rollback();
        return 1;
    }
    engine->Commit();
    std::printf("%ls: %zu files in %ls\n", engine->ProductName().c_str(), engine->Installed().size(),
                engine->TargetDir().c_str());
    return 0;
}

int Remove(wchar_t** words)
{
    const auto removals = Uninstall(LogFileOf(words[1], words[3]));
    std::printf("%zu of %zu steps undone\n", CountDone(removals), removals.size());
    return AnyFailed(removals) ? 1 : 0;
}

} // namespace

int wmain(int count, wchar_t** words)
{
    if (count < 4 || count > 5 || (count == 5 && words[4] != std::wstring_view(L"remove"))) {
        std::fprintf(stderr, "usage: engine_host FOLDER TARGET DATA [remove]\n");
        return 2;
    }
    try {
        return count == 5 ? Remove(words) : Install(words);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
