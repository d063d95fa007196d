// How arguments and results cross between a script and exported functions, with functions of our own.
#include <ranges>

#include "../support/test.h"
#include "host/call_frame.h"
#include "host/script_object.h"
#include "host/script_value.h"

namespace host {

namespace {

int context_object;
const CallSite site{&context_object, nullptr, nullptr};

template <class Function>
vh::variant CallOf(Function* function, const CallRow& row, std::vector<vh::variant> arguments)
{
    std::vector<VARIANT> plain;
    for (const vh::variant& argument : arguments)
        plain.push_back(argument.get());
    const Call call = ParseCall(row);
    return CallFrame(call, site, plain).Run(reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function)));
}

vh::variant Out(const vh::variant& result, const wchar_t* name)
{
    return Property(result.get().pdispVal, name).value_or(vh::variant(L"absent"));
}

vh::variant Number(double number)
{
    vh::variant value;
    value.get().vt = VT_R8;
    value.get().dblVal = number;
    return value;
}

int64_t __stdcall AddAll(void* context, int32_t a, int64_t b, const wchar_t* text)
{
    if (context != &context_object)
        return -1;
    return a + b + (text ? static_cast<int64_t>(std::wcslen(text)) : 1000);
}

int64_t __stdcall Echo(int64_t number) { return number; }
int64_t __stdcall LastUnit(const char* text) { return text ? static_cast<unsigned char>(text[strlen(text) - 1]) : -1; }

int texts_asked;

int32_t __stdcall LongText(wchar_t* buffer, int32_t size)
{
    ++texts_asked;
    const std::wstring text(5000, L'x');
    if (static_cast<int32_t>(text.size()) >= size)
        return static_cast<int32_t>(text.size()) + 1;
    std::memcpy(buffer, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
    return 0;
}

int32_t __stdcall SizedBytes(void* buffer, int32_t* size)
{
    const bool fits = *size > 3000;
    *size = fits ? 3000 : 3001;
    if (!fits)
        return -5;
    std::memset(buffer, 0xE9, 3000);
    return 0;
}

void __stdcall Reverse(void* block, uint32_t size, int32_t* first, int64_t* both)
{
    auto* bytes = static_cast<unsigned char*>(block);
    *first = bytes[0];
    std::swap(bytes[0], bytes[size - 1]);
    *both *= 2;
}

int32_t __stdcall CountTexts(const wchar_t* const* texts, int32_t count)
{
    int32_t units = 0;
    for (int32_t i = 0; i < count; ++i)
        units += static_cast<int32_t>(std::wcslen(texts[i]));
    return units;
}

} // namespace

TEST(CallFrame, PassesNumbersTextsAndTheContext)
{
    const CallRow row{"AddAll", "int64", "context, a:int, b:int64, text:text"};
    std::vector<vh::variant> arguments;
    arguments.emplace_back(-5L);
    arguments.push_back(Number(4294967296.0));
    arguments.emplace_back(L"abc");
    EXPECT_EQ(ToInt64(CallOf(AddAll, row, arguments).get()), 4294967294);
    arguments[2] = vh::variant();
    EXPECT_EQ(ToInt64(CallOf(AddAll, row, arguments).get()), 4294968291) << "undefined is a null text";
}

TEST(CallFrame, KeepsEveryNumberExact)
{
    const CallRow row{"Echo", "int64", "number:int64"};
    for (const int64_t number : {int64_t{0}, int64_t{-1}, int64_t{INT32_MAX} + 1, int64_t{0x7FFE12345678},
                                 (int64_t{1} << 53) - 1, (int64_t{1} << 53) + 1, INT64_MAX, INT64_MIN})
        EXPECT_EQ(ToInt64(CallOf(Echo, row, {FromInt64(number)}).get()), number);
    EXPECT_EQ(FromInt64(int64_t{0x7FFE12345678}).type(), VT_R8);
    EXPECT_EQ(FromInt64(INT64_MAX).type(), VT_BSTR);
    // Error codes come in either sign.
    EXPECT_EQ(ToInt(Number(2147807364.0).get()), static_cast<int32_t>(0x8004F084));
    EXPECT_EQ(ToInt(vh::variant(L"0x8004F084").get()), static_cast<int32_t>(0x8004F084));
    EXPECT_THROW(ToInt(vh::variant(L"12a").get()), script_error);
    EXPECT_THROW(ToInt64(Number(1e300).get()), script_error);
}

