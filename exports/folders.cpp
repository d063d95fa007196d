// Program folders and shortcuts: the script's arguments turned into calls of the engine's shell service.
#include "vhrt/folders.h"

#include "../diagnostics/trace.h"
#include "../diagnostics/trace_formats.h"
#include "../runtime/add_texts.h"
#include "../runtime/frame.h"
#include "../scriptdata/results.h"
#include "../system/command_line.h"

namespace {

constexpr vh::TraceFormats add_formats =
    VH_TRACE_FORMATS(L"\t\t", L"ProgramFolder=%s\tItemName=%s\tCommandLine= %s\tWorkingDir=%s\tIconFile=%s\t"
                              L"IconIndex=%ld\tShortcutKey=%s\tFlags=%ld");
constexpr vh::TraceFormats replace_formats =
    VH_TRACE_FORMATS(L"\t", L"ProgramFolder=%s\tItemName=%s\tNewItemName=%s\tCommandLine=%s\tWorkingDir=%s\t"
                            L"IconPath=%s\tIcon=%ld\tShortcutKey=%s\tFlags=%ld");
constexpr vh::TraceFormats item_formats = VH_TRACE_FORMATS(L"\t", L"Icon=%s");
constexpr vh::TraceFormats folder_formats = VH_TRACE_FORMATS(L"\t", L"Folder=%s");

constexpr const wchar_t* no_key = L"None";
constexpr int32_t text_size = 1024; // of the buffers whose size a script does not give

// The service, asked for anew by each call; its absence is the result.
template <class Body>
int32_t OnShell(const ObjectContext& context, Body&& body)
{
    vh::com_ptr<ISetupShell> shell;
    const HRESULT code = context.Ask(shell);
    return FAILED(code) ? code : body(*shell.get());
}

// The pinning and start menu properties that flags set, in the order of writing.
struct FlagProperty {
    int32_t flag;
    const wchar_t* key;
    const wchar_t* value;
};
constexpr FlagProperty flag_properties[] = {
    {IconNoPin, L"{9F4C2855-9F79-4B39-A8D0-E1D42DE1D5F3}, 9", L"-1"},
    {IconNotNew, L"{9F4C2855-9F79-4B39-A8D0-E1D42DE1D5F3}, 8", L"-1"},
    {IconStartPin, L"{9F4C2855-9F79-4B39-A8D0-E1D42DE1D5F3}, 12", L"1"},
};

// Flags and the show commands that they stand for; the first flag that is set counts.
struct FlagShow {
    int32_t flag;
    long command;
};
constexpr FlagShow flag_shows[] = {
    {IconMaximized, SW_SHOWMAXIMIZED}, {IconMinimized, SW_SHOWMINNOACTIVE}, {IconNormal, SW_SHOWNORMAL}};

// What a script says about a shortcut.
struct IconTexts {
    const wchar_t* command_line;
    const wchar_t* working_dir;
    const wchar_t* icon_file;
    int32_t icon_index;
    const wchar_t* shortcut_key;
    int32_t flags;
};

// Runs the steps in turn; the first failure ends them.
template <class... Steps>
HRESULT InTurn(Steps&&... steps)
{
    HRESULT code = S_OK;
    (void)((SUCCEEDED(code = steps()) && ...));
    return code;
}

HRESULT Describe(ISetupShortcut& shortcut, const IconTexts& texts)
{
    const auto command = vh::SplitCommandLine(vh::View(texts.command_line));
    const vh::bstr target(command.target);
    return InTurn([&] { return shortcut.SetTarget(target.get()); },
                  [&] { return shortcut.SetArguments(vh::bstr(command.arguments).get()); },
                  [&] { return shortcut.SetWorkingDir(vh::TextOrEmpty(texts.working_dir).get()); },
                  [&] {
                      return shortcut.SetHotKey(
                          vh::bstr(vh::IsEmpty(texts.shortcut_key) ? no_key : texts.shortcut_key).get());
                  },
                  [&] {
                      const vh::bstr icon(vh::IsEmpty(texts.icon_file) ? command.target : vh::View(texts.icon_file));
                      return shortcut.SetIcon(icon.get(), texts.icon_index);
                  },
                  [&]() -> HRESULT {
                      for (const FlagShow& show : flag_shows)
                          if (texts.flags & show.flag)
                              return shortcut.SetShowCommand(show.command);
                      return S_OK;
                  });
}

// A shell without properties, or one that refuses them, is no failure.
void SetFlagProperties(const vh::com_ptr<ISetupShortcut>& shortcut, int32_t flags)
{
    const auto properties = shortcut.query<ISetupShortcutProperties>();
    if (!properties)
        return;
    for (const FlagProperty& property : flag_properties)
        if (flags & property.flag)
            properties->SetProperty(vh::bstr(property.key).get(), vh::bstr(property.value).get());
}

int32_t Save(const ObjectContext& context, ISetupShortcut& shortcut, std::wstring_view path)
{
    vh::variant target(path);
    return vh::FailureOnly(shortcut.Save(context.log.get(), &target.get()));
}

// The shortcut under a path: the one that is there, or a new one.
HRESULT OpenOrMake(ISetupShell& shell, const stringx& path, bool may_exist, vh::com_ptr<ISetupShortcut>& shortcut)
{
    const vh::bstr name(path.view());
    VARIANT_BOOL exists = VARIANT_FALSE;
    if (const HRESULT code = shell.ItemExists(name.get(), &exists); FAILED(code))
        return code;
    if (exists && !may_exist)
        return -1;
    const HRESULT code = exists ? shell.OpenItem(name.get(), shortcut.put()) : shell.NewItem(shortcut.put());
    return vh::Given(code, shortcut);
}

int32_t MakeIcon(const ObjectContext& context, const wchar_t* folder, const wchar_t* item, const IconTexts& texts)
{
    if (vh::IsEmpty(item))
        return -1;
    return OnShell(context, [&](ISetupShell& shell) -> int32_t {
        if (vh::IsEmpty(folder))
            return -1;
        const stringx path = vh::Concat(vh::View(folder), vh::View(item));
        vh::com_ptr<ISetupShortcut> shortcut;
        if (const HRESULT code = OpenOrMake(shell, path, texts.flags & IconReplace, shortcut); FAILED(code))
            return code;
        if (const HRESULT code = Describe(*shortcut.get(), texts); FAILED(code))
            return code;
        SetFlagProperties(shortcut, texts.flags);
        return Save(context, *shortcut.get(), path);
    });
}

int32_t ChangeIcon(const ObjectContext& context, const wchar_t* folder, const wchar_t* item, const wchar_t* new_item,
                   const IconTexts& texts)
{
    if (vh::IsEmpty(item))
        return -1;
    return OnShell(context, [&](ISetupShell& shell) -> int32_t {
        if (vh::IsEmpty(folder))
            return -1;
        const stringxi old_path(vh::Concat(vh::View(folder), vh::View(item)));
        const stringxi new_path(
            vh::Concat(vh::View(folder), vh::IsEmpty(new_item) ? vh::View(item) : vh::View(new_item)));
        vh::com_ptr<ISetupShortcut> shortcut;
        if (const HRESULT code = OpenOrMake(shell, stringx(old_path), true, shortcut); FAILED(code))
            return code;
        if (const HRESULT code = Describe(*shortcut.get(), texts); FAILED(code))
            return code;
        const int32_t code = Save(context, *shortcut.get(), new_path);
        // The old name goes; one that differs in case only is the same shortcut.
        if (code == 0 && new_path != old_path)
            shell.RemoveItem(vh::bstr(old_path.view()).get());
        return code;
    });
}

// The command line that would start the shortcut's target.
HRESULT ReadCommandLine(ISetupShortcut& shortcut, stringx& line)
{
    vh::bstr target;
    if (const HRESULT code = shortcut.GetTarget(target.put()); FAILED(code))
        return code;
    vh::bstr arguments;
    if (const HRESULT code = shortcut.GetArguments(arguments.put()); FAILED(code))
        return code;
    const bool needs_quotes = target.view().find(L' ') != std::wstring_view::npos && !target.view().starts_with(L'"');
    const std::wstring_view quote = needs_quotes ? L"\"" : L"";
    line = vh::Concat(quote, target.view(), quote, std::wstring_view(arguments.empty() ? L"" : L" "), arguments.view());
    return S_OK;
}

// Adds what a list call of the shell gives to a script's list.
int32_t ListInto(ObjectContext& context, ListHandle list, const wchar_t* folder, ISetupShell& shell,
                 HRESULT (STDMETHODCALLTYPE ISetupShell::*names_of)(BSTR, SAFEARRAY**))
{
    vh::safe_array names;
    const HRESULT code = (shell.*names_of)(vh::TextOrEmpty(folder).get(), names.put());
    return FAILED(code) ? code : vh::AddTexts(context, list, names);
}

// A traced call on a folder; an empty one is a failure.
template <class Body>
int32_t OnFolder(ObjectContext* context, const wchar_t* trace_name, const wchar_t* folder, Body&& body)
{
    const vh::TracedCall call(trace_name, folder_formats.begin, folder);
    return vh::Framed(context, [&](ObjectContext& c) -> int32_t {
        const int32_t code = vh::IsEmpty(folder) ? -1 : OnShell(c, [&](ISetupShell& shell) -> int32_t {
            return vh::FailureOnly(body(shell, vh::TextOrEmpty(folder).get(), c.log.get()));
        });
        return call.End(code, folder_formats.failure, folder_formats.success, folder);
    });
}

} // namespace

