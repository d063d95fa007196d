#include "system_options.h"

#include <memory>
#include <string>

#include "code_page_option.h"
#include "convert_command.h"
#include "host/command_line.h"
#include "host/text.h"
#include "pending_command.h"
#include "register_command.h"

namespace tools {

namespace {

struct Words {
    std::string first;
    std::string second;
    unsigned number = 0;
    bool json = false;
    bool at_reboot = false;
    bool ignore_files = false;
    bool per_user = false;
};

// A command with words of its own, which live as long as what runs it.
struct Command {
    Command(CLI::App& app, const char* name, const char* purpose, std::function<int()>& run, int (*work)(const Words&))
        : words(std::make_shared<Words>()), line(app.add_subcommand(name, purpose))
    {
        line->callback([&run, work, kept = words] { run = [work, kept] { return work(*kept); }; });
    }
    CLI::Option* Word(const char* name, std::string Words::*word, const char* purpose) const
    {
        return line->add_option(name, (*words).*word, purpose);
    }
    void Flag(const char* name, bool Words::*flag, const char* purpose) const
    {
        line->add_flag(name, (*words).*flag, purpose);
    }

    std::shared_ptr<Words> words;
    CLI::App* line;
};

void DeclarePending(CLI::App& app, std::function<int()>& run)
{
    CLI::App* pending = app.add_subcommand("pending", "File operations that are put off to a later moment of a setup");
    pending->require_subcommand(1);
    const Command list(*pending, "list", "Print source and target of each", run,
                       [](const Words& words) { return ListPending(host::PathOf(words.first), words.json); });
    list.Word("TARGET", &Words::first, "Print only the source that takes the place of this file")
        ->check(host::not_empty);
    list.Flag("--json", &Words::json, "As one JSON array");
    const Command record(
        *pending, "record", "Put off that SOURCE takes the place of TARGET", run, [](const Words& words) {
            return RecordPending(host::PathOf(words.first), host::PathOf(words.second), words.at_reboot);
        });
    record.Word("SOURCE", &Words::first, "The file to be moved")->required()->check(host::not_empty);
    record.Word("TARGET", &Words::second, "Without it SOURCE is deleted")->check(host::not_empty);
    record.Flag("--at-reboot", &Words::at_reboot, "To the next start of the system, not to \"pending apply\"");
    record.line->footer("What an operation had to move before to TARGET, or as TARGET, is deleted at once.");
    const Command apply(*pending, "apply", "Carry all out and empty the list", run,
                        [](const Words&) { return ApplyPending(); });
    const Command clear(*pending, "clear", "Empty the list and do nothing else", run,
                        [](const Words&) { return ClearPending(); });
}

void DeclareRemoveTree(CLI::App& app, std::function<int()>& run)
{
    const Command remove(
        app, "remove-tree", "Remove a file, or a folder with all that is in it", run,
        [](const Words& words) { return RemoveFolder(host::PathOf(words.first), words.ignore_files); });
    remove.Word("PATH", &Words::first, "Junctions below it go; what they lead to stays")
        ->required()
        ->check(host::not_empty)
        ->check([](const std::string& path) {
            return IsRoot(host::PathOf(path)) ? std::string("is no folder, but a drive or a share") : std::string();
        });
    remove.Flag("--ignore-files", &Words::ignore_files, "Pass over files that can't be deleted");
}

void DeclareConvert(CLI::App& app, std::function<int()>& run)
{
    const Command convert(app, "convert", "Write a UTF-16 text file in a code page", run, [](const Words& words) {
        return ConvertFile(host::PathOf(words.first), host::PathOf(words.second), words.number);
    });
    convert.Word("SOURCE", &Words::first, "The UTF-16 text, with a mark or without")
        ->required()
        ->check(host::not_empty);
    convert.Word("TARGET", &Words::second, "The file to write; what it held is lost, also when this fails")
        ->required()
        ->check(host::not_empty);
    convert.line->add_option("--code-page", convert.words->number, "Without it the system's")
        ->type_name("NUMBER")
        ->check(known_code_page);
}

template <bool Registers>
void DeclareRegister(CLI::App& app, std::function<int()>& run, const char* name, const char* purpose)
{
    const Command command(app, name, purpose, run, [](const Words& words) {
        return RegisterFile(host::PathOf(words.first), Registers, {host::PathOf(words.second), words.per_user});
    });
    command.Word("FILE", &Words::first, ".rgs, .dll, .ocx, .exe or .tlb")->required()->check(host::not_empty);
    command.Word("--module", &Words::second, "%MODULEPATH% in a script; without it the script's folder")
        ->type_name("PATH")
        ->check(host::not_empty);
    command.Flag("--per-user", &Words::per_user, "For this user, not for the machine");
}

} // namespace

void DeclareSystemCommands(CLI::App& app, std::function<int()>& run)
{
    DeclarePending(app, run);
    DeclareRemoveTree(app, run);
    DeclareConvert(app, run);
    DeclareRegister<true>(app, run, "register", "Register a server, a type library or a registration script");
    DeclareRegister<false>(app, run, "unregister", "Undo what \"register\" does");
}

} // namespace tools
