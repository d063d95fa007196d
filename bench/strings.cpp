// The string type against std::wstring, and the allocations that it makes.
#include <cstring>
#include <memory>
#include <string>

#include <windows.h>

#include <oleauto.h>

#include "../scriptdata/stringx.h"
#include "areas.h"
#include "counting.h"

namespace bench {

namespace {

// A round of each: make from text, copy, destroy.
template <class Text>
work Make(const wchar_t* text)
{
    return {[text](long count) {
        for (; count > 0; --count) {
            const Text made(text);
            Keep(made.data());
        }
    }};
}

template <class Text>
work Copy(const wchar_t* text)
{
    return {[source = std::make_shared<Text>(text)](long count) {
        for (; count > 0; --count) {
            const Text made(*source);
            Keep(made.data());
        }
    }};
}

// The block alone that a string of 20 units has to take, with the text in it.
work BareBstr()
{
    return {[](long count) {
        constexpr UINT room = 24;
        constexpr wchar_t text[] = L"twenty units of text";
        for (; count > 0; --count) {
            const std::unique_ptr<OLECHAR, decltype(&SysFreeString)> made(SysAllocStringLen(nullptr, room),
                                                                          &SysFreeString);
            std::memcpy(made.get(), text, sizeof(text));
            Keep(made.get());
        }
    }};
}

struct allocations {
    long bstrs;
    long blocks;
};

template <class Use>
allocations CountIn(Use&& use)
{
    const HMODULE program = GetModuleHandleW(nullptr);
    const call_counter bstrs(program, "SysAllocStringLen");
    const call_counter blocks(program, "malloc");
    use();
    return {bstrs.calls(), blocks.calls()};
}

} // namespace

void Strings(suite& s)
{
    constexpr const wchar_t* five = L"units";
    constexpr const wchar_t* twenty = L"twenty units of text";
    s.Compare("make and destroy, 5 units, to std::wstring", 2.0, Make<stringx>(five), Make<std::wstring>(five));
    s.Compare("copy and destroy, 5 units", 2.0, Copy<stringx>(five), Copy<std::wstring>(five));
    s.Compare("make and destroy, 20 units, to a bare BSTR", 1.03, Make<stringx>(twenty), BareBstr());
    s.Compare("copy and destroy, 20 units", 1.03, Copy<stringx>(twenty), BareBstr());
    s.Compare("for comparison: a bare BSTR, to std::wstring", {}, BareBstr(), Copy<std::wstring>(twenty));

    struct {
        const wchar_t* text;
        long bstrs;
    } cases[] = {{L"", 0}, {L"5 units", 0}, {L"8 units.", 1}, {twenty, 1}};
    for (const auto& [text, bstrs] : cases) {
        const std::string units = std::to_string(std::wcslen(text)) + " units: ";
        const allocations making = CountIn([&] { Keep(stringx(text).data()); });
        const stringx made(text);
        const allocations copying = CountIn([&] { Keep(stringx(made).data()); });
        s.Count(units + "BSTRs of a new string", bstrs, making.bstrs);
        s.Count(units + "BSTRs of a copy", bstrs, copying.bstrs);
        s.Count(units + "other blocks of both", 0, making.blocks + copying.blocks);
    }
}

} // namespace bench
