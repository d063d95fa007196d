// vhrt_bench [NAME...] [--quick]: measures the library against baselines in the same process.
#include <algorithm>
#include <cstdio>
#include <iterator>
#include <string_view>

#include "areas.h"

namespace {

struct area {
    std::string_view name;
    void (*run)(bench::suite&);
    const char* measures;
};

// The first one needs a process in which nothing is loaded yet.
constexpr area areas[] = {
    {"load", bench::Load, "loading and unloading the library"},
    {"handles", bench::Handles, "export and handle look-up"},
    {"numbers", bench::NumberLists, "lists of numbers"},
    {"texts", bench::TextLists, "lists of texts"},
    {"growth", bench::ListGrowth, "how list operations grow"},
    {"strings", bench::Strings, "the string type"},
    {"read", bench::TextRead, "text files by lines"},
    {"write", bench::TextWrite, "lines written"},
    {"trace", bench::Trace, "trace records, and tracing that is off"},
    {"md5", bench::Md5, "file signatures"},
    {"disks", bench::Disks, "existence and disk sizes"},
    {"media", bench::Media, "items of an engine's media by path"},
    {"walk", bench::Walk, "a walk over all features"},
    {"script", bench::ScriptMedia, "media that scripts build"},
    {"ini", bench::IniFiles, "INI documents"},
    {"pictures", bench::Pictures, "GIF pictures of 16 megapixels"},
    {"dialogs", bench::Dialogs, "dialogs made and ended, and events on their way to the script"},
    {"views", bench::Views, "the component view and skinned dialogs, painted"},
    {"registry", bench::Registry, "registry values on their way to the engine"},
    {"child", bench::ChildSearch, "the search for a child process"},
    {"setup", bench::Setups, "whole installations by the embedded engine"},
    {"network", bench::Network, "downloads from the test server beside which the bench runs"},
};

int Help()
{
    std::puts("usage: vhrt_bench [NAME...] [--quick]\n\n"
              "Prints ratios of the library's time to a baseline's: median and quartiles of alternating rounds.\n"
              "Without names everything is measured. --quick takes short rounds and gates nothing.\n"
              "Result: 0; 1 a goal is missed by more than 10 %; 2 the machine was too noisy; 4 wrong usage.\n");
    for (const area& a : areas)
        std::printf("  %-10.*s %s\n", static_cast<int>(a.name.size()), a.name.data(), a.measures);
    return 4;
}

} // namespace

int main(int count, char** arguments)
{
    bool quick = false;
    unsigned named = 0; // a bit for each area; none stands for all
    for (int i = 1; i < count; ++i) {
        const std::string_view argument = arguments[i];
        const auto found = std::ranges::find(areas, argument, &area::name);
        if (found != std::end(areas))
            named |= 1u << (found - areas);
        else if (argument == "--quick")
            quick = true;
        else
            return Help();
    }

    std::printf("  %-46s %7s  %-14s %-9s %-20s %s\n", "case", "ratio", "quartiles", "goal", "verdict",
                "per unit: library / baseline");
    bench::suite suite(quick);
    for (unsigned i = 0; i < std::size(areas); ++i) {
        if (named && !(named >> i & 1))
            continue;
        suite.Area(std::string(areas[i].name));
        areas[i].run(suite);
    }
    return suite.Finish();
}
