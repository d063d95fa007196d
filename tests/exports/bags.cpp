// Property bags, read and written as a script does it.
#include "../support/session.h"

namespace {

struct Bags : testing::Test {
    Bags() { engine::test::MakeTree(m_folder); }
    void SetUp() override
    {
        engine = m_folder.Open();
        bag = engine->NewPropertyBag();
    }
    void Put(const wchar_t* name, variant value) const { bag->Write(bstr(name).get(), &value.get()); }

    std::unique_ptr<engine::Engine> engine;
    com_ptr<ISetupPropertyBag> bag;

private:
    engine::test::SetupFolder m_folder;
};

TEST_F(Bags, ChangeValuesToTheWantedType)
{
    Put(L"twelve", variant(L"12"));
    Put(L"text", variant(L"text"));
    Put(L"five", variant(5L));
    Put(L"true", variant(true));
    Table<const wchar_t*, int32_t, int32_t, const wchar_t*> cases = {
        {L"twelve", 12, 1, L"12"}, {L"five", 5, 1, L"5"}, {L"TRUE", -1, 1, nullptr}};
    for (const auto& [name, wanted_number, wanted_truth, text] : cases) {
        int32_t number = -7, truth = -7, size = 3;
        wchar_t buffer[8] = L"#######";
        EXPECT_GIVES(ReadNumberProperty(bag.get(), name, &number), 0, number, wanted_number);
        EXPECT_GIVES(ReadBoolProperty(bag.get(), name, &truth), 0, truth, wanted_truth);
        if (text) {
            EXPECT_GIVES_TEXT(_ReadStringProperty(bag.get(), name, buffer, &size), 0, buffer, text);
            EXPECT_EQ(size, 3) << "the size stays when the text fits";
        }
    }
    int32_t number = -7;
    EXPECT_EQ(ReadNumberProperty(bag.get(), L"text", &number), 0) << "what can't be changed is no failure";
    EXPECT_EQ(ReadNumberProperty(bag.get(), L"none", &number), E_INVALIDARG) << "the bag's own code";
    EXPECT_EQ(ReadNumberProperty(nullptr, L"text", &number), E_POINTER);
}

TEST_F(Bags, TellTheSizeThatATextNeeds)
{
    Put(L"four", variant(L"four"));
    Table<int32_t, HRESULT, int32_t, const wchar_t*> cases = {
        {5, 0, 5, L"four"}, {9, 0, 9, L"four"}, {4, E_INVALIDARG, 5, L"##"}, {0, E_INVALIDARG, 5, L"##"}};
    for (const auto& [room, result, size_back, text] : cases) {
        wchar_t buffer[8] = L"##";
        int32_t size = room;
        EXPECT_GIVES(_ReadStringProperty(bag.get(), L"four", buffer, &size), result, size, size_back);
        EXPECT_STREQ(buffer, text);
    }
    VARIANT nothing{};
    nothing.vt = VT_NULL;
    WriteArrayProperty(bag.get(), L"null", &nothing);
    wchar_t buffer[8] = L"##";
    int32_t size = 8;
    EXPECT_EQ(_ReadStringProperty(bag.get(), L"null", buffer, &size), 0);
    EXPECT_STREQ(buffer, L"") << "what is no text reads as empty";
}

TEST_F(Bags, KeepWhatIsWritten)
{
    const auto written = [&](const wchar_t* name) {
        variant value;
        EXPECT_EQ(bag->Read(bstr(name).get(), value.put()), S_OK);
        return value;
    };
    EXPECT_EQ(WriteNumberProperty(bag.get(), L"n", -3), 0);
    EXPECT_EQ(written(L"n").type(), VT_I4);
    EXPECT_EQ(written(L"n").get().lVal, -3);
    EXPECT_EQ(WriteBoolProperty(bag.get(), L"b", 7), 0);
    EXPECT_EQ(written(L"b").type(), VT_BOOL);
    EXPECT_EQ(written(L"b").get().boolVal, VARIANT_TRUE);
    EXPECT_EQ(WriteStringProperty(bag.get(), L"s", L"text"), 0);
    EXPECT_EQ(written(L"s").text(), L"text");
    EXPECT_EQ(WriteStringProperty(bag.get(), nullptr, nullptr), 0);
    EXPECT_EQ(written(L"").type(), VT_BSTR) << "a null name is the empty one";

    SAFEARRAY* numbers = SafeArrayCreateVector(VT_I4, 0, 3);
    VARIANT array{};
    array.vt = VT_ARRAY | VT_I4;
    array.parray = numbers;
    EXPECT_EQ(WriteArrayProperty(bag.get(), L"a", &array), 0);
    VARIANT back = array; // its content goes before the value comes
    EXPECT_GIVES(ReadArrayProperty(bag.get(), L"a", &back), 0, back.vt, VT_ARRAY | VT_I4);
    EXPECT_NE(back.parray, nullptr);
    EXPECT_EQ(ReadArrayProperty(bag.get(), L"none", &back), E_INVALIDARG);
    EXPECT_EQ(back.vt, VT_ARRAY | VT_I4) << "a failing read leaves the output alone";
    VariantClear(&back);
    EXPECT_EQ(ReadArrayProperty(bag.get(), L"a", nullptr), E_POINTER);
    engine->Calls().FailCall(L"ISetupPropertyBag.Write", E_ACCESSDENIED);
    EXPECT_EQ(WriteNumberProperty(bag.get(), L"n", 1), E_ACCESSDENIED);
    EXPECT_EQ(WriteArrayProperty(nullptr, L"a", &array), E_POINTER);
}

TEST_F(Bags, ComeOutOfTheirStreamOnce)
{
    const Apartment apartment;
    WriteNumberProperty(bag.get(), L"n", 41);
    IStream* stream = nullptr;
    ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(iid_of<ISetupPropertyBag>, bag.get(), &stream), S_OK);
    ISetupPropertyBag* out = nullptr;
    EXPECT_GIVES(__VHRTGetPropertyBag(&stream, &out), 0, stream, nullptr);
    int32_t number = 0;
    EXPECT_GIVES(ReadNumberProperty(out, L"n", &number), 0, number, 41);
    bag.reset();
    EXPECT_EQ(__VHRTReleasePropertyBag(out), 0) << "no reference is left";
    EXPECT_EQ(__VHRTReleasePropertyBag(nullptr), 0);

    out = reinterpret_cast<ISetupPropertyBag*>(1);
    EXPECT_LT(__VHRTGetPropertyBag(&stream, &out), 0) << "an empty stream word";
    EXPECT_EQ(out, nullptr);
    EXPECT_EACH(E_POINTER, __VHRTGetPropertyBag(nullptr, &out), __VHRTGetPropertyBag(&stream, nullptr));
}

} // namespace
