// What every test begins with: GoogleTest, the language's headers, and tables of cases.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <list>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <span>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "pinned.h"

#ifdef _WIN32
#include <objbase.h>

#include "../../scriptdata/unique.h"
#include "../../scriptdata/variant.h"
#include "replaced.h"
#include "temp_folder.h"

inline bool operator==(SIZE one, SIZE other) { return one.cx == other.cx && one.cy == other.cy; }
inline bool operator==(const RECT& one, const RECT& other) { return EqualRect(&one, &other) != FALSE; }
inline void PrintTo(SIZE size, std::ostream* stream) { *stream << size.cx << " x " << size.cy; }
inline void PrintTo(const RECT& place, std::ostream* stream)
{
    *stream << place.left << ", " << place.top << " to " << place.right << ", " << place.bottom;
}

namespace vh::test {

// The text that a call puts into a buffer, whose start and room it is given.
template <class Call>
std::wstring Filled(Call&& call)
{
    wchar_t text[1024] = L"";
    call(text, 1024);
    return text;
}

// A file beside the test program.
inline std::wstring Beside(const std::wstring& name)
{
    const std::filesystem::path own = Filled([](auto... to) { GetModuleFileNameW(nullptr, to...); });
    return (own.parent_path() / name).wstring();
}

// The thread's objects are its own while this lives.
struct Apartment : Pinned {
    Apartment() { EXPECT_GE(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), 0); }
    ~Apartment() { CoUninitialize(); }
};

// A dialog with nothing in it.
inline HWND NewDialog(const DLGTEMPLATE& head)
{
    const struct {
        DLGTEMPLATE dialog;
        WORD no_menu, no_class, no_title;
    } shape{head, 0, 0, 0};
    return CreateDialogIndirectParamW(
        nullptr, &shape.dialog, nullptr, [](HWND, UINT, WPARAM, LPARAM) -> INT_PTR { return FALSE; }, 0);
}

inline HWND NewWindow(const wchar_t* type, DWORD style, const RECT& place = {0, 0, 9, 9}, HWND parent = nullptr,
                      intptr_t id = 0, const wchar_t* text = L"")
{
    return CreateWindowExW(0, type, text, style, place.left, place.top, place.right - place.left,
                           place.bottom - place.top, parent, reinterpret_cast<HMENU>(id), nullptr, nullptr);
}

} // namespace vh::test
#endif

namespace vh::test {

// Rows that a loop takes apart under names: `for (const auto& [number, word] : rows)`.
template <class... Cells>
using Table = const std::tuple<Cells...>[];

inline std::span<const std::byte> Bytes(std::string_view text) { return std::as_bytes(std::span(text)); }

// The code of the exception that ends some work; 0 when it comes to its end.
template <class Exception, class Work>
auto CodeOf(Work&& work) -> decltype(std::declval<const Exception&>().code())
{
    try {
        work();
    } catch (const Exception& failure) {
        return failure.code();
    }
    return {};
}

} // namespace vh::test

// Tests alone include this, and each of them speaks of what the library and the support have.
using namespace vh;
using namespace vh::test;

// A call's result, and what it has written: a value, or a text.
#define EXPECT_GIVES(call, result, output, wanted)                                                                     \
    do {                                                                                                               \
        EXPECT_EQ(call, result);                                                                                       \
        EXPECT_EQ(output, wanted);                                                                                     \
    } while (false)
#define EXPECT_GIVES_TEXT(call, result, output, wanted)                                                                \
    EXPECT_GIVES(call, result, std::basic_string_view(output), wanted)

// Calls, in their order, that give the same number each.
#define EXPECT_EACH(wanted, ...)                                                                                       \
    do {                                                                                                               \
        int each_at = 0;                                                                                               \
        for (const int64_t each_given : std::initializer_list<int64_t>{__VA_ARGS__}) {                                 \
            ++each_at;                                                                                                 \
            EXPECT_EQ(each_given, wanted) << "call " << each_at;                                                       \
        }                                                                                                              \
    } while (false)
