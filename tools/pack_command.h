// vhtool pack: a setup folder becomes one file to hand out.
#pragma once

#include <string>

namespace tools {

enum class Compression { none, fast, best };

struct PackOptions {
    std::wstring folder;
    std::wstring output;
    Compression compression = Compression::best;
};

// The output is written beside its place and gets its name when it is whole. Two packs of one folder are the same.
int PackSetup(const PackOptions& options);

} // namespace tools
