// A setup in one file: this program with the setup behind it. What a run needs as files is unpacked for its time.
#pragma once

#include <memory>
#include <string>

#include "engine/product/pack.h"
#include "engine/support_folder.h"

namespace host {

// From here on libraries without a path are looked for in the system's folder, and in those that are added, but never
// beside the program, in the current folder or in those of the PATH.
void KeepToSystemLibraries();

class PackedSetup {
public:
    // Unpacks the libraries and the setup folder, but no payload, and adds both folders to those in which libraries are
    // looked for. Throws engine_error.
    explicit PackedSetup(std::shared_ptr<const vh::engine::Pack> pack);

    const std::shared_ptr<const vh::engine::Pack>& Contents() const { return m_pack; }
    std::wstring LibraryFolder() const;
    std::wstring SetupFolder() const;

private:
    std::shared_ptr<const vh::engine::Pack> m_pack;
    vh::engine::SupportFolder m_folder; // goes with the object, or with the next start
};

} // namespace host