int64_t AddIcon(ObjectContext* context, const wchar_t* folder, const wchar_t* item, const wchar_t* commandLine,
                const wchar_t* workingDir, const wchar_t* iconFile, int32_t iconIndex, const wchar_t* shortcutKey,
                int32_t flags)
{
    const auto index = static_cast<long>(iconIndex);
    const auto bits = static_cast<long>(flags);
    const vh::TracedCall call(L"AddFolderIcon", add_formats.begin, folder, item, commandLine, workingDir, iconFile,
                              index, shortcutKey, bits);
    return vh::Framed(context, [&](ObjectContext& c) -> int32_t {
        const int32_t code =
            MakeIcon(c, folder, item, {commandLine, workingDir, iconFile, iconIndex, shortcutKey, flags});
        return call.End(code, add_formats.failure, add_formats.success, folder, item, commandLine, workingDir, iconFile,
                        index, shortcutKey, bits);
    });
}

int64_t ReplaceIcon(ObjectContext* context, const wchar_t* folder, const wchar_t* item, const wchar_t* newItem,
                    const wchar_t* commandLine, const wchar_t* workingDir, const wchar_t* iconFile, int32_t iconIndex,
                    const wchar_t* shortcutKey, int32_t flags)
{
    const auto index = static_cast<long>(iconIndex);
    const auto bits = static_cast<long>(flags);
    const vh::TracedCall call(L"ReplaceFolderIcon", replace_formats.begin, folder, item, newItem, commandLine,
                              workingDir, iconFile, index, shortcutKey, bits);
    return vh::Framed(context, [&](ObjectContext& c) -> int32_t {
        const int32_t code =
            ChangeIcon(c, folder, item, newItem, {commandLine, workingDir, iconFile, iconIndex, shortcutKey, flags});
        return call.End(code, replace_formats.failure, replace_formats.success, folder, item, newItem, commandLine,
                        workingDir, iconFile, index, shortcutKey, bits);
    });
}

