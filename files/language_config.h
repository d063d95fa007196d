// What a setup's configuration file says about its languages.
#pragma once

#include <cstdint>
#include <set>

#include "../scriptdata/stringx.h"

class LanguageConfig {
public:
    // A file that can't be read leaves everything as it is by default.
    void Read(std::wstring_view path);
    bool IsSupported(uint16_t id) const { return supported.contains(id); }

    bool enableLangDlg = false;
    uint16_t defaultLanguage = 9;
    std::set<uint16_t> supported;
    std::set<uint16_t> requireExactLangMatch;
    std::set<uint16_t> rtlLangs;
    bool allRequireExactMatch = false;
    stringx path;
};
