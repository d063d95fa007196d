#include "copy_job.h"

#include "logged_folders.h"

#include "removal.h"
#include "transfer_sink.h"

namespace vh::engine {

namespace {

class CopyTotals final : public engine_object<CopyTotals, ISetupCopyTotals> {
public:
    CopyTotals(std::shared_ptr<Core> core, uint64_t total) : engine_object(std::move(core)), m_total(total) {}

    HRESULT STDMETHODCALLTYPE GetLow(unsigned long* low) override
    {
        return Call("ISetupCopyTotals.GetLow")([&] { return Give(low, m_total & 0xFFFFFFFF); });
    }
    HRESULT STDMETHODCALLTYPE GetHigh(unsigned long* high) override
    {
        return Call("ISetupCopyTotals.GetHigh")([&] { return Give(high, m_total >> 32); });
    }

private:
    uint64_t m_total;
};

std::wstring AbsolutePath(const Core& core, BSTR given, std::wstring_view base)
{
    const std::wstring path = core.Substitute(TextOf(given));
    if (path.empty())
        throw engine_error(E_INVALIDARG, {}, L"an empty path");
    if (path.find(L"://") != std::wstring::npos)
        throw engine_error(E_NOTIMPL, path, L"the engine copies from and to folders only");
    return DriveOf(path).empty() ? JoinPath(core.Substitute(base), path) : path;
}

unsigned WriterFlags(unsigned long flags)
{
    unsigned translated = flags & copy_by_version ? 0u : static_cast<unsigned>(file_always_overwrite);
    if (flags & copy_existing_stay)
        translated |= file_never_overwrite;
    if (flags & copy_permanent)
        translated |= file_permanent;
    return translated;
}

FileToWrite CopyOf(const std::wstring& source, const std::wstring& target, const FileFacts& facts, unsigned long flags)
{
    FileToWrite file;
    file.source = source;
    file.target = target;
    file.size = facts.size;
    file.time = facts.time;
    file.attributes = facts.attributes;
    file.flags = WriterFlags(flags);
    file.overReadOnly = flags & copy_over_read_only;
    file.compare = true;
    return file;
}

// Links to folders are not followed.
void AddFiles(const std::wstring& folder, const std::wstring& target, std::wstring_view pattern, unsigned long flags,
              std::vector<FileToWrite>& files)
{
    // Folders below `folder`, by their path from there.
    std::vector<std::wstring> below;
    if (FactsOf(folder).folder())
        below.emplace_back();
    while (!below.empty()) {
        const std::wstring at = below.back();
        below.pop_back();
        for (const Entry& entry : ReadFolder(JoinPath(folder, at))) {
            const std::wstring path = JoinPath(at, entry.name);
            if (entry.facts.folder()) {
                if ((flags & copy_subfolders) && !(entry.facts.attributes & FILE_ATTRIBUTE_REPARSE_POINT))
                    below.push_back(path);
            } else if (MatchesPattern(entry.name, pattern)) {
                files.push_back(CopyOf(JoinPath(folder, path), JoinPath(target, path), entry.facts, flags));
            }
        }
    }
}

std::vector<FileToWrite> FilesFor(const std::wstring& source, const std::wstring& target, unsigned long flags)
{
    std::vector<FileToWrite> files;
    const std::wstring name = FileNameOf(source);
    if (name.find_first_of(L"*?") != std::wstring::npos) {
        AddFiles(FullPath(FolderOf(source)), FullPath(target), name, flags, files);
    } else if (const FileFacts facts = FactsOf(source); facts.file()) {
        const bool folder = target.back() == L'\\' || FactsOf(target).folder();
        files.push_back(CopyOf(FullPath(source), FullPath(folder ? JoinPath(target, name) : target), facts, flags));
    }
    if (files.empty())
        throw engine_error(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND), source, L"there is no such file to copy");
    return files;
}

// What the flags decide before the file is looked at more closely.
bool IsLeftOut(const FileToWrite& file, unsigned long flags)
{
    const FileFacts there = FactsOf(file.target);
    if (!there.file())
        return false;
    return (flags & copy_newer_only) && there.time >= file.time;
}

} // namespace

HRESULT FileOperations::CreateCopyJob(BSTR source, BSTR target, unsigned long flags, ISetupCopyJob** job)
{
    return Call("ISetupFileOps.CreateCopyJob", source, target, flags)([&] {
        auto files = FilesFor(AbsolutePath(core(), source, core().options.setupFolder),
                              AbsolutePath(core(), target, L"<TARGETDIR>"), flags);
        return GiveObject(job, make_object<CopyJob>(shared_core(), std::move(files), flags));
    });
}

HRESULT FileOperations::MakeDirectory(BSTR path, ISetupLog* log)
{
    return Call("ISetupFileOps.MakeDirectory", path)([&] {
        MakeLoggedFolders(core(), FullPath(AbsolutePath(core(), path, L"<TARGETDIR>")), log);
        return S_OK;
    });
}

uint64_t CopyJob::Total() const
{
    uint64_t total = 0;
    for (const FileToWrite& file : m_files)
        total += file.size;
    return total;
}

HRESULT CopyJob::GetTotals(ISetupCopyTotals** totals)
{
    return Call("ISetupCopyJob.GetTotals")(
        [&] { return GiveObject(totals, make_object<CopyTotals>(shared_core(), Total())); });
}

HRESULT CopyJob::Run(ISetupLog* log, IUnknown* progress)
{
    return Call("ISetupCopyJob.Run", log ? 1L : 0L)([&] {
        auto sink = com_ptr<IUnknown>(progress).query<IEngineProgress>();
        if (!sink)
            sink.attach(make_object<TransferSink>(shared_core(), Total()).detach());
        std::vector<FileToWrite> files;
        for (const FileToWrite& file : m_files) {
            if (IsLeftOut(file, m_flags)) {
                sink->Advance(file.size, file.target);
                core().log->Tell({Act::keep, Why::not_older, L"file", file.target});
            } else {
                files.push_back(file);
                files.back().loose = !log || (m_flags & copy_unlogged);
            }
        }
        WriteAllOrNothing(core(), files,
                          {[&](uint64_t bytes, const FileToWrite& file) { sink->Advance(bytes, file.target); }});
        return S_OK;
    });
}

} // namespace vh::engine
