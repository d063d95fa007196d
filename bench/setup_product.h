// A made-up product to install: by the engine, by the host, and by a bare program.
#pragma once

#include <string>
#include <vector>

namespace bench {

struct shape {
    long files;
    std::size_t size;
};

class product {
public:
    // Makes the setup below a folder, a hundred files in each of its folders.
    product(const std::wstring& folder, shape of);

    long files() const { return m_files; }
    std::wstring Setup() const { return m_root + L"\\setup"; }
    std::wstring Target() const { return m_root + L"\\target"; }
    std::wstring Data() const { return m_root + L"\\data"; }

    // What is installed goes.
    void Clear() const;
    // One run of the engine in this process; throws when it fails.
    void Run() const;
    // One run of vhhost.exe; throws when it fails.
    struct memory {
        std::size_t working; // bytes, libraries included
        std::size_t of_its_own;
    };
    memory RunHost() const;
    // The bytes of the log that a run has left.
    std::string Log() const;

    // The same files with the same system calls: folders, copies under another name, times, the exchange of names, and
    // the bytes of the log, written for each 64 files and flushed at the end.
    void InstallBare(const std::string& log) const;
    // Looks at the size and time of every file that is to be installed, and of what stands in its place.
    void Walk() const;

private:
    void CopyBare(const std::wstring& name, char* block) const;

    std::wstring m_root;
    long m_files;
    std::vector<std::wstring> m_names; // below the setup folder
};

// The least that a record of the content takes: SHA-256 by the system's provider, of so many bytes.
void HashBare(std::size_t size);

} // namespace bench
