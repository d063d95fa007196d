// Objects from files, past the registry.
#include "../../Src/inc/co_create.h"
#include "../../scriptdata/com_ptr.h"
#include "../support/test.h"

namespace {

constexpr GUID dictionary = vh::Guid("{EE09B103-97E0-11CF-978F-00A02463E06F}");
constexpr GUID class_factory = vh::Guid("{00000001-0000-0000-C000-000000000046}");

TEST(CoCreate, AsksTheLibraryItself)
{
    ASSERT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
    {
        vh::com_ptr<IClassFactory> factory;
        ASSERT_EQ(vh::CoCreate(GetModuleHandleW(L"kernel32.dll"), L"scrrun.dll", dictionary, class_factory,
                               factory.put_void()),
                  S_OK);
        vh::com_ptr<IDispatch> object;
        EXPECT_EQ(factory->CreateInstance(nullptr, vh::iid_of<IDispatch>, object.put_void()), S_OK);
        EXPECT_TRUE(object);

        vh::com_ptr<IClassFactory> none;
        EXPECT_EQ(vh::CoCreate(nullptr, L"scrrun.dll", dictionary, class_factory, none.put_void()),
                  HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND))
            << "looked for beside the program, where it is not";
        EXPECT_EQ(vh::CoCreate(nullptr, L"kernel32.dll", dictionary, class_factory, none.put_void()),
                  HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND));
        EXPECT_EQ(vh::CoCreate(GetModuleHandleW(L"kernel32.dll"), L"kernel32.dll", dictionary, class_factory,
                               none.put_void()),
                  HRESULT_FROM_WIN32(ERROR_PROC_NOT_FOUND));
        vh::com_ptr<IUnknown> remote;
        EXPECT_EQ(
            vh::CoCreateByProgram(L"no such program", dictionary, nullptr, vh::iid_of<IUnknown>, remote.put_void()),
            static_cast<HRESULT>(0x80070002));
    }
    CoUninitialize();
}

} // namespace
