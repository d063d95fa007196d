// A setup in one file: this program with the setup behind it. What a run needs as files is unpacked for its time.
#pragma once

#include <memory>
#include <string>

#include "engine/product/pack.h"
#include "engine/support_folder.h"
#include "exit_codes.h"

namespace host {

struct RunOptions;

class PackedSetup {
public:
    // Unpacks the libraries and the setup folder, but no payload. From here on libraries without a path are looked for
    // there and in the system's folder only, never beside the program. Throws engine_error.
    explicit PackedSetup(std::shared_ptr<const vh::engine::Pack> pack);

    const std::shared_ptr<const vh::engine::Pack>& Contents() const { return m_pack; }
    std::wstring LibraryFolder() const;
    std::wstring SetupFolder() const;

private:
    std::shared_ptr<const vh::engine::Pack> m_pack;
    vh::engine::SupportFolder m_folder; // goes with the object, or with the next start
};

// A setup in one file runs as its own program; the words of this one that name the product are not for it.
ExitCode RunPackedSetup(const std::wstring& file, const RunOptions& options);

} // namespace host
