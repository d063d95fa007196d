// vhhost.exe: runs a setup folder's script against VHRT.dll and the embedded engine.
#include <algorithm>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <objbase.h>
#include <windows.h>

#include "answer_file.h"
#include "command_line.h"
#include "kept_host.h"
#include "packed_setup.h"
#include "products.h"
#include "rights.h"
#include "run_log.h"
#include "setup_run.h"
#include "text.h"
#include "version.h"
#include "wording.h"

namespace {

constexpr const char* description = "Runs the setup in a folder that holds product.json, the payload and setup.js.";
constexpr const char* packed_description = "Installs, changes or removes the product that this file holds.";
constexpr const char* footer =
    "Exit codes: 0 done; 1 the script or a transfer failed (rolled back), or --verify found\n"
    "a file unlike its source; 2 wrong command line or answers, or no place for the log; 4 wrong\n"
    "setup folder, product file or payload, answers for another product, another setup of the\n"
    "product runs, or there is nothing to remove; 6 stopped by\n"
    "the user (rolled back; a removal goes on the next time); 7 VHRT.dll or a script can't be\n"
    "loaded, or the trace can't be written (rolled back); 8 the removal left something behind;\n"
    "9 rolled back in part, or ended by a second Ctrl+C: the next run undoes the rest;\n"
    "10 the rights of an administrator are missing, or others than administrators could\n"
    "have changed what a product of the machine left; 3010 done, and a file in use waits for\n"
    "the system to start again.";

struct CommandLine {
    std::string folder;
    std::string target;
    std::string trace;
    std::string log;
    std::string plan;
    std::string answers;
    std::string save_answers;
    std::string data;
    std::string registry_root;
    std::vector<std::string> scripts;
    std::vector<std::string> variables;
    int language = 0;
    bool silent = false;
    bool notes = false;
    bool main_window = false;
    std::string uninstall;
    std::string modify;
    std::string sweep;
    std::string asked_in;
    unsigned long after = 0;
    bool removes = false;
    bool list = false;
    bool repair = false;
    bool allow_downgrade = false;
    bool show_log = false;
    bool verify = false;
};

bool IsIdentifier(const std::string& text)
{
    GUID id{};
    const std::wstring wide = host::Wide(text);
    return wide.size() == 38 && SUCCEEDED(IIDFromString(wide.c_str(), &id));
}

void Declare(CLI::App& app, CommandLine& line, bool packed)
{
    // A leading slash begins a path here, not an option.
    app.allow_windows_style_options(false);
    app.footer(footer);
    if (!packed)
        app.add_option("FOLDER", line.folder, "The setup folder")->check(host::not_empty);
    app.add_flag("--silent", line.silent, "Ask nothing, show no progress");
    app.add_flag("--notes", line.notes, "Show what the engine notes, such as the steps of access rights");
    app.add_flag("--main-window", line.main_window, "Show the setup before a window of its own");
    app.add_option("--target", line.target, "Install to this folder")->type_name("DIR")->check(host::not_empty);
    CLI::Option* trace = app.add_option("--trace", line.trace, "Write the library's trace to this file")
                             ->type_name("FILE")
                             ->check(host::not_empty);
    app.add_option("--log", line.log,
                   "Append to this file what is done, decided and said, and why; passwords are masked")
        ->type_name("FILE")
        ->check(host::not_empty);
    app.add_option("--var", line.variables, "Set a variable; may be given again")
        ->type_name("NAME=VALUE")
        ->expected(1)
        ->take_all();
    CLI::Option* save_answers =
        app.add_option("--save-answers", line.save_answers,
                       "Write to this file what the user chooses, once the run is done; passwords are left out")
            ->type_name("FILE")
            ->check(host::not_empty);
    CLI::Option* answers =
        app.add_option("--answers", line.answers, "Ask nothing, and take what --save-answers wrote to this file")
            ->type_name("FILE")
            ->check(host::not_empty);
    CLI::Option* uninstall =
        app.add_option("--uninstall", line.uninstall,
                       "Remove what the setup in FOLDER, or the product of this identifier, installed")
            ->type_name("[GUID]")
            ->expected(0, 1);
    CLI::Option* list = app.add_flag("--list", line.list, "Show what is installed");
    CLI::Option* modify =
        app.add_option("--modify", line.modify, "Run the setup of this product again, from where it was")
            ->type_name("GUID")
            ->check(host::not_empty);
    app.add_flag("--repair", line.repair, "Bring back what is missing or damaged");
    CLI::Option* plan =
        app.add_flag("--plan{text}", line.plan,
                     "Show what would be written, replaced, removed and kept, and why; nothing is touched but\n"
                     "for what the script does beside the engine, such as files that it writes itself")
            ->type_name("[=text|json]")
            ->check(CLI::IsMember({"text", "json"}).description(""));
    app.add_flag("--allow-downgrade", line.allow_downgrade, "Take a version lower than the installed one");
    // How a run gets its rights, and how the kept host ends itself.
    app.add_option(host::rights_option, line.asked_in)->group("");
    app.add_option("--sweep", line.sweep)->group("");
    app.add_option("--after", line.after)->group("");
    app.add_option("--language", line.language, "Language identifier, such as 1031")->type_name("ID");
    app.add_option("--script", line.scripts, "Run this file in place of the setup's script; may be given again")
        ->type_name("FILE")
        ->expected(1)
        ->take_all();
    app.add_option("--data", line.data, "Keep install logs in this folder")->type_name("DIR")->check(host::not_empty);
    app.add_option("--registry-root", line.registry_root, "Keep the whole registry below this key")
        ->type_name("KEY")
        ->check(host::not_empty);
    app.add_flag("--show-log", line.show_log, "Show at the end what is recorded for removal");
    app.add_flag("--verify", line.verify, "Show at the end what is installed, each file compared with its source");
    modify->excludes(uninstall)->excludes(list);
    list->excludes(uninstall);
    plan->excludes(trace)->excludes(list);
    for (CLI::Option* option : {save_answers, answers})
        option->excludes(uninstall)->excludes(list);
    save_answers->excludes(answers);
    app.final_callback([&line, uninstall, packed] {
        line.removes = uninstall->count() > 0;
        // A folder behind --uninstall is the setup folder.
        if (line.folder.empty() && !line.uninstall.empty() && !IsIdentifier(line.uninstall))
            line.folder = std::exchange(line.uninstall, {});
        for (const auto& [option, given] : {std::pair{"--uninstall", line.uninstall}, {"--modify", line.modify}})
            if (!given.empty() && !IsIdentifier(given))
                throw CLI::ValidationError(option, "wants an identifier in braces, not " + given);
        if (!packed && line.folder.empty() && line.uninstall.empty() && line.modify.empty() && line.sweep.empty() &&
            !line.list)
            throw CLI::RequiredError("FOLDER");
    });
}

host::ExitCode Perform(const CommandLine& line, host::RunOptions options, std::shared_ptr<const vh::engine::Pack> pack)
{
    // Scripts of a folder may call libraries beside the host; nothing else does.
    if (line.list || line.removes || !line.sweep.empty())
        host::KeepToSystemLibraries();
    if (!line.sweep.empty()) {
        host::SweepAfter(host::Wide(line.sweep), line.after);
        return host::exit_done;
    }
    if (line.list)
        return host::ListProducts(options.data_folder);
    std::optional<host::PackedSetup> packed;
    if (pack && options.guid.empty()) {
        packed.emplace(std::move(pack));
        options.pack = packed->Contents();
        options.setup_folder = packed->SetupFolder();
        options.library_folder = packed->LibraryFolder();
    }
    if (line.removes)
        return host::RemoveSetup(options);
    return line.modify.empty() ? host::RunSetup(options) : host::ModifyProduct(options);
}

host::RunOptions OptionsOf(const CommandLine& line)
{
    host::RunOptions options;
    options.setup_folder = host::PathOf(line.folder);
    options.guid = host::Wide(line.modify.empty() ? line.uninstall : line.modify);
    options.repair = line.repair;
    options.allow_downgrade = line.allow_downgrade;
    // Patterns are the engine's.
    options.target = line.target.find('<') == std::string::npos ? host::PathOf(line.target) : host::Wide(line.target);
    options.trace_file = host::PathOf(line.trace);
    options.log_file = host::PathOf(line.log);
    options.registry_root = host::Wide(line.registry_root);
    options.data_folder = host::PathOf(line.data);
    for (const std::string& script : line.scripts)
        options.scripts.push_back(host::PathOf(script));
    for (const std::string& variable : line.variables) {
        const std::size_t equals = variable.find('=');
        if (equals == 0 || equals == std::string::npos)
            throw std::invalid_argument("--var wants NAME=VALUE, not " + variable);
        options.variables[host::Wide(variable.substr(0, equals))] = host::Wide(variable.substr(equals + 1));
    }
    options.language = line.language;
    options.plan = line.plan.empty()     ? host::PlanForm::none
                   : line.plan == "json" ? host::PlanForm::json
                                         : host::PlanForm::text;
    options.save_answers = host::PathOf(line.save_answers);
    if (!options.save_answers.empty())
        host::CheckPlaceForAnswers(options.save_answers);
    options.silent = line.silent || (options.plan != host::PlanForm::none && options.save_answers.empty());
    if (!line.answers.empty())
        host::TakeAnswers(options, host::PathOf(line.answers));
    options.notes = line.notes;
    options.main_window = line.main_window;
    options.show_log = line.show_log;
    options.verify = line.verify;
    return options;
}

// Everything that is said from now on is in the log too; it is there until the program ends.
void StartLog(host::RunOptions& options, int count, wchar_t** words)
{
    if (options.log_file.empty())
        return;
    static host::RunLog log(options.log_file);
    for (const auto& [name, value] : options.variables)
        log.Hide(name, value);
    options.on_variable = [](const std::wstring& name, const std::wstring& value) {
        log.Hide(name, value);
        log.Write(host::Level::note, L"variable " + host::MaskedWord(name + L"=" + value));
    };
    std::wstring line = host::ProgramName() + L" " + host::Wide(host::product_version) + L":";
    for (int i = 1; i < count; ++i)
        line += L" " + host::MaskedWord(words[i]);
    log.Write(host::Level::info, line);
    host::Overhear([](host::Level level, std::wstring_view text) { log.Write(level, text); });
}

host::ExitCode PerformLogged(const CommandLine& line, host::RunOptions options,
                             std::shared_ptr<const vh::engine::Pack> pack)
{
    host::ExitCode code = host::exit_setup;
    try {
        code = Perform(line, std::move(options), std::move(pack));
    } catch (const vh::engine::engine_error& error) {
        host::Complain(error.message().Text());
        code = host::CodeOf(error);
    } catch (const std::exception& error) {
        host::Complain(host::Wide(error.what()));
    }
    host::MentionExit(code);
    return code;
}

host::ExitCode Run(int count, wchar_t** words)
{
    const auto pack = vh::engine::Pack::Open(host::ProgramFile());
    // Whoever puts a library beside a setup that was downloaded does not get it loaded.
    if (pack)
        host::KeepToSystemLibraries();
    CommandLine line;
    CLI::App app(pack ? packed_description : description, host::Utf8(host::ProgramName()));
    Declare(app, line, pack != nullptr);
    host::RunOptions options;
    try {
        if (!host::ParseCommandLine(app, count, words))
            return host::exit_done;
        if (!line.asked_in.empty() && !host::TakeRunOver(host::Wide(line.asked_in)))
            return host::exit_rights;
        options = OptionsOf(line);
        if (options.plan == host::PlanForm::json)
            host::ReserveOutput();
        StartLog(options, count, words);
    } catch (const CLI::ParseError&) {
        return host::exit_usage;
    } catch (const std::exception& error) {
        host::Complain(host::Wide(error.what()));
        return host::exit_usage;
    }
    return SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) ? PerformLogged(line, std::move(options), pack)
                                                                        : host::exit_library;
}

} // namespace

int wmain(int count, wchar_t** words)
{
    host::ShareConsole();
    host::ExitCode code = host::exit_setup;
    try {
        code = Run(count, words);
    } catch (const std::exception& error) {
        host::Complain(host::Wide(error.what()));
    }
    // Nobody is asked for anything in a silent run, however it ends.
    if (std::none_of(words, words + count, [](const wchar_t* word) { return std::wstring_view(word) == L"--silent"; }))
        host::ShowComplaints();
    return code;
}
