// Functions bound late: found in the system folder, missed with an error, replaced by a test; objects from files.
#include "../../scriptdata/late_library.h"
#include "../../Src/inc/co_create.h"
#include "../../diagnostics/late_wininet.h"
#include "../../exports/vhrt/paths.h"
#include "../support/test.h"

namespace {

late_library version_library(L"version.dll");
late_library no_library(L"no-such-library.dll");

TEST(LateFunction, ThatIsMissingIsEmptyAndRaisesWhenCalled)
{
    late_function<void()> missing(version_library, "NoSuchFunction");
    EXPECT_FALSE(missing);
    EXPECT_EQ(CodeOf<win32_exception>(missing), ERROR_PROC_NOT_FOUND);
    late_function<void()> homeless(no_library, "GetFileVersionInfoSizeW");
    EXPECT_FALSE(homeless);
    EXPECT_EQ(CodeOf<win32_exception>(homeless), ERROR_MOD_NOT_FOUND);
}

template <DWORD Error>
BOOL WINAPI Refuse(const wchar_t*, wchar_t*, DWORD*, DWORD)
{
    SetLastError(Error);
    return FALSE;
}

TEST(LateFunction, CanBeReplacedAndComesBack)
{
    auto& canonicalize = late::internet_canonicalize_url;
    canonicalize.replace(Refuse<ERROR_INTERNET_INVALID_URL>);
    EXPECT_EQ(PathIsValidSyntax(L"http://host/"), 0);
    canonicalize.replace(Refuse<ERROR_INTERNET_INTERNAL_ERROR>);
    EXPECT_EQ(PathIsValidSyntax(L"http://host/"), ERROR_INTERNET_INTERNAL_ERROR);
    canonicalize.replace(nullptr);
    EXPECT_EQ(PathIsValidSyntax(L"http://host/"), 1);
}

constexpr GUID dictionary = Guid("{EE09B103-97E0-11CF-978F-00A02463E06F}");
constexpr GUID class_factory = Guid("{00000001-0000-0000-C000-000000000046}");

TEST(CoCreate, AsksTheLibraryItself)
{
    const Apartment apartment;
    com_ptr<IClassFactory> factory;
    ASSERT_EQ(CoCreate(GetModuleHandleW(L"kernel32.dll"), L"scrrun.dll", dictionary, class_factory, factory.put_void()),
              S_OK);
    com_ptr<IDispatch> object;
    EXPECT_EQ(factory->CreateInstance(nullptr, iid_of<IDispatch>, object.put_void()), S_OK);
    EXPECT_TRUE(object);

    com_ptr<IClassFactory> none;
    EXPECT_EQ(CoCreate(nullptr, L"scrrun.dll", dictionary, class_factory, none.put_void()),
              HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND))
        << "looked for beside the program, where it is not";
    EXPECT_EQ(CoCreate(nullptr, L"kernel32.dll", dictionary, class_factory, none.put_void()),
              HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND));
    EXPECT_EQ(CoCreate(GetModuleHandleW(L"kernel32.dll"), L"kernel32.dll", dictionary, class_factory, none.put_void()),
              HRESULT_FROM_WIN32(ERROR_PROC_NOT_FOUND));
    com_ptr<IUnknown> remote;
    EXPECT_EQ(CoCreateByProgram(L"no such program", dictionary, nullptr, iid_of<IUnknown>, remote.put_void()),
              static_cast<HRESULT>(0x80070002));
}

} // namespace
