// vhtool.exe: a command line for people who work with VHRT.
#include <functional>
#include <map>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <windows.h>

#include "code_page_option.h"
#include "exit_codes.h"
#include "exports_command.h"
#include "facts_command.h"
#include "host/command_line.h"
#include "host/console.h"
#include "host/text.h"
#include "ini_command.h"
#include "pack_command.h"
#include "picture_command.h"
#include "pictures/option_text.h"
#include "product_command.h"
#include "signing_command.h"
#include "skin_command.h"
#include "system_options.h"
#include "trace_command.h"
#include "types_command.h"

namespace {

struct CommandLine {
    std::string file;
    std::string output;
    std::string definition;
    std::string headers;
    bool types = false;
    bool constants = false;
    std::string library;
    bool json = false;
    unsigned seconds = 0;
    std::string other;
    std::string section;
    std::string key;
    std::string value;
    std::string separator = "=";
    tools::IniOptions ini;
    std::string size;
    tools::DrawingOptions drawing;
    bool overwrite = false;
    std::vector<std::string> folders;
    tools::PreviewOptions preview;
    tools::SigningOptions signing;
    std::string expect;
    tools::PackOptions pack;
    std::function<int()> run;
};

void DeclareTrace(CLI::App& app, CommandLine& line)
{
    CLI::App* trace = app.add_subcommand("trace", "Trace files of the library");
    trace->require_subcommand(1);
    CLI::App* decode = trace->add_subcommand("decode", "Write a trace file as plain text");
    decode->add_option("FILE", line.file, "The trace file")->required();
    decode->add_option("-o,--output", line.output, "Write to this file")->type_name("FILE");
    decode->callback([&line] {
        line.run = [&line] { return tools::DecodeTrace(host::PathOf(line.file), host::PathOf(line.output)); };
    });
    CLI::App* follow = trace->add_subcommand("follow", "Print records as they come, until Ctrl+C");
    follow->add_option("FILE", line.file, "The trace file")->required();
    follow->add_option("--for", line.seconds, "Stop after so many seconds")
        ->type_name("SECONDS")
        ->check(CLI::Range(1, 86400));
    follow->callback(
        [&line] { line.run = [&line] { return tools::FollowTrace(host::PathOf(line.file), line.seconds); }; });
}

// The library that a person names, or else the one beside this program.
std::wstring LibraryOf(const std::string& given)
{
    return given.empty() ? host::Join(host::ProgramFolder(), L"VHRT.dll") : host::PathOf(given);
}

// The folder that a person names, or else that of the SDK that this program belongs to.
std::wstring HeadersOf(const std::string& given)
{
    return given.empty() ? host::FullPath(host::Join(host::ProgramFolder(), L"..\\include\\exports\\vhrt"))
                         : host::PathOf(given);
}

void DeclareExports(CLI::App& app, CommandLine& line)
{
    CLI::App* exports =
        app.add_subcommand("exports", "List the exports of a library with their arguments, or what scripts can name");
    exports->add_option("DLL", line.file, "The library; without it VHRT.dll beside this program");
    exports->add_option("--def", line.definition, "Compare the numbers with this file")->type_name("FILE");
    CLI::Option* types =
        exports->add_flag("--types", line.types, "Declare what scripts can name, in TypeScript, for editors");
    exports->add_flag("--constants", line.constants, "List the constants of scripts in Markdown")->excludes(types);
    exports
        ->add_option("--headers", line.headers,
                     "Describe the functions from these headers; without it from include/exports/vhrt of the SDK")
        ->type_name("DIR")
        ->needs(types);
    exports->callback([&line] {
        line.run = [&line] {
            if (line.types)
                return tools::PrintTypes(HeadersOf(line.headers));
            if (line.constants)
                return tools::PrintConstants();
            return tools::ListExports(LibraryOf(line.file), host::PathOf(line.definition));
        };
    });
}

// One of the commands on INI files, with what all of them share.
CLI::App* DeclareIniCommand(CLI::App& ini, CommandLine& line, const char* name, const char* purpose, bool writes,
                            const std::function<int()>& run)
{
    CLI::App* command = ini.add_subcommand(name, purpose);
    command->add_option("FILE", line.file, "The INI file")->required();
    command->add_option("-s,--separator", line.separator, "The character between key and value; without it \"=\"")
        ->type_name("CHARACTER")
        ->check([](const std::string& text) {
            return host::Wide(text).size() == 1 ? std::string() : std::string("must be one character");
        });
    command->add_option("--code-page", line.ini.code_page, "Of files without a mark; without it the system's")
        ->type_name("NUMBER")
        ->check(tools::known_code_page);
    if (writes) {
        command->add_option("-o,--output", line.output, "Write to this file")->type_name("FILE");
        command->add_flag("--bare-keys", line.ini.bare_keys, "Write keys without a value without the separator");
        command->footer("Comments and blank lines are not kept. A save that fails leaves the old file.");
    }
    command->callback([&line, run] {
        line.run = [&line, run] {
            line.ini.separator = host::Wide(line.separator);
            line.ini.output = host::PathOf(line.output);
            return run();
        };
    });
    return command;
}

void DeclareIni(CLI::App& app, CommandLine& line)
{
    CLI::App* ini = app.add_subcommand("ini", "INI files, read as the library reads them");
    ini->require_subcommand(1);
    const auto text = [](const std::string& utf8) { return host::Wide(utf8); };
    CLI::App* get = DeclareIniCommand(*ini, line, "get", "Print the value of a key", false, [&line, text] {
        return tools::GetIniValue(host::PathOf(line.file), text(line.section), text(line.key), line.ini);
    });
    CLI::App* set = DeclareIniCommand(
        *ini, line, "set", "Give a key a value; what is missing is made. \"--\" goes before a value like \"-1\"", true,
        [&line, text] {
            return tools::SetIniValue(host::PathOf(line.file), text(line.section), text(line.key), text(line.value),
                                      line.ini);
        });
    for (CLI::App* command : {get, set}) {
        command->add_option("SECTION", line.section, "Its name without brackets")->required();
        command->add_option("KEY", line.key, "The key")->required();
    }
    set->add_option("VALUE", line.value, "The new value")->required();
    DeclareIniCommand(*ini, line, "sort", "Sort sections and keys", true,
                      [&line] { return tools::SortIniFile(host::PathOf(line.file), line.ini); });
    CLI::App* merge = DeclareIniCommand(*ini, line, "merge", "Set in FILE everything that OTHER has", true, [&line] {
        return tools::MergeIniFiles(host::PathOf(line.file), host::PathOf(line.other), line.ini);
    });
    merge->add_option("OTHER", line.other, "The other INI file")->required();
    DeclareIniCommand(*ini, line, "check", "Show encoding and counts, and every line that is dropped or stops a reader",
                      false, [&line] { return tools::CheckIniFile(host::PathOf(line.file), line.ini); });
}

void DeclarePicture(CLI::App& app, CommandLine& line)
{
    CLI::App* picture = app.add_subcommand("picture", "Pictures, read and drawn as the library does it");
    picture->require_subcommand(1);
    CLI::App* draw = picture->add_subcommand("draw", "Draw a picture onto a white sheet");
    CLI::App* info = picture->add_subcommand("info", "Print what a picture file holds, as one JSON object");
    for (CLI::App* command : {draw, info}) {
        command->add_option("FILE", line.file, "GIF, BMP, WMF, or what GDI+ reads")->required();
        command->add_option("--frame", line.drawing.frame, "Which image of the file, from 0")->type_name("NUMBER");
        command->footer("Results: 0 read, 5 ends too early, 13 damaged or no picture, 14 larger than the memory,\n"
                        "18 no such frame.");
    }
    draw->add_option("OUT", line.output, "The .bmp or .png file to write")
        ->required()
        ->check([](const std::string& path) {
            return tools::IsPictureOutput(path) ? std::string() : std::string("must end in .bmp or .png");
        });
    std::string tokens = "How it is drawn, tokens between commas:";
    for (const vh::option_token& token : vh::option_tokens)
        tokens.append(" ").append(token.name);
    draw->add_option("--options", line.drawing.text, tokens)->type_name("TEXT")->check([](const std::string& text) {
        const std::string unknown = tools::UnknownOption(text);
        return unknown.empty() ? unknown : "there is no option " + unknown;
    });
    draw->add_option("--size", line.size, "Of the sheet; without it the picture's own size")
        ->type_name("WxH")
        ->check([](const std::string& text) {
            SIZE size{};
            return tools::ReadSize(text, size) ? std::string() : std::string("must be like 640x480, 16384 at most");
        });
    draw->callback([&line] {
        line.run = [&line] {
            tools::ReadSize(line.size, line.drawing.size);
            return tools::DrawPicture(host::PathOf(line.file), host::PathOf(line.output), line.drawing);
        };
    });
    info->callback([&line] {
        line.run = [&line] { return tools::PrintPictureInfo(host::PathOf(line.file), line.drawing.frame); };
    });
}

void DeclareSkin(CLI::App& app, CommandLine& line)
{
    CLI::App* skin = app.add_subcommand("skin", "Skins of dialogs: the container, its text, and how it looks");
    skin->require_subcommand(1);
    const auto declare = [&](const char* name, const char* purpose, const char* from, const char* from_purpose,
                             const std::function<int()>& run) {
        CLI::App* command = skin->add_subcommand(name, purpose);
        command->add_option(from, line.file, from_purpose)->required();
        command->callback([&line, run] { line.run = run; });
        return command;
    };
    const auto from = [&line] { return host::PathOf(line.file); };
    const auto to = [&line] { return host::PathOf(line.output); };
    CLI::App* pack = declare("pack", "Make a container of all files of a folder", "FOLDER",
                             "With skin.ini and pictures", [from, to] { return tools::PackSkin(from(), to()); });
    pack->add_option("FILE", line.output, "The container to write")->required();
    CLI::App* unpack = declare("unpack", "Write the entries of a container as files", "FILE", "The container",
                               [from, to, &line] { return tools::UnpackSkin(from(), to(), line.overwrite); });
    unpack->add_option("FOLDER", line.output, "Made if it is not there")->required();
    unpack->add_flag("--overwrite", line.overwrite, "Replace files that are there");
    declare("list", "Print bytes, size of the picture and name of each entry", "FILE", "The container",
            [from] { return tools::ListSkin(from()); });
    declare("check", "Name what is wrong in a skin, and where", "PATH", "A folder or a container",
            [from] { return tools::CheckSkinFiles(from()); });
    CLI::App* preview = declare("preview", "Draw a dialog in each section, as PNG", "PATH", "A folder or a container",
                                [from, to, &line] { return tools::ShowSkin(from(), to(), line.preview); });
    preview->add_option("OUT", line.output, "The folder for the pictures, made if it is not there")->required();
    preview->add_option("--section", line.preview.section, "Only for the dialog of this name")->type_name("NAME");
    preview->add_option("--language", line.preview.language, "For dialogs of this language, such as 1031")
        ->type_name("ID");
}

void DeclareSigning(CLI::App& app, CommandLine& line)
{
    const auto declare = [&](const char* name, const char* purpose, const std::function<int()>& run) {
        CLI::App* command = app.add_subcommand(name, purpose);
        command->add_option("FILE", line.file, "The data file")->required()->check(host::not_empty);
        command->callback([&line, run] { line.run = run; });
        return command;
    };
    const auto file = [&line] { return host::PathOf(line.file); };
    CLI::App* sign = declare("sign", "Sign a data file", nullptr);
    CLI::Option* key = sign->add_option("--key", line.signing.key, "The private key, a PVK file")->type_name("FILE");
    CLI::Option* certificate =
        sign->add_option("--certificate", line.signing.certificate, "The certificates, that of the key among them")
            ->type_name("FILE");
    for (CLI::Option* given : {key, certificate})
        given->check(host::not_empty);
    key->needs(certificate);
    certificate->needs(key);
    CLI::Option* specification =
        sign->add_option("--specification", line.signing.specification,
                         "Instead of both: a PFX file, or *STORE*LOCATION:SUBJECT, *STORE*LOCATION:|THUMBPRINT")
            ->type_name("TEXT")
            ->check(host::not_empty)
            ->excludes(key);
    sign->add_option("--password-file", line.signing.password_file, "Its first line is the password of the key")
        ->type_name("FILE")
        ->check(host::not_empty);
    sign->footer("Without a password file VHTOOL_PASSWORD of the environment counts; a console is asked if need be.");
    sign->callback([&line, sign, key, specification, file] {
        if (key->empty() && specification->empty())
            throw CLI::RequiredError("--key or --specification");
        line.run = [file, &line] { return tools::SignDataFile(file(), line.signing); };
    });
    CLI::App* verify = declare("verify", "Verify a data file, and print what is known as one JSON object", nullptr);
    CLI::Option* expect =
        verify->add_option("--expect", line.expect, "A part of the signer's subject, or \"|\" and the thumbprint")
            ->type_name("TEXT");
    verify->callback([&line, expect, file] {
        line.run = [&line, expect, file] {
            const std::wstring wanted = host::Wide(line.expect);
            return tools::VerifyDataFile(file(), expect->empty() ? nullptr : &wanted);
        };
    });
    declare("trust", "Trust the signer of a data file that verifies", [file] { return tools::TrustDataFile(file()); });
}

void DeclareProduct(CLI::App& app, CommandLine& line)
{
    CLI::App* product = app.add_subcommand("product", "Setup folders");
    product->require_subcommand(1);
    CLI::App* check = product->add_subcommand("check", "Name all that is wrong in a setup folder, and where");
    check->add_option("FOLDER", line.folders, "Holds product.json, the payload and the scripts; may be given again")
        ->required()
        ->check(host::not_empty);
    check->footer("Looked at are the product file, the payload that it names, variables in patterns, features that no\n"
                  "setup type selects, and the language of the scripts. Nothing is run or written.");
    check->callback([&line] {
        line.run = [&line] {
            std::vector<std::wstring> folders;
            for (const std::string& folder : line.folders)
                folders.push_back(host::PathOf(folder));
            return tools::CheckSetups(folders);
        };
    });
}

void DeclarePack(CLI::App& app, CommandLine& line)
{
    static const std::map<std::string, tools::Compression> compressions = {
        {"none", tools::Compression::none}, {"fast", tools::Compression::fast}, {"best", tools::Compression::best}};
    CLI::App* pack = app.add_subcommand("pack", "Make one file to hand out of a setup folder");
    pack->add_option("FOLDER", line.file, "Holds product.json, the payload and the scripts")
        ->required()
        ->check(host::not_empty);
    pack->add_option("SETUP", line.output, "The file to write, such as setup.exe")->required()->check(host::not_empty);
    pack->add_option("--compress", line.pack.compression, "none, fast or best (the default)")
        ->type_name("HOW")
        ->transform(CLI::CheckedTransformer(compressions));
    pack->footer(
        "The file is vhhost.exe with its libraries and the folder behind it; it knows the options of vhhost.\n"
        "The payload is read from it as it is installed; all other files are there as a folder while it runs.");
    pack->callback([&line] {
        line.run = [&line] {
            line.pack.folder = host::PathOf(line.file);
            line.pack.output = host::PathOf(line.output);
            return tools::PackSetup(line.pack);
        };
    });
}

void DeclareFacts(CLI::App& app, CommandLine& line)
{
    CLI::App* facts = app.add_subcommand("facts", "Print what the library tells about this machine");
    facts->add_flag("--json", line.json, "As one JSON object");
    facts->add_option("--library", line.library, "Ask this library; without it VHRT.dll beside this program")
        ->type_name("PATH");
    facts->callback([&line] { line.run = [&line] { return tools::PrintFacts(LibraryOf(line.library), line.json); }; });
}

} // namespace

int wmain(int count, wchar_t** words)
{
    // All others are named with their path.
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
    CLI::App app(
        "Packs and checks setups, looks into files and libraries of VHRT, signs data files, registers, and removes.",
        "vhtool");
    app.require_subcommand(1);
    // A leading slash begins a path here, not an option; subcommands take this over.
    app.allow_windows_style_options(false);
    app.footer("Exit codes: 0 done, 1 damaged or different, 2 wrong command line, 4 a file can't be read or written.");
    CommandLine line;
    DeclareTrace(app, line);
    DeclareExports(app, line);
    DeclareIni(app, line);
    DeclarePicture(app, line);
    DeclareSkin(app, line);
    DeclareSigning(app, line);
    DeclareProduct(app, line);
    DeclarePack(app, line);
    DeclareFacts(app, line);
    tools::DeclareSystemCommands(app, line.run);
    try {
        if (!host::ParseCommandLine(app, count, words))
            return tools::exit_done;
    } catch (const CLI::ParseError&) {
        return tools::exit_usage;
    }
    try {
        return line.run();
    } catch (const std::exception& error) {
        host::Complain(host::Wide(error.what()));
        return tools::exit_file;
    }
}
