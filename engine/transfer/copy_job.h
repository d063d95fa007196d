// Directories and copy jobs that scripts ask for.
#pragma once

#include "../object.h"
#include "file_writer.h"

namespace vh::engine {

// Flags of a copy job; other bits are ignored.
enum CopyFlags : unsigned long {
    copy_subfolders = CopySubfolders,
    copy_existing_stay = CopyExistingStay, // never overwrite
    copy_by_version = CopyByVersion,       // an older version does not replace a newer one
    copy_newer_only = CopyNewerOnly,       // an older time does not replace a newer one
    copy_unlogged = CopyUnlogged,          // not for removal
    copy_permanent = CopyPermanent,        // logged, but stays at removal
    copy_over_read_only = CopyOverReadOnly,
};

class FileOperations final : public engine_object<FileOperations, ISetupFileOps> {
public:
    using engine_object::engine_object;

    // Patterns are substituted. A relative source lies in the setup folder, a relative target in TARGETDIR. With
    // wildcards, or when it ends in a backslash or is a folder, the target is the folder to copy to.
    HRESULT STDMETHODCALLTYPE CreateCopyJob(BSTR source, BSTR target, unsigned long flags,
                                            ISetupCopyJob** job) override;
    HRESULT STDMETHODCALLTYPE MakeDirectory(BSTR path, ISetupLog* log) override;
};

class CopyJob final : public engine_object<CopyJob, ISetupCopyJob> {
public:
    CopyJob(std::shared_ptr<Core> core, std::vector<FileToWrite> files, unsigned long flags)
        : engine_object(std::move(core)), m_files(std::move(files)), m_flags(flags)
    {
    }

    HRESULT STDMETHODCALLTYPE GetTotals(ISetupCopyTotals** totals) override;
    // A failure undoes what the job did.
    HRESULT STDMETHODCALLTYPE Run(ISetupLog* log, IUnknown* progress) override;

private:
    uint64_t Total() const;

    std::vector<FileToWrite> m_files;
    unsigned long m_flags;
};

} // namespace vh::engine
