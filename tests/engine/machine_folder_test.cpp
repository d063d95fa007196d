// Which access lists are believed, and what a run refuses of the machine's data folder.
#include <windows.h>

#include <sddl.h>

#include "../../engine/machine_folder.h"
#include "../../engine/support_folder.h"
#include "../support/replaced.h"
#include "setup_folder.h"

using namespace vh;
using namespace vh::engine;
using namespace vh::engine::test;
using vh::test::Patched;
using vh::test::Replaced;

namespace {

unique_local Parsed(const std::wstring& text)
{
    unique_local descriptor;
    EXPECT_TRUE(
        ConvertStringSecurityDescriptorToSecurityDescriptorW(text.c_str(), SDDL_REVISION_1, descriptor.put(), nullptr))
        << ToUtf8(text);
    return descriptor;
}

std::wstring TextOf(PSECURITY_DESCRIPTOR descriptor)
{
    wchar_t* text = nullptr;
    ConvertSecurityDescriptorToStringSecurityDescriptorW(
        descriptor, SDDL_REVISION_1,
        OWNER_SECURITY_INFORMATION | GROUP_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION, &text, nullptr);
    const unique_local held(text);
    return text ? text : L"";
}

constexpr const wchar_t* good = L"O:BAG:BAD:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;0x1200a9;;;BU)";
constexpr const wchar_t* users_own = L"O:S-1-5-21-1-2-3-1001D:P(A;OICI;FA;;;BA)";

// What the volume seems to keep: a good list, but for one file or folder.
std::wstring spoilt;
std::wstring spoilt_list;
std::wstring elsewhere;

std::wstring PathOf(HANDLE thing)
{
    wchar_t path[1024] = {};
    GetFinalPathNameByHandleW(thing, path, 1024, FILE_NAME_NORMALIZED);
    return path;
}

bool EndsIn(const std::wstring& path, const std::wstring& name)
{
    return !name.empty() && path.size() > name.size() && SameText(path.substr(path.size() - name.size()), name);
}

DWORD WINAPI TellList(HANDLE thing, SE_OBJECT_TYPE, SECURITY_INFORMATION, PSID*, PSID*, PACL*, PACL*,
                      PSECURITY_DESCRIPTOR* descriptor)
{
    const bool all = spoilt == L"*";
    *descriptor = Parsed(all || EndsIn(PathOf(thing), spoilt) ? spoilt_list : good).release();
    return 0;
}

BOOL WINAPI TellFacts(HANDLE thing, BY_HANDLE_FILE_INFORMATION* facts)
{
    const auto system = vh::test::OfSystem<decltype(GetFileInformationByHandle)>("GetFileInformationByHandle");
    if (!system(thing, facts))
        return FALSE;
    if (EndsIn(PathOf(thing), elsewhere))
        facts->dwFileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
    return TRUE;
}

std::wstring given_list;

BOOL WINAPI MakeAndTell(const wchar_t* path, SECURITY_ATTRIBUTES* attributes)
{
    if (attributes && attributes->lpSecurityDescriptor)
        given_list = TextOf(attributes->lpSecurityDescriptor);
    return vh::test::OfSystem<decltype(CreateDirectoryW)>("CreateDirectoryW")(path, attributes);
}

class MachineFolder : public testing::Test {
protected:
    MachineFolder()
    {
        spoilt.clear();
        elsewhere.clear();
        spoilt_list = users_own;
    }
    std::wstring Machine(const std::wstring& name = {}) const { return JoinPath(folder.Root() + L"\\machine", name); }
    std::wstring Log() const { return Machine(L"{1}\\install.log"); }
    // Empty when it is believed, else what it names.
    std::wstring Refused() const
    {
        try {
            MakeLogFolder(Log(), Machine());
            return {};
        } catch (const untrusted_error& error) {
            EXPECT_NE(error.message().reason.find(L"icacls \"" + error.message().file), std::wstring::npos);
            return error.message().file;
        }
    }

    SetupFolder folder;
    Replaced<decltype(engine::late::get_security_info)> m_lists{engine::late::get_security_info, TellList};
};

} // namespace

