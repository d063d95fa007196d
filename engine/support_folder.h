// The folder of a run's support files, below the temporary folder.
#pragma once

#include <string>

#include "../scriptdata/unique.h"

namespace vh::engine {

class SupportFolder {
public:
    // Makes the folder; those of runs that were killed go first. Others than administrators write nothing into that of
    // a run with their rights.
    explicit SupportFolder(const std::wstring& guid);
    // The folder goes.
    ~SupportFolder();
    SupportFolder(const SupportFolder&) = delete;
    SupportFolder& operator=(const SupportFolder&) = delete;

    const std::wstring& path() const { return m_path; }

private:
    std::wstring m_path;
    unique_file m_mark; // beside the folder, while the run lives
    unique_file m_held; // the folder of a run with the rights of an administrator
};

} // namespace vh::engine
