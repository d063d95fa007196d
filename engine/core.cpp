#include "core.h"

#include <algorithm>
#include <array>

#include <shlobj.h>

#include "maintenance.h"
#include "product/this_system.h"
#include "services/registry_access.h"
#include "start_variables.h"
#include "windows/screen.h"

namespace vh::engine {

namespace {

// On a drive, on a share, or from the root of the current drive.
bool IsFullPath(std::wstring_view path)
{
    const auto slash = [](wchar_t unit) { return unit == L'\\' || unit == L'/'; };
    return !path.empty() && (slash(path[0]) || (path.size() > 2 && path[1] == L':' && slash(path[2])));
}

WORD ChosenLanguage(const Product& product, int wanted)
{
    for (WORD language : product.languages)
        if (language == wanted)
            return language;
    return product.languages.front();
}

// Puts the support files into their folder.
void CopySupportFiles(const Product& product, const std::wstring& folder)
{
    for (const auto& item : product.support.children)
        for (const FileGroup& group : item->groups)
            for (const ProductFile& file : group.files) {
                const std::wstring target = JoinPath(JoinPath(folder, group.target), file.path);
                MakeFolders(FolderOf(target));
                if (!CopyFileW(LongPath(file.source).c_str(), LongPath(target).c_str(), FALSE))
                    ThrowFileError(file.source, L"can't copy the support file", GetLastError());
            }
}

} // namespace

std::wstring SystemFolder(int folder)
{
    std::array<wchar_t, MAX_PATH> path{};
    return SUCCEEDED(SHGetFolderPathW(nullptr, folder, nullptr, 0, path.data())) ? path.data() : L"";
}

std::wstring DefaultDataDir(bool forMachine)
{
    return JoinPath(SystemFolder(forMachine ? CSIDL_COMMON_APPDATA : CSIDL_LOCAL_APPDATA), L"VHSetup");
}

Core::Core(Options given)
    : options(std::move(given)), product(std::make_shared<DataSet>()), screen(std::make_unique<Screen>(*this))
{
    options.setupFolder = FullPath(options.setupFolder);
    if (!FactsOf(options.setupFolder).folder())
        throw engine_error(HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND), options.setupFolder,
                           L"there is no such setup folder");
    // Throws for a root that does not exist.
    if (!options.registryRoot.empty())
        PlaceOf(options.registryRoot);
    product->product = ReadProduct(JoinPath(options.setupFolder, L"product.json"), options.pack.get());
    contextGuid = NewIdentifier();
    if (options.source.empty())
        options.source = options.setupFolder;
    if (options.dataDir.empty())
        options.dataDir = DefaultDataDir(product->product->scope == Scope::machine);
    log =
        std::make_unique<InstallLog>(JoinPath(JoinPath(options.dataDir, product->product->installGuid), L"install.log"),
                                     options.planOnly ? LogAccess::draft : LogAccess::claim);
    log->Listen(options.onDecision);
    ReportDamage();
    language = ChosenLanguage(*product->product, options.language ? options.language : LanguageOf(*log));
    if (options.language && language != options.language)
        Report({Severity::warning, product->product->file,
                L"there is no language " + Number(options.language) + L"; " + Number(language) + L" is taken",
                S_FALSE});
    product->FilterFor(language, ThisSystem());
    support = std::make_unique<SupportFolder>(contextGuid);
    supportDir = support->path();
    CopySupportFiles(*product->product, supportDir);
    SetVariables();
}

Core::~Core() = default;

void Core::ReportDamage()
{
    // A log that became something else may have millions of them.
    constexpr std::size_t told_lines = 20;
    const std::vector<long>& lines = log->DamagedLines();
    const auto warn = [&](const std::wstring& reason) {
        Report({Severity::warning, log->File(), reason, HRESULT_FROM_WIN32(ERROR_FILE_CORRUPT)});
    };
    for (std::size_t i = 0; i < std::min(lines.size(), told_lines); ++i)
        warn(L"line " + Number(lines[i]) + L" is damaged and was passed over");
    if (lines.size() > told_lines)
        warn(L"so were " + Number(static_cast<int64_t>(lines.size() - told_lines)) + L" further lines");
}

void Core::SetVariables()
{
    const Product& product_ = *product->product;
    for (const StartVariable& variable : start_variables)
        globalTexts.Set(variable.name, variable.value(*this));
    for (const wchar_t* name : {L"SUPPORTDIR", L"SHAREDSUPPORTDIR"})
        globalTexts.Protect(name, true);
    for (const auto& [name, value] : product_.variables)
        globalTexts.Set(name, value);
    for (const auto& [name, value] : options.variables)
        globalTexts.Set(name, value);
    const std::wstring target = Substitute(options.targetDir.empty() ? product_.target : options.targetDir, false);
    if (!options.targetDir.empty() && !IsFullPath(target))
        throw engine_error(E_INVALIDARG, options.targetDir, L"a target has to be a full path");
    if (!options.targetDir.empty() || !globalTexts.Find(L"TARGETDIR"))
        globalTexts.Set(L"TARGETDIR", options.targetDir.empty() ? target : FullPath(target));
}

void Core::Report(Message message)
{
    messages.push_back(message);
    if (options.onMessage)
        options.onMessage(message);
}

std::optional<std::wstring> Core::Variable(std::wstring_view name, bool local) const
{
    if (const std::wstring* value = local ? localTexts.Find(name) : nullptr)
        return *value;
    if (const std::wstring* value = globalTexts.Find(name))
        return *value;
    return std::nullopt;
}

std::wstring Core::Substitute(std::wstring_view text, bool local) const
{
    return SubstituteText(text, [&](std::wstring_view name) { return Variable(name, local); });
}

const std::wstring* Core::FindString(std::wstring_view id) const
{
    const Product& of = *product->product;
    for (WORD number : {language, of.languages.front()}) {
        const auto table = of.strings.find(number);
        if (table == of.strings.end())
            continue;
        const auto found = table->second.find(Upper(id));
        if (found != table->second.end())
            return &found->second;
    }
    return nullptr;
}

std::wstring Core::DisplayText(std::wstring_view text) const
{
    return SubstituteText(text, [&](std::wstring_view name) -> std::optional<std::wstring> {
        if (auto value = Variable(name, true))
            return value;
        const std::wstring* string = FindString(name);
        return string ? std::optional(*string) : std::nullopt;
    });
}

void Core::Advance(uint64_t bytes, const std::wstring& file)
{
    const uint64_t done = bytes < progress.total - progress.done ? progress.done + bytes : progress.total;
    progress = {done, progress.total, progress.total ? static_cast<int>(done * 100 / progress.total) : 100, file};
    if (options.onProgress && !options.onProgress(progress))
        cancelled = true;
    screen->Show(progress);
    if (cancelled)
        throw engine_error(HRESULT_FROM_WIN32(ERROR_CANCELLED), file, L"the transfer was cancelled");
}

std::wstring Core::FindFile(std::wstring_view name) const
{
    std::wstring path = Substitute(name);
    if (!DriveOf(path).empty())
        return path;
    const std::wstring supporting = JoinPath(supportDir, path);
    return FactsOf(supporting).file() ? supporting : JoinPath(options.setupFolder, path);
}

} // namespace vh::engine
