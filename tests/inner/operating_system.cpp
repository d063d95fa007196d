// Systems by number and name, and the version information that tells some of them apart.
#include "../../system/operating_system.h"
#include "../../exports/vhrt/facts.h"
#include "../../scriptdata/late_version.h"
#include "../../system/version_info.h"
#include "../support/test.h"

namespace {

TEST(OperatingSystem, HasACodeAndANameForEachKnownVersion)
{
    // Platform, major, minor, Me; code and known.
    std::istringstream rows(R"(1 4 0 0 16 1 1 3 0 1 16 1 1 4 10 0 64 1 1 4 10 1 128 1 1 4 90 0 128 1 1 4 11 0 128 0
        2 4 0 0 65536 1 2 4 9 0 65536 1 2 5 0 0 1048576 1 2 5 1 0 4194304 1 2 5 2 1 8388608 1 2 5 3 0 0 0
        2 6 0 0 16777216 1 2 6 1 0 33554432 1 2 6 2 0 67108864 1 2 6 3 0 134217728 1 2 6 4 0 0 0 2 10 0 0 268435456 1
        2 10 1 0 0 0 2 3 51 0 268435456 1 2 11 7 0 268435456 1 0 3 10 0 0 0 3 5 0 0 0 0)");
    bool is_me = false, known = false;
    int checked = 0;
    for (uint32_t platform, major, minor, code; rows >> platform >> major >> minor >> is_me >> code >> known;) {
        const vh::operating_system system = vh::OperatingSystemOf(platform, major, minor, is_me);
        EXPECT_EQ(system.code, code) << platform << '.' << major << '.' << minor;
        EXPECT_EQ(system.known, known) << platform << '.' << major << '.' << minor;
        ++checked;
    }
    EXPECT_EQ(checked, 23);
    Table<uint32_t, const wchar_t*> names = {{16, L"Windows 95"},          {0x800000, L"Windows Server 2003"},
                                             {64, L"Windows 98"},          {0x1000000, L"Windows Vista / Server 2008"},
                                             {128, L"Windows Me"},         {0x2000000, L"Windows 7 / Server 2008 R2"},
                                             {0x10000, L"Windows NT 4.0"}, {0x4000000, L"Windows 8 / Server 2012"},
                                             {0x100000, L"Windows 2000"},  {0x8000000, L"Windows 8.1 / Server 2012 R2"},
                                             {0x400000, L"Windows XP"},    {0x10000000, L"Windows 10 / Server 2016"}};
    for (const auto& [code, name] : names)
        EXPECT_STREQ(vh::GetOsNameText(code, 1), name);
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
    const std::wstring file = Filled(GetSystemDirectoryW) + L"\\kernel32.dll";
    const wchar_t* const library = file.c_str();
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
    EXPECT_FALSE(copy.load(L"C:\\missing.dll") || copy.load(nullptr));
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
