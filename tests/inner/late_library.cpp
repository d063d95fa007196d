// Functions bound late: found in the system folder, missed with an error, replaced by a test.
#include "../../scriptdata/late_library.h"
#include "../../diagnostics/late_wininet.h"
#include "../../exports/vhrt/paths.h"
#include "../support/test.h"

namespace {

vh::late_library version_library(L"version.dll");
vh::late_library no_library(L"no-such-library.dll");

TEST(LateFunction, ThatIsMissingIsEmptyAndRaisesWhenCalled)
{
    vh::late_function<void()> missing(version_library, "NoSuchFunction");
    EXPECT_FALSE(missing);
    EXPECT_EQ(vh::test::CodeOf<vh::win32_exception>(missing), ERROR_PROC_NOT_FOUND);
    vh::late_function<void()> homeless(no_library, "GetFileVersionInfoSizeW");
    EXPECT_FALSE(homeless);
    EXPECT_EQ(vh::test::CodeOf<vh::win32_exception>(homeless), ERROR_MOD_NOT_FOUND);
}

template <DWORD Error>
BOOL WINAPI Refuse(const wchar_t*, wchar_t*, DWORD*, DWORD)
{
    SetLastError(Error);
    return FALSE;
}

TEST(LateFunction, CanBeReplacedAndComesBack)
{
    auto& canonicalize = vh::late::internet_canonicalize_url;
    canonicalize.replace(Refuse<ERROR_INTERNET_INVALID_URL>);
    EXPECT_EQ(PathIsValidSyntax(L"http://host/"), 0);
    canonicalize.replace(Refuse<ERROR_INTERNET_INTERNAL_ERROR>);
    EXPECT_EQ(PathIsValidSyntax(L"http://host/"), ERROR_INTERNET_INTERNAL_ERROR);
    canonicalize.replace(nullptr);
    EXPECT_EQ(PathIsValidSyntax(L"http://host/"), 1);
}

} // namespace