TEST(AccessLists, AreBelievedWhenAdministratorsAloneMayChangeThings)
{
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        {good, L""},
        {L"O:SYD:P(A;;FA;;;BA)", L""},
        {L"O:S-1-5-80-956008885-3418522649-1831038044-1853292631-2271478464D:(A;;FA;;;SY)", L""},
        {L"O:BAD:P", L""},
        {L"O:BAD:(A;OICIIO;GA;;;CO)(A;;FA;;;S-1-3-4)(A;;FA;;;BA)(A;OICI;GRGX;;;WD)", L""},
        {L"O:BAD:(D;;FA;;;WD)(A;;FA;;;BA)", L""},
        {L"O:BA", L"everybody may change it"},
        {L"D:P(A;;FA;;;BA)", L"belongs to nobody"},
        {users_own, L"belongs to S-1-5-21-1-2-3-1001"},
        {L"O:BUD:P(A;;FA;;;BA)", L"S-1-5-32-545"},
        // What is made with the list that the folder of all users' data hands down.
        {L"O:BAD:AI(A;OICIID;FA;;;SY)(A;OICIID;FA;;;BA)(A;OICIIOID;GA;;;CO)(A;OICIID;FRFX;;;BU)(A;CIID;0x116;;;BU)",
         L"S-1-5-32-545"},
        {L"O:BAD:(A;OICIIO;GA;;;CG)", L"S-1-3-1"},
        {L"O:BAD:(D;;FA;;;WD)(A;;FW;;;WD)", L"S-1-1-0"},
        {L"O:BAD:(A;;FA;;;BA)(A;OICIIO;GW;;;AU)", L"S-1-5-11"},
        // An administrator's own account, which programs without those rights have too.
        {L"O:BAD:(A;;FA;;;S-1-5-21-1-2-3-500)", L"S-1-5-21-1-2-3-500 may change it"},
    };
    for (const auto& [text, reason] : rows) {
        const std::wstring got = WhyUntrusted(Parsed(text).get());
        EXPECT_TRUE(*reason ? got.find(reason) != got.npos : got.empty()) << ToUtf8(text) << ": " << ToUtf8(got);
    }
}

TEST(AccessLists, EachRightToChangeCountsAndNoRightToSee)
{
    for (DWORD right = 1; right; right <<= 1) {
        constexpr DWORD changing = 0x500D0156;
        const std::wstring list = L"O:BAD:(A;;" + Number(right) + L";;;WD)";
        EXPECT_EQ(WhyUntrusted(Parsed(list).get()).empty(), !(right & changing)) << std::hex << right;
    }
    // Kinds of entries: allowed, denied, for one property alone, under a condition, a mark of the system.
    for (const auto& [kind, reason] : {std::pair<BYTE, const wchar_t*>{0, L"S-1-1-0"},
                                       {1, L""},
                                       {5, L"unknown kind"},
                                       {9, L"S-1-1-0"},
                                       {10, L""},
                                       {17, L"unknown kind"}}) {
        const unique_local list = Parsed(L"O:BAD:(A;;FA;;;WD)");
        BOOL present = FALSE;
        BOOL defaulted = FALSE;
        PACL entries = nullptr;
        void* entry = nullptr;
        ASSERT_TRUE(GetSecurityDescriptorDacl(list.get(), &present, &entries, &defaulted) &&
                    GetAce(entries, 0, &entry));
        static_cast<ACE_HEADER*>(entry)->AceType = kind;
        const std::wstring got = WhyUntrusted(list.get());
        EXPECT_TRUE(*reason ? got.find(reason) != got.npos : got.empty()) << int{kind} << ToUtf8(got);
    }
}

TEST_F(MachineFolder, IsMadeForAdministratorsAndLogsOutsideAsEver)
{
    {
        const Patched make("CreateDirectoryW", MakeAndTell);
        EXPECT_EQ(L"", Refused());
    }
    EXPECT_EQ(given_list, TextOf(Parsed(good).get()));
    EXPECT_TRUE(FactsOf(FolderOf(Log())).folder());
    spoilt = L"*";
    given_list.clear();
    MakeLogFolder(folder.Data() + L"\\{1}\\install.log", Machine());
    EXPECT_TRUE(FactsOf(folder.Data() + L"\\{1}").folder());
}

