#include "../../engine/check.h"
#include "setup_folder.h"

using namespace vh::engine;
using namespace vh::engine::test;

namespace {

// A product that goes wrong in its variables, setup types and patterns, from its third line on.
constexpr const char* wrong_beyond_a_run = R"(
"variables": {"MINE": "<LANGUAGE>", "LOOP": "<LOST>"}, "strings": {"1033": {"A": "<MINE>", "B": "<a> <b> <NO_1>"}},
"target": "<mine>\\<lost>",
"features": [{"name": "R", "required": true}, {"name": "T", "features": [{"name": "U"}, {"name": "V"}]},
  {"name": "W", "displayName": "<B> <br> <MISSING>", "description": "<X<MINE>>", "features": [{"name": "Y"}]}],
"setupTypes": [{"name": "S", "features": ["T\\U"]}],
"registrySets": [{"name": "S", "keys": [{"root": "HKCU", "key": "Software\\<A>", "values": [
  {"name": "<PRODUCT_NAME>", "type": "texts", "data": ["<html>", "<GONE>, <OFF>"]}]}]}],
"shellObjects": [{"name": "<A>", "target": "<TARGETDIR>\\a.exe", "icon": "<html>", "arguments": "<html> <A>"}])";

constexpr const char* wrong_for_a_run = R"(
"colour": 1, "maintenanceOption": 2, "payload": "..",
"variables": {"\u00e9/~": 5, "<": ""},
"features": [{"name": 7, "order": "x", "files": [{"name": "g"}]}, 3,
  {"name": "A", "files": [{"files": ["no.txt", "con", {"path": "b*", "size": 1}]}]}, {"name": "a", "key": []}])";

std::vector<std::wstring> FaultsOf(const SetupFolder& folder)
{
    std::vector<std::wstring> faults;
    for (const SetupFault& fault : CheckSetup(folder.Setup()).faults) {
        EXPECT_EQ(folder.Setup(L"product.json"), fault.file);
        faults.push_back(fault.Text().substr(fault.file.size()));
    }
    return faults;
}

} // namespace

TEST(SetupCheck, TellsEveryFaultWithItsLineAndColumn)
{
    using Faults = std::vector<std::wstring>;
    const std::wstring set = L"; what the script sets belongs into \"variables\" as well";
    const std::pair<std::string, Faults> cases[] = {
        {wrong_beyond_a_run,
         {L"(3,45): /variables/LOOP: no variable: <LOST>" + set,
          L"(3,97): /strings/1033/B: no variable and no string: <NO_1>" + set,
          L"(4,11): /target: no variable: <lost>" + set,
          L"(5,89): /features/1/features/1: no setup type selects the feature \"T\\V\"",
          L"(6,3): /features/2: no setup type selects the feature \"W\"",
          L"(6,32): /features/2/displayName: no variable and no string: <MISSING>" + set,
          L"(8,65): /registrySets/0/keys/0/key: no variable: <A>" + set,
          L"(9,66): /registrySets/0/keys/0/values/0/data/1: no variable: <GONE>, <OFF>" + set,
          L"(10,74): /shellObjects/0/icon: no variable: <html>" + set,
          L"(10,97): /shellObjects/0/arguments: no variable: <A>" + set}},
        {wrong_for_a_run,
         {L"(3,11): /colour: unknown key \"colour\"", L"(3,35): /maintenanceOption: must be 1, 4 or 8",
          L"(3,49): /payload: \"..\" must be relative, without empty parts and without \"..\"",
          L"(4,27): /variables/\u00e9~1~0: must be a text",
          L"(4,35): /variables/<: a variable's name must not be empty or hold '<' or '>'",
          L"(5,23): /features/0/name: must be a text", L"(5,35): /features/0/order: must be a whole number",
          L"(5,50): /features/0/files/0/files: \"files\" is missing", L"(5,67): /features/1: must be an object",
          L"(6,27): /features/2/files/0/name: \"name\" is missing",
          L"(6,48): /features/2/files/0/files/1: the path \"con\" holds \"con\", the name of a device",
          L"(6,55): /features/2/files/0/files/2: a pattern has no name and no size",
          L"(6,86): /features/3: a feature \"a\" exists already", L"(6,107): /features/3/key: must be a text"}},
        {"\"features\": [],\n \"target\": \"a\", \"target\": {\"x\": 1, \"x\": 2}",
         {L"(3,17): the key \"target\" comes twice", L"(3,36): /target: the key \"x\" comes twice"}},
        {"\"features\": [}", {L"(2,76): is no valid JSON"}},
        {"\"features\": " + std::string(60, '['), {L"(2,122): is nested deeper than 48 levels"}},
    };
    for (const auto& [members, wanted] : cases) {
        SetupFolder folder;
        folder.Product(members);
        Faults faults = FaultsOf(folder);
        ASSERT_EQ(wanted.size(), faults.size()) << members;
        for (std::size_t i = 0; i < wanted.size(); ++i)
            EXPECT_EQ(ToUtf8(wanted[i]), ToUtf8(faults[i].substr(0, wanted[i].size()))) << members;
    }
}

TEST(SetupCheck, CountsWhatAGoodProductHolds)
{
    SetupFolder folder;
    MakeTree(folder, R"(, "script": "go.js", "scripts": ["first.js"])");
    const SetupCheck check = CheckSetup(folder.Setup());
    EXPECT_TRUE(check.faults.empty());
    EXPECT_EQ((std::vector<std::wstring>{folder.Setup(L"first.js"), folder.Setup(L"go.js")}), check.scripts);
    EXPECT_EQ(4u, check.features);
    EXPECT_EQ(4u, check.files);
    EXPECT_EQ(100u, check.bytes);
    EXPECT_THROW(CheckSetup(folder.Setup(L"nowhere")), engine_error);
}
