// A file under the name that it has on its way in.
#pragma once

#include "../files.h"

namespace vh::engine {

// Removes the temporary file unless it got its final name.
class TempFile {
public:
    explicit TempFile(std::wstring path) : m_path(std::move(path)) {}
    ~TempFile()
    {
        if (!m_done)
            RemoveFile(m_path);
    }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;

    void Done() { m_done = true; }

private:
    std::wstring m_path;
    bool m_done = false;
};

} // namespace vh::engine
