// What is started when rights are missing, and what comes back.
#include "../../host/console.h"
#include "../../host/rights.h"
#include "../../host/text.h"
#include "../../scriptdata/unique.h"
#include "../support/replaced.h"

namespace {

struct Asked {
    std::wstring verb, file, words, folder;
    DWORD code = 0; // of the refusal; 0 starts a program that ends with 77
};
Asked asked;
std::wstring heard;

BOOL WINAPI Ask(SHELLEXECUTEINFOW* start)
{
    asked.verb = start->lpVerb;
    asked.file = start->lpFile;
    asked.words = start->lpParameters;
    asked.folder = start->lpDirectory;
    if (asked.code || !(start->fMask & SEE_MASK_NOCLOSEPROCESS)) {
        SetLastError(asked.code);
        return FALSE;
    }
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    wchar_t line[] = L"cmd /c exit 77";
    if (!CreateProcessW(nullptr, line, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &started))
        return FALSE;
    const vh::unique_handle thread(started.hThread);
    start->hProcess = started.hProcess;
    return TRUE;
}

std::vector<std::wstring> Words(const std::wstring& line)
{
    int count = 0;
    wchar_t** words = CommandLineToArgvW(line.c_str(), &count);
    const std::vector<std::wstring> all(words, words + count);
    LocalFree(words);
    return all;
}

class Rights : public testing::Test {
protected:
    Rights()
    {
        asked = {};
        heard.clear();
        GetCurrentDirectoryW(MAX_PATH, m_before);
        host::Overhear([](host::Level, std::wstring_view text) { heard.append(text) += L'\n'; });
    }
    ~Rights() override
    {
        SetCurrentDirectoryW(m_before);
        host::Overhear({});
    }
    wchar_t m_before[MAX_PATH] = {};
    vh::test::Replaced<decltype(host::late::shell_execute_ex)> m_ask{host::late::shell_execute_ex, Ask};
};

TEST_F(Rights, TheSameWordsAreStartedAndTheirEndComesBack)
{
    // Word by word what the program was given, wherever it is.
    const std::pair<const wchar_t*, std::vector<std::wstring>> rows[] = {
        {L"vhhost.exe", {}},
        {L"vhhost folder --silent", {L"folder", L"--silent"}},
        {L"\"C:\\a b\\setup.exe\" \t --target \"D:\\my files\\\\\" --var \"A=x \\\"y\\\" z\"",
         {L"--target", L"D:\\my files\\", L"--var", L"A=x \"y\" z"}},
        {L"C:\\a\" \"b\\setup.exe \"\" --uninstall {1}", {L"", L"--uninstall", L"{1}"}},
    };
    wchar_t system[MAX_PATH];
    GetSystemDirectoryW(system, MAX_PATH);
    // Ends with a backslash, which must not take the quotation mark behind it along.
    for (const std::wstring& folder : {std::wstring(system), std::wstring(system, 3)}) {
        SetCurrentDirectoryW(folder.c_str());
        for (const auto& [line, words] : rows) {
            EXPECT_EQ(host::RunWithMachineRights(line), 77) << host::Utf8(line);
            std::vector<std::wstring> wanted{L"x", host::Wide(host::rights_option), folder};
            wanted.insert(wanted.end(), words.begin(), words.end());
            EXPECT_EQ(Words(L"x " + asked.words), wanted) << host::Utf8(line);
            EXPECT_EQ(asked.verb, L"runas");
            EXPECT_EQ(asked.file, host::ProgramFile());
            EXPECT_EQ(asked.folder, host::ProgramFolder());
        }
    }
}

TEST_F(Rights, ARefusalIsToldAndEndsTheRun)
{
    for (const auto& [code, text] : {std::pair<DWORD, const wchar_t*>{ERROR_CANCELLED, L"were not given"},
                                     {ERROR_ACCESS_DISABLED_BY_POLICY, L"can't be asked for: "}}) {
        heard.clear();
        asked.code = code;
        EXPECT_EQ(host::RunWithMachineRights(L"x"), host::exit_rights);
        EXPECT_NE(heard.find(text), heard.npos) << host::Utf8(heard);
    }
}

TEST_F(Rights, WhoWasAskedForIsNotAskedAgain)
{
    EXPECT_EQ(host::RunWithMachineRights(L"x --rights-asked-in \"C:\\\\\" y"), host::exit_rights);
    EXPECT_EQ(asked.verb, L"");
    EXPECT_NE(heard.find(L"can't get the rights"), heard.npos) << host::Utf8(heard);
}

TEST_F(Rights, WordsAreMeantInTheFolderThatWasAskedIn)
{
    EXPECT_FALSE(host::TakeRunOver(L"C:\\no such folder"));
    EXPECT_NE(heard.find(L"C:\\no such folder: can't be reached"), heard.npos) << host::Utf8(heard);
    wchar_t folder[MAX_PATH] = {};
    GetWindowsDirectoryW(folder, MAX_PATH);
    EXPECT_TRUE(host::TakeRunOver(folder));
    wchar_t now[MAX_PATH] = {};
    GetCurrentDirectoryW(MAX_PATH, now);
    EXPECT_STRCASEEQ(host::Utf8(now).c_str(), host::Utf8(folder).c_str());
}

} // namespace