int64_t QueryIcon(ObjectContext* context, const wchar_t* folder, const wchar_t* item, wchar_t* commandLine,
                  int32_t size, wchar_t* workingDir, wchar_t* iconFile, int32_t* iconIndex, wchar_t* shortcutKey,
                  int32_t* flags)
{
    return vh::Framed(context, [&](ObjectContext& c) -> int32_t {
        if (vh::IsEmpty(item) || vh::IsEmpty(folder))
            return -1;
        return OnShell(c, [&](ISetupShell& shell) -> int32_t {
            vh::com_ptr<ISetupShortcut> shortcut;
            stringx line;
            const HRESULT opened = InTurn(
                [&] {
                    const stringx path = vh::Concat(vh::View(folder), vh::View(item));
                    const HRESULT code = shell.OpenItem(vh::bstr(path.view()).get(), shortcut.put());
                    return vh::Given(code, shortcut);
                },
                [&] { return ReadCommandLine(*shortcut.get(), line); });
            if (FAILED(opened))
                return opened;
            if (const int32_t result = vh::CopyOut(line, commandLine, size))
                return result;
            vh::bstr directory, icon, key;
            long index = 0, show = 0;
            const HRESULT read = InTurn([&] { return shortcut->GetWorkingDir(directory.put()); },
                                        [&] { return shortcut->GetIcon(icon.put(), &index); },
                                        [&] { return shortcut->GetHotKey(key.put()); });
            if (FAILED(read))
                return read;
            *iconIndex = index;
            if (vh::CopyOut(directory.view(), workingDir, text_size) || vh::CopyOut(icon.view(), iconFile, text_size) ||
                vh::CopyOut(key.empty() ? no_key : key.view(), shortcutKey, text_size))
                return -1;
            if (const HRESULT code = shortcut->GetShowCommand(&show); FAILED(code))
                return code;
            for (const FlagShow& known : flag_shows)
                if (show == known.command)
                    *flags = known.flag;
            return 0;
        });
    });
}

