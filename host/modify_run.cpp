// Another run of a setup, from where it was the last time.
#include <utility>

#include "console.h"
#include "engine/engine.h"
#include "products.h"
#include "scriptdata/unique.h"
#include "setup_run.h"
#include "text.h"

namespace host {

namespace {

bool Holds(const Answers& answers, const std::wstring& name, const std::wstring& value)
{
    const auto found = answers.variables.find(name);
    return found != answers.variables.end() && found->second == value;
}

// A setup in one file runs as its own program; the words of this one that name the product are not for it.
ExitCode RunPackedSetup(const std::wstring& file, const RunOptions& options)
{
    const std::pair<const wchar_t*, bool> flags[] = {{L" --silent", options.silent},
                                                     {L" --repair", options.repair},
                                                     {L" --notes", options.notes},
                                                     {L" --main-window", options.main_window},
                                                     {L" --show-log", options.show_log},
                                                     {L" --verify", options.verify},
                                                     {L" --allow-downgrade", options.allow_downgrade}};
    const std::pair<const wchar_t*, const std::wstring&> texts[] = {{L" --data ", options.data_folder},
                                                                    {L" --registry-root ", options.registry_root},
                                                                    {L" --target ", options.target},
                                                                    {L" --trace ", options.trace_file},
                                                                    {L" --log ", options.log_file},
                                                                    {L" --answers ", options.answers_file},
                                                                    {L" --save-answers ", options.save_answers}};
    std::wstring line = Quoted(file);
    for (const auto& [word, given] : flags)
        line += given ? word : L"";
    for (const auto& [word, text] : texts)
        line += text.empty() ? std::wstring() : word + Quoted(text);
    if (options.language)
        line += L" --language " + std::to_wstring(options.language);
    for (const std::wstring& script : options.scripts)
        line += L" --script " + Quoted(script);
    // Those of the answers come with their file.
    for (const auto& [name, value] : options.variables)
        if (!options.answers || !Holds(*options.answers, name, value))
            line += L" --var " + Quoted(name + L"=" + value);
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
    if (product->source.empty()) {
        Complain(product->logFile + L": does not tell where the setup of " + options.guid + L" is; start it itself");
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
