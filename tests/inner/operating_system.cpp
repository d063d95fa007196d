// Systems by number and name, and the version information that tells some of them apart.
#include "../../system/operating_system.h"
#include "../../exports/vhrt/facts.h"
#include "../../system/late_version.h"
#include "../../system/version_info.h"
#include "../support/replaced.h"
#include "../support/test.h"

using namespace vh::test;

namespace {

TEST(OperatingSystem, HasACodeAndANameForEachKnownVersion)
{
    Table<uint32_t, uint32_t, uint32_t, bool, uint32_t, bool, const wchar_t*> rows = {
        {1, 4, 0, false, 16, true, L"Windows 95"},
        {1, 3, 0, true, 16, true, L"Windows 95"},
        {1, 4, 10, false, 64, true, L"Windows 98"},
        {1, 4, 10, true, 128, true, L"Windows Me"},
        {1, 4, 90, false, 128, true, L"Windows Me"},
        {1, 4, 11, false, 128, false, L"Windows Me"},
        {2, 4, 0, false, 0x10000, true, L"Windows NT 4.0"},
        {2, 4, 9, false, 0x10000, true, L"Windows NT 4.0"},
        {2, 5, 0, false, 0x100000, true, L"Windows 2000"},
        {2, 5, 1, false, 0x400000, true, L"Windows XP"},
        {2, 5, 2, true, 0x800000, true, L"Windows Server 2003"},
        {2, 5, 3, false, 0, false, L""},
        {2, 6, 0, false, 0x1000000, true, L"Windows Vista / Server 2008"},
        {2, 6, 1, false, 0x2000000, true, L"Windows 7 / Server 2008 R2"},
        {2, 6, 2, false, 0x4000000, true, L"Windows 8 / Server 2012"},
        {2, 6, 3, false, 0x8000000, true, L"Windows 8.1 / Server 2012 R2"},
        {2, 6, 4, false, 0, false, L""},
        {2, 10, 0, false, 0x10000000, true, L"Windows 10 / Server 2016"},
        {2, 10, 1, false, 0, false, L""},
        {2, 3, 51, false, 0x10000000, true, L"Windows 10 / Server 2016"},
        {2, 11, 7, false, 0x10000000, true, L"Windows 10 / Server 2016"},
        {0, 3, 10, false, 0, false, L""},
        {3, 5, 0, false, 0, false, L""}};
    for (const auto& [platform, major, minor, is_me, code, known, name] : rows) {
        const vh::operating_system system = vh::OperatingSystemOf(platform, major, minor, is_me);
        EXPECT_EQ(system.code, code) << platform << '.' << major << '.' << minor;
        EXPECT_EQ(system.known, known) << platform << '.' << major << '.' << minor;
        if (code) {
            EXPECT_STREQ(vh::GetOsNameText(code, 1), name);
        }
    }
    EXPECT_STREQ(vh::GetOsNameText(0x20000, 1), L"");
}

TEST(OperatingSystem, OfCode0IsTheCurrentOne)
{
    OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof(version);
    ASSERT_TRUE(GetVersionExW(&version));
    const auto wanted =
        vh::OperatingSystemOf(version.dwPlatformId, version.dwMajorVersion, version.dwMinorVersion, false);
    ASSERT_TRUE(wanted.known);
    EXPECT_EQ(vh::CurrentOperatingSystem().code, wanted.code);
    EXPECT_STREQ(vh::GetOsNameText(0, 0), vh::GetOsNameText(wanted.code, 0));
}

// The fixed part of the system library that the next look-up finds.
VS_FIXEDFILEINFO told_version;

BOOL WINAPI TellVersion(const void* block, const wchar_t* name, void** value, UINT* length)
{
    if (std::wstring_view(name) != L"\\")
        return FALSE;
    *value = std::memcpy(const_cast<void*>(block), &told_version, sizeof(told_version));
    *length = sizeof(told_version);
    return TRUE;
}

TEST(OperatingSystem, IsMeByTheVersionOfTheSystemLibrary)
{
    EXPECT_EQ(_IsWindowsME(), 0);
    const Replaced query(vh::late::query_version, TellVersion);
    for (const auto& [high, answer] :
         std::map<DWORD, int32_t>{{4u << 16 | 90, 1}, {4u << 16 | 10, 0}, {5u << 16 | 90, 0}}) {
        told_version = {};
        told_version.dwFileVersionMS = high;
        told_version.dwFileVersionLS = 3000;
        EXPECT_EQ(_IsWindowsME(), answer);
    }
}

BOOL WINAPI TellNothing(const void*, const wchar_t*, void**, UINT*) { return FALSE; }

TEST(VersionInfo, IsSharedByItsCopiesAndStaysWhenALoadFails)
{
    wchar_t library[MAX_PATH];
    GetSystemDirectoryW(library, MAX_PATH);
    wcscat_s(library, L"\\kernel32.dll");
    vh::version_info copy;
    EXPECT_TRUE(copy.translations().empty());
    {
        vh::version_info info;
        ASSERT_TRUE(info.load(library));
        copy = info;
        const vh::version_info third(copy);
        EXPECT_EQ(third.translations().data(), info.translations().data());
    }
    ASSERT_FALSE(copy.translations().empty());
    EXPECT_EQ(copy.dwSignature, static_cast<DWORD>(VS_FFI_SIGNATURE));
    const uint32_t first = copy.translations().front();
    EXPECT_FALSE(copy.load(L"C:\\missing.dll"));
    EXPECT_FALSE(copy.load(nullptr));
    {
        const Replaced query(vh::late::query_version, TellNothing);
        EXPECT_FALSE(copy.load(library));
    }
    const Replaced missing(vh::late::query_version);
    EXPECT_FALSE(copy.load(library));
    EXPECT_EQ(copy.translations().front(), first);
    EXPECT_EQ(copy.dwSignature, static_cast<DWORD>(VS_FFI_SIGNATURE));
}

} // namespace