TEST_F(MachineFolder, RefusesEachPartThatOthersCouldHaveChanged)
{
    const wchar_t* parts[] = {L"in-use.log",         L"host\\vhhost.exe", L"host\\VHRT.dll",   L"{1}\\install.log",
                              L"{1}\\setup\\run.js", L"{1}\\reboot.txt",  L"{1}\\originals\\7"};
    for (const wchar_t* part : parts)
        WriteText(Machine(part), "x");
    EXPECT_EQ(L"", Refused());
    for (const wchar_t* part : {L"", L"in-use.log", L"host", L"host\\vhhost.exe", L"host\\VHRT.dll", L"{1}",
                                L"{1}\\install.log", L"{1}\\setup", L"{1}\\setup\\run.js", L"{1}\\reboot.txt"}) {
        spoilt = JoinPath(L"\\machine", part);
        EXPECT_EQ(Machine(part), Refused());
        spoilt.clear();
        elsewhere = JoinPath(L"\\machine", part);
        const Patched facts("GetFileInformationByHandle", TellFacts);
        EXPECT_EQ(Machine(part), Refused()) << "a link";
        elsewhere.clear();
    }
    // Files of people keep the lists that they had, and other products are others' business.
    WriteText(Machine(L"{2}\\install.log"), "x");
    for (const wchar_t* part : {L"{1}\\originals\\7", L"{2}\\install.log"}) {
        spoilt = part;
        EXPECT_EQ(L"", Refused());
    }
}

TEST_F(MachineFolder, OnAVolumeWithoutListsOnlyLinksAreRefused)
{
    spoilt = L"*";
    EXPECT_EQ(L"", Refused());
    elsewhere = L"\\machine";
    const Patched facts("GetFileInformationByHandle", TellFacts);
    EXPECT_EQ(Machine(), Refused());
}

TEST_F(MachineFolder, NothingOfAListIsCarriedOutThatOthersWrote)
{
    const std::wstring machine = DefaultDataDir(true);
    spoilt = FileNameOf(machine);
    MakeFolders(machine);
    EXPECT_THROW(CarryOutPutOff(machine), untrusted_error);
    EXPECT_THROW(Uninstall(JoinPath(machine, L"{1}\\install.log")), engine_error);
    WriteText(JoinPath(machine, L"{1}\\install.log"), "");
    EXPECT_THROW(Uninstall(JoinPath(machine, L"{1}\\install.log")), untrusted_error);
    RemoveTree(machine);
}

TEST_F(MachineFolder, SupportFilesOfARunWithRightsAreNobodyElses)
{
    const std::wstring moved = vh::engine::TempFolder() + L"\\moved" + std::to_wstring(GetCurrentProcessId());
    std::wstring path;
    {
        const Patched make("CreateDirectoryW", MakeAndTell);
        const SupportFolder support(NewIdentifier());
        path = support.path();
        EXPECT_EQ(WhyUntrusted(Parsed(given_list).get()), L"") << ToUtf8(given_list);
        WriteText(path + L"\\below\\one.txt", "x");
        WriteText(path + L"\\two.txt", "x");
        EXPECT_FALSE(MoveFileExW(path.c_str(), moved.c_str(), 0));
    }
    EXPECT_FALSE(FactsOf(path).exists());
    // A folder in the way, of the kind that is tidied up, is left to its owner.
    const std::wstring planted = vh::engine::TempFolder() + L"\\VHSetup{planted}";
    WriteText(planted + L"\\x", "x");
    spoilt = L"VHSetup{planted}";
    const SupportFolder next(NewIdentifier());
    EXPECT_TRUE(FactsOf(planted + L"\\x").exists());
    spoilt.clear();
    const SupportFolder last(NewIdentifier());
    EXPECT_FALSE(FactsOf(planted).exists());
}
