// Another run of a setup, from where it was the last time.
#include "console.h"
#include "engine/engine.h"
#include "products.h"
#include "scriptdata/unique.h"
#include "setup_run.h"
#include "text.h"

namespace host {

namespace {

// A setup in one file runs as its own program; the words of this one that name the product are not for it.
ExitCode RunPackedSetup(const std::wstring& file, const RunOptions& options)
{
    std::wstring line = Quoted(file);
    if (options.silent)
        line += L" --silent";
    if (options.repair)
        line += L" --repair";
    if (!options.data_folder.empty())
        line += L" --data " + Quoted(options.data_folder);
    if (!options.registry_root.empty())
        line += L" --registry-root " + Quoted(options.registry_root);
    for (const auto& [name, value] : options.variables)
        line += L" --var " + Quoted(name + L"=" + value);
    if (!options.log_file.empty())
        line += L" --log " + Quoted(options.log_file);
    if (!options.answers_file.empty())
        line += L" --answers " + Quoted(options.answers_file);
    if (!options.save_answers.empty())
        line += L" --save-answers " + Quoted(options.save_answers);
    if (options.plan != PlanForm::none)
        line += options.plan == PlanForm::json ? L" --plan=json" : L" --plan";
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(file.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &started)) {
        Complain(file + L": can't be started: " + SystemText(GetLastError()));
        return exit_setup;
    }
    const vh::unique_handle thread(started.hThread);
    const vh::unique_handle process(started.hProcess);
    DWORD code = exit_setup;
    WaitForSingleObject(process.get(), INFINITE);
    GetExitCodeProcess(process.get(), &code);
    return static_cast<ExitCode>(code);
}

} // namespace

ExitCode ModifyProduct(RunOptions options)
{
    const auto product = FindProduct(options.guid, options.data_folder);
    if (!product) {
        Complain(options.guid + L": no such product is installed");
        return exit_setup;
    }
    const DWORD attributes = GetFileAttributesW(LongPath(product->source).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        Complain(product->source + L": the setup of " + product->name +
                 L" is not there any more; start it from where it is now");
        return exit_setup;
    }
    if (!(attributes & FILE_ATTRIBUTE_DIRECTORY))
        return RunPackedSetup(product->source, options);
    options.setup_folder = product->source;
    return RunSetup(options);
}

} // namespace host
