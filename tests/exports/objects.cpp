// Objects by ProgID, by name and out of the running object table; the trace, also of what a machine without managed
// code raises.
#include "../support/traced_library.h"

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

// The name under which a class stands in the table.
com_ptr<IMoniker> NameOfClass()
{
    CLSID id{};
    wchar_t text[39];
    com_ptr<IMoniker> name;
    CLSIDFromProgID(prog_id, &id);
    StringFromGUID2(id, text, 39);
    CreateItemMoniker(L"!", text, name.put());
    return name;
}

struct Objects : testing::Test {
    const Apartment apartment;
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
    com_ptr<IMoniker> by_file;
    CreateFileMoniker(file.c_str(), by_file.put());
    const Registered as_class(running.get().pdispVal, NameOfClass().get());
    const Registered as_file(running.get().pdispVal, by_file.get());
    for (const auto& [name, id] : {std::pair<const wchar_t*, const wchar_t*>(nullptr, prog_id), {file.c_str(), L""}}) {
        EXPECT_GIVES(_CoGetObject(name, id, &object.get()), 0, object.type(), VT_DISPATCH);
        EXPECT_EQ(object.get().pdispVal, running.get().pdispVal);
    }
}

TEST_F(Objects, ComeToNothingWhereTheyAreNoAutomationObjects)
{
    com_ptr<IMoniker> plain;
    CreateItemMoniker(L"!", L"plain", plain.put());
    const Registered registered(plain.get(), NameOfClass().get());
    EXPECT_GIVES(_CoGetObject(L"", prog_id, &object.get()), E_NOINTERFACE, object.type(), VT_EMPTY);
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
