// The one test of existence.
#pragma once

namespace vh {

// What the path must be, and what a failure means. File and directory together accept either.
enum exists_mask : unsigned {
    exists_file = 4,
    exists_directory = 8,
    // A path with a URL prefix is tested by opening it.
    exists_url = 16,
    // An error that does not say "not there" raises file_exception.
    exists_raise = 32
};

// Costs one look at the attributes when nothing is special. Null counts as empty.
bool exists(const wchar_t* path, unsigned mask);

} // namespace vh
