// Objects by ProgID, by name and out of the running object table; what a machine without managed code raises; the
// trace.
#include "../../exports/vhrt.h"
#include "../../exports/vhrt/exceptions.h"
#include "../../scriptdata/variant.h"
#include "../support/replaced.h"
#include "../support/traced_library.h"

using namespace vh;

namespace {

constexpr const wchar_t* prog_id = L"Scripting.Dictionary";
constexpr auto not_running = static_cast<HRESULT>(0x800401E3);

// An object in the running object table while it lives.
class Registered : Pinned {
public:
    Registered(IUnknown* object, IMoniker* name)
    {
        GetRunningObjectTable(0, m_table.put());
        EXPECT_EQ(m_table->Register(ROTFLAGS_REGISTRATIONKEEPSALIVE, object, name, &m_cookie), S_OK);
    }
    ~Registered() { m_table->Revoke(m_cookie); }

private:
    com_ptr<IRunningObjectTable> m_table;
    DWORD m_cookie = 0;
};

class Objects : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))); }
    void TearDown() override
    {
        object.put();
        CoUninitialize();
    }
    variant object{L"old"};
};

TEST_F(Objects, ComeByProgId)
{
    ASSERT_EQ(_CreateObject(prog_id, &object.get()), 0);
    ASSERT_EQ(object.type(), VT_DISPATCH);
    IDispatch* made = object.get().pdispVal;
    EXPECT_EQ((made->AddRef(), made->Release()), 1u) << "the variant's is the one reference";
    const auto no_class = static_cast<HRESULT>(0x800401F3);
    for (const wchar_t* name : {L"No.Such.Class", L"", static_cast<const wchar_t*>(nullptr)})
        EXPECT_GIVES(_CreateObject(name, &object.get()), no_class, object.type(), VT_EMPTY);
    EXPECT_EQ(_CreateObject(prog_id, nullptr), E_INVALIDARG);
}

TEST_F(Objects, ComeFromWhatRuns)
{
    EXPECT_GIVES(_CoGetObject(L"", prog_id, &object.get()), not_running, object.type(), VT_EMPTY);
    EXPECT_EQ(_CoGetObject(nullptr, nullptr, &object.get()), E_FAIL);
    EXPECT_EQ(_CoGetObject(L"x", prog_id, nullptr), E_INVALIDARG);
    EXPECT_EQ(_CoGetObject(nullptr, L"No.Such.Class", &object.get()), static_cast<HRESULT>(0x800401F3));
    EXPECT_LT(_CoGetObject(L"no such moniker!", prog_id, &object.get()), 0) << "a name comes first";

    variant running;
    ASSERT_EQ(_CreateObject(prog_id, &running.get()), 0);
    const TempFolder folder;
    const std::wstring file = folder.Write(L"document.txt", "x");
    CLSID id{};
    wchar_t text[39];
    com_ptr<IMoniker> item, by_file;
    CLSIDFromProgID(prog_id, &id);
    StringFromGUID2(id, text, 39);
    CreateItemMoniker(L"!", text, item.put());
    CreateFileMoniker(file.c_str(), by_file.put());
    const Registered as_class(running.get().pdispVal, item.get());
    const Registered as_file(running.get().pdispVal, by_file.get());
    EXPECT_EQ(_CoGetObject(nullptr, prog_id, &object.get()), 0);
    EXPECT_TRUE(object.type() == VT_DISPATCH && object.get().pdispVal == running.get().pdispVal);
    EXPECT_EQ(_CoGetObject(file.c_str(), L"", &object.get()), 0);
    EXPECT_TRUE(object.type() == VT_DISPATCH && object.get().pdispVal == running.get().pdispVal);
}

TEST_F(Objects, ComeToNothingWhereTheyAreNoAutomationObjects)
{
    com_ptr<IMoniker> item, plain;
    CreateItemMoniker(L"!", L"plain", plain.put());
    CLSID id{};
    wchar_t text[39];
    CLSIDFromProgID(prog_id, &id);
    StringFromGUID2(id, text, 39);
    CreateItemMoniker(L"!", text, item.put());
    const Registered registered(plain.get(), item.get());
    EXPECT_GIVES(_CoGetObject(L"", prog_id, &object.get()), E_NOINTERFACE, object.type(), VT_EMPTY);
}

// The machine under test has no managed code: the failure reaches the caller as what it is.
TEST_F(Objects, OfManagedClassesNeedARuntime)
{
    HRESULT code = S_OK;
    try {
        code = _DotNetCoCreateObject(L"No.Assembly", L"No.Class", L"", &object.get());
    } catch (const com_exception& raised) {
        code = raised.code();
    } catch (const win32_exception& raised) {
        code = HRESULT_FROM_WIN32(raised.code());
    }
    EXPECT_LT(code, 0);
    EXPECT_EQ(object.type(), VT_EMPTY);
}

TEST_F(Objects, AreTraced)
{
    char id[16];
    const std::string text = TracedCalls(nullptr, nullptr, [&](auto& library, ObjectContext*) {
        const auto create = VHRT_GET(library, _CreateObject);
        const auto get = VHRT_GET(library, _CoGetObject);
        const auto unload = VHRT_GET(library, _DotNetUnloadAppDomain);
        create(L"No.Such.Class", &object.get());
        create(prog_id, &object.get());
        snprintf(id, sizeof id, "0x%08lx",
                 static_cast<unsigned long>(reinterpret_cast<uintptr_t>(object.get().pdispVal)));
        get(nullptr, nullptr, &object.get());
        get(L"", prog_id, &object.get());
        EXPECT_ANY_THROW(unload(L"mine"));
    });
    const std::string fields = "ProgId=Scripting.Dictionary", none = "File=\tProgId=";
    EXPECT_EQ(text.substr(0, text.find("VHFuncEnd|DotNet")),
              Record("CoCreateObject", "ProgId=No.Such.Class") + Record("CoCreateObject", fields) +
                  "VHFuncEnd|CoCreateObject|Result=Success\t" + fields + "\tDispId=" + id + "\r\n" +
                  Record("CoGetObject", none) + "VHFuncEnd|CoGetObject|Result=Failure\t\tError=0x80004005\t" + none +
                  "\tDispId=0x00000000\r\n" + Record("CoGetObject", "File=\tProgId=Scripting.Dictionary") +
                  Record("DotNetUnloadAppDomain", "AppDomain=mine"));
    EXPECT_NE(text.find("VHFuncEnd|DotNetUnloadAppDomain|Result=Failure\t\tError=0x80"), text.npos) << text;
}

} // namespace
