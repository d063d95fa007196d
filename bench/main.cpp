// vhrt_bench [NAME...] [--quick]: measures the library against baselines in the same process.
#include <cstdio>
#include <string_view>
#include <vector>

#include "areas.h"

namespace {

struct area {
    std::string_view name;
    void (*run)(bench::suite&);
    const char* measures;
};

constexpr area areas[] = {
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
    {"load", bench::Load, "loading and unloading the library"},
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
    std::vector<const area*> wanted;
    for (int i = 1; i < count; ++i) {
        const std::string_view argument = arguments[i];
        const area* found = nullptr;
        for (const area& a : areas)
            if (a.name == argument)
                found = &a;
        if (found)
            wanted.push_back(found);
        else if (argument == "--quick")
            quick = true;
        else
            return Help();
    }
    if (wanted.empty())
        for (const area& a : areas)
            wanted.push_back(&a);

    std::printf("  %-46s %7s  %-14s %-9s %-20s %s\n", "case", "ratio", "quartiles", "goal", "verdict",
                "per unit: library / baseline");
    bench::suite suite(quick);
    for (const area* a : wanted) {
        suite.Area(std::string(a->name));
        a->run(suite);
    }
    return suite.Finish();
}
