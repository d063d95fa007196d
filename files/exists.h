// The one test of existence.
#pragma once

#include <cstdint>
#include <string_view>

namespace vh {

// What the path must be, and what a failure means. File and directory together accept either.
enum exists_mask : unsigned {
    exists_file = 4,
    exists_directory = 8,
    // A path with a URL prefix is tested by opening it.
    exists_url = 16,
    // An error that does not say "not there" raises file_exception.
    exists_raise = 32,

    test_file = exists_file | exists_url | exists_raise,
    test_directory = exists_directory | exists_url | exists_raise,
    test_either = exists_file | exists_directory | exists_url | exists_raise
};

// Costs one look at the attributes when nothing is special. Null counts as empty.
bool exists(const wchar_t* path, unsigned mask);

// The test's answer, the code of the error that it met, or `other` for any other trouble.
int32_t TestPath(const wchar_t* path, unsigned mask, int32_t present, int32_t absent, int32_t other);

// 0 when the disk of the path is there, -2 when it is not ready, else -1.
int32_t DiskState(std::wstring_view path);

} // namespace vh