TEST(CallFrame, PassesNarrowTexts)
{
    const CallRow row{"LastUnit", "int64", "text:narrow"};
    EXPECT_EQ(ToInt64(CallOf(LastUnit, row, {vh::variant(L"caf\u00E9")}).get()), 0xE9);
    EXPECT_EQ(ToInt64(CallOf(LastUnit, row, {vh::variant()}).get()), -1);
}

TEST(CallFrame, GivesATextTheRoomThatItNeedsOrThatTheScriptLeaves)
{
    texts_asked = 0;
    vh::variant result = CallOf(LongText, {"LongText", "int", "text:buffer"}, {});
    EXPECT_EQ(texts_asked, 2);
    EXPECT_EQ(ToInt(Out(result, L"result").get()), 0);
    EXPECT_EQ(Out(result, L"text").text(), std::wstring(5000, L'x'));

    result = CallOf(LongText, {"LongText", "int", "text:buffer_of"}, {vh::variant(100L)});
    EXPECT_EQ(ToInt(Out(result, L"result").get()), 5001);
    EXPECT_TRUE(Out(result, L"text").text().empty());

    result = CallOf(SizedBytes, {"SizedBytes", "int", "value:bytes_inout"}, {});
    EXPECT_EQ(ToInt(Out(result, L"result").get()), 0);
    EXPECT_EQ(Out(result, L"value").text(), std::wstring(3000, L'\u00E9'));
}

TEST(CallFrame, HandsBackWhatAFunctionChangedInPlace)
{
    const CallRow row{"Reverse", "none", "bytes:block, size_of bytes, first:out_int, both:inout_int64"};
    const vh::variant result = CallOf(Reverse, row, {vh::variant(L"a\u00E9z"), Number(5e9)});
    EXPECT_EQ(Out(result, L"bytes").text(), L"z\u00E9a");
    EXPECT_EQ(ToInt(Out(result, L"first").get()), 'a');
    EXPECT_EQ(ToInt64(Out(result, L"both").get()), 10000000000);
    EXPECT_EQ(Out(result, L"nothing").text(), L"absent");
}

TEST(CallFrame, PassesArraysOfTexts)
{
    std::vector<vh::variant> texts;
    for (const wchar_t* text : {L"a", L"bb", L"ccc"})
        texts.emplace_back(text);
    const CallRow row{"CountTexts", "int", "source:texts, count:int"};
    EXPECT_EQ(ToInt(CallOf(CountTexts, row, {SafeArrayOf(texts), vh::variant(3L)}).get()), 6);
}

TEST(CallFrame, SaysWhatIsWrongWithTheArguments)
{
    const CallRow row{"_Echo", "int64", "number:int64"};
    const auto message = [&](std::vector<vh::variant> arguments) -> std::string {
        try {
            CallOf(Echo, row, std::move(arguments));
        } catch (const script_error& error) {
            return error.what();
        }
        return {};
    };
    EXPECT_EQ(message({}), "Echo(number) was called with 0 arguments");
    EXPECT_EQ(message({vh::variant(L"two")}), "Echo, number: a number is wanted, not \"two\"");
}

TEST(CallRecord, PutsFieldsWhereTheRecordHasThem)
{
    const RecordInfo& info = RecordNamed("DiskInfo");
    RecordBlock block(info, nullptr);
    auto* bytes = static_cast<std::byte*>(block.data());
    const auto is_number = [](const RecordField& field) { return field.kind == FieldKind::Int; };
    for (const RecordField& field : info.fields)
        if (is_number(field))
            std::memcpy(bytes + field.offset, &field.offset, 4);
    const auto values = block.Values();
    for (const RecordField& field : info.fields) {
        if (!is_number(field))
            continue;
        EXPECT_EQ(ToInt(Property(values.get(), field.name)->get()), static_cast<int32_t>(field.offset));
    }
    EXPECT_EQ(info.size, 552u);
}

} // namespace host