int64_t DeleteIcon(ObjectContext* context, const wchar_t* path)
{
    const vh::TracedCall call(L"DeleteFolderIcon", item_formats.begin, path);
    const auto end = [&](int32_t code) { return call.End(code, item_formats.failure, item_formats.success, path); };
    return vh::Framed(context, [&](ObjectContext& c) -> int32_t {
        if (vh::IsEmpty(path))
            return end(-1);
        vh::com_ptr<ISetupShell> shell;
        if (const HRESULT code = c.Ask(shell); FAILED(code))
            return end(code);
        // A shortcut that can't be removed leaves no end record.
        return FAILED(shell->RemoveItem(vh::TextOrEmpty(path).get())) ? -1 : end(0);
    });
}

int64_t CreateFolder(ObjectContext* context, const wchar_t* folder)
{
    return OnFolder(context, L"CreateProgramFolder", folder,
                    [](ISetupShell& shell, BSTR name, ISetupLog* log) { return shell.MakeFolder(name, log); });
}

int64_t DeleteFolder(ObjectContext* context, const wchar_t* folder)
{
    return OnFolder(context, L"DeleteProgramFolder", folder,
                    [](ISetupShell& shell, BSTR name, ISetupLog*) { return shell.RemoveFolder(name); });
}

int64_t ShowFolder(ObjectContext* context, const wchar_t* folder, int32_t command)
{
    return vh::Framed(context, [&](ObjectContext& c) {
        return OnShell(c, [&](ISetupShell& shell) {
            return vh::FailureOnly(shell.OpenFolderWindow(vh::TextOrEmpty(folder).get(), command));
        });
    });
}

int64_t EnumFoldersItems(ObjectContext* context, const wchar_t* folder, ListHandle items, ListHandle folders)
{
    return vh::Framed(context, [&](ObjectContext& c) -> int32_t {
        if (vh::IsEmpty(folder))
            return -1;
        return OnShell(c, [&](ISetupShell& shell) {
            const int32_t code = ListInto(c, folders, folder, shell, &ISetupShell::ListFolders);
            return code < 0 ? code : ListInto(c, items, folder, shell, &ISetupShell::ListItems);
        });
    });
}

int64_t _SetShortcutProperty(ObjectContext* context, const wchar_t* path, const wchar_t* key, const wchar_t* value)
{
    return vh::Framed(context, [&](ObjectContext& c) {
        return OnShell(c, [&](ISetupShell& shell) -> int32_t {
            if (vh::IsEmpty(path))
                return -1;
            const vh::bstr name = vh::TextOrEmpty(path);
            VARIANT_BOOL exists = VARIANT_FALSE;
            if (const HRESULT code = shell.ItemExists(name.get(), &exists); FAILED(code))
                return code;
            if (!exists)
                return HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);
            vh::com_ptr<ISetupShortcut> shortcut;
            vh::com_ptr<ISetupShortcutProperties> properties;
            VARIANT missing{};
            missing.vt = VT_ERROR;
            missing.scode = DISP_E_PARAMNOTFOUND;
            vh::variant target(path);
            VARIANT_BOOL done = VARIANT_FALSE;
            return InTurn(
                [&] {
                    const HRESULT code = shell.OpenItem(name.get(), shortcut.put());
                    return vh::Given(code, shortcut);
                },
                [&] { return FAILED(shortcut.query(properties)) ? E_NOINTERFACE : S_OK; },
                [&] { return properties->SetProperty(vh::TextOrEmpty(key).get(), vh::TextOrEmpty(value).get()); },
                [&] { return properties->SaveAs(0, target.get(), missing, missing); },
                [&] { return properties->Commit(&done); });
        });
    });
}
