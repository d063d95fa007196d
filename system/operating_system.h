// Operating systems by number and by name.
#pragma once

#include <cstdint>
#include <string_view>

namespace vh {

// The number of a system; 0 for one that is not known. `known` may be false beside a number that is a guess.
struct operating_system {
    uint32_t code = 0;
    bool known = false;
};

// Platform, major and minor are those that the system tells. `is_me`: its library has the version 4.90.
operating_system OperatingSystemOf(uint32_t platform, uint32_t major, uint32_t minor, bool is_me);
operating_system CurrentOperatingSystem();

// The name of a code, empty for an unknown one. A code of 0 is the current system's, and so is an extra value of 0;
// the extra value is the system's edition, which no name shows.
const wchar_t* GetOsNameText(uint32_t code, uint32_t extra);

// By the file version of the system library.
bool IsWindowsMe();

} // namespace vh
