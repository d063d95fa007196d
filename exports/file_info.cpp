// Files of an item: their names by pattern, and facts about each.
#include "vhrt/file_info.h"

#include <array>
#include <cwctype>
#include <string>

#include "../media/file_pattern.h"
#include "../runtime/context.h"
#include "../runtime/frame.h"
#include "../scriptdata/format.h"
#include "../scriptdata/results.h"
#include "../scriptdata/variant.h"
#include "vhrt/lists.h"

namespace {

// Facts of a file, as in vhrt.h.

// What the value of a fact becomes.
enum class form { none, positive, number, date, time, long_date, text, truth, bits, hexadecimal, list, text_bits };

constexpr form FormOf(int32_t fact)
{
    switch (fact) {
    case FileFactSizeLow:
    case FileFactSizeHigh:
    case FileFactPlainSizeLow:
    case FileFactPlainSizeHigh:
    case FileFactGroupFiles:
    case FileFactGroupSizeLow:
    case FileFactGroupSizeHigh:
        return form::positive;
    case FileFactDate:
        return form::date;
    case FileFactTime:
        return form::time;
    case FileFactAttributes:
        return form::number;
    case FileFactVersion:
    case FileFactLanguage:
    case FileFactSource:
    case FileFactGroup:
    case FileFactTargetFolder:
    case FileFactSourceFolder:
    case FileFactItem:
        return form::text;
    case FileFactLongDate:
        return form::long_date;
    case FileFactSystems:
        return form::bits;
    case FileFactSignature:
        return form::hexadecimal;
    case FileFactShared:
    case FileFactPermanent:
    case FileFactNeverOverwritten:
        return form::truth;
    case FileFactLanguages:
        return form::list;
    case FileFactSystemBits:
        return form::text_bits;
    default:
        return form::none;
    }
}

// Facts of a single file, which make no sense without one.
constexpr bool NeedsFile(int32_t fact)
{
    return (fact >= FileFactSizeLow && fact <= FileFactLongDate) ||
           (fact >= FileFactSignature && fact <= FileFactPlainSizeHigh);
}

// The packed form of a file's date and time.
struct packed_time {
    uint32_t bits;

    unsigned day() const { return bits & 31; }
    unsigned month() const { return bits >> 5 & 15; }
    unsigned years_since_1980() const { return bits >> 9 & 127; }
    int minute() const { return static_cast<int>(bits >> 21 & 63); }
    int hour() const { return static_cast<int>(bits >> 27 & 31); }
    unsigned short_year() const
    {
        const unsigned year = years_since_1980() + 80;
        return year >= 100 ? year - 100 : year;
    }
};

template <class... Arguments>
void PutFormatted(wchar_t* text, const wchar_t* format, Arguments... arguments)
{
    std::array<wchar_t, 64> formatted;
    vh::FormatText(formatted.data(), formatted.size(), format, arguments...);
    vh::CopyOutUnlimited(formatted.data(), text);
}

// The text as a number: hexadecimal behind "0x", else decimal.
uint32_t ParseNumber(const std::wstring& text)
{
    const bool hexadecimal = text.starts_with(L"0x");
    return static_cast<uint32_t>(std::wcstoul(text.c_str() + (hexadecimal ? 2 : 0), nullptr, hexadecimal ? 16 : 10));
}

int32_t Add(ObjectContext* context, ListHandle list, uint32_t value)
{
    return static_cast<int32_t>(_ListAddItem(context, list, static_cast<int32_t>(value), ListAddAfter));
}

// One element per set bit; no bit at all adds a single 0.
int32_t AddBits(ObjectContext* context, ListHandle list, uint32_t bits)
{
    if (bits == 0)
        return Add(context, list, 0);
    for (uint32_t bit = 1; bit; bit <<= 1)
        if (bits & bit)
            if (const int32_t failed = Add(context, list, bit))
                return failed;
    return 0;
}

int32_t AddGroups(ObjectContext* context, ListHandle list, std::wstring_view text)
{
    constexpr std::size_t group = 5;
    for (; !text.empty(); text.remove_prefix(std::min(group, text.size()))) {
        const uint32_t value = ParseNumber(std::wstring(text.substr(0, group)));
        if (value)
            if (const int32_t failed = Add(context, list, value))
                return failed;
    }
    return 0;
}

stringx Hexadecimal(std::wstring_view text)
{
    constexpr std::size_t most = 16;
    stringx digits;
    for (const wchar_t unit : text.substr(0, most)) {
        std::array<wchar_t, 8> two;
        vh::FormatText(two.data(), two.size(), L"%02X", static_cast<unsigned>(unit));
        digits += two.data();
    }
    return digits;
}

int32_t Deliver(ObjectContext* context, int32_t fact, vh::variant& value, int64_t* number, wchar_t* text)
{
    const form wanted = FormOf(fact);
    const auto as_number = [&] { return SUCCEEDED(value.change(VT_I8)) ? value.get().llVal : 0; };
    const auto as_bits = [&] { return static_cast<uint32_t>(as_number()); };
    const auto as_text = [&] { return SUCCEEDED(value.change(VT_BSTR)) ? value.text() : std::wstring_view(); };

    switch (wanted) {
    case form::positive:
        *number = as_number() & 0x7FFFFFFF;
        return 0;
    case form::number:
        *number = as_number();
        return 0;
    case form::date: {
        *number = as_number();
        const packed_time date{static_cast<uint32_t>(*number)};
        PutFormatted(text, L"%.2u-%.2u-%.2u", date.month(), date.day(), date.short_year());
        return 0;
    }
    case form::long_date: {
        *number = as_number();
        const packed_time date{static_cast<uint32_t>(*number)};
        PutFormatted(text, L"%.2u-%.2u-%.4u", date.month(), date.day(), date.years_since_1980() + 1980);
        return 0;
    }
    case form::time: {
        *number = as_number();
        const packed_time time{static_cast<uint32_t>(*number) << 16};
        PutFormatted(text, L"%.2d:%.2d", time.hour(), time.minute());
        return 0;
    }
    case form::text:
        vh::CopyOutUnlimited(as_text(), text);
        return 0;
    case form::truth:
        *number = value.get().boolVal == VARIANT_TRUE ? 1 : 0;
        return 0;
    case form::bits:
        return AddBits(context, *number, as_bits());
    case form::hexadecimal:
        vh::CopyOutUnlimited(Hexadecimal(as_text()), text);
        return 0;
    case form::list:
        return AddGroups(context, *number, as_text());
    case form::text_bits:
        return AddBits(context, *number, ParseNumber(std::wstring(as_text())));
    case form::none:
        break;
    }
    return 0;
}

int32_t AddMatches(ObjectContext* context, ListHandle list, vh::variant& holder, std::wstring_view pattern)
{
    const auto same = [](wchar_t a, wchar_t b) { return a == b || std::towlower(a) == std::towlower(b); };
    vh::safe_array names(holder);
    const int32_t result = names.for_each([&](const vh::variant& name) {
        return vh::MatchesFilePattern(name.text(), pattern, same)
                   ? static_cast<int32_t>(_ListAddString(context, list, stringx(name.text()).c_str(), ListAddAfter))
                   : 0;
    });
    names.destroy();
    return result;
}

} // namespace

int32_t _ComponentFileEnum(ObjectContext* context, const wchar_t* media, const wchar_t* item, const wchar_t* pattern,
                           ListHandle list, int32_t flag)
{
    return vh::Mapped(context, [&](ObjectContext& c) -> int32_t {
        const std::wstring_view whole = vh::View(pattern);
        const std::size_t slash = whole.find(L'\\');
        const std::wstring_view directory = slash == whole.npos ? std::wstring_view() : whole.substr(0, slash);
        const std::wstring_view file = slash == whole.npos ? whole : whole.substr(slash + 1);
        CVHRTMedia& m = c.media.Find(vh::View(media));
        vh::variant names;
        const int32_t code = directory.empty() ? m.FileEnum(vh::View(item), names.put())
                                               : m.FileEnumIn(vh::View(item), directory, flag != 0, names.put());
        return code < 0 ? code : AddMatches(context, list, names, file);
    });
}

// The group of the engine's question is the first part of the path, not the argument of that name.
int32_t _ComponentFileInfo(ObjectContext* context, const wchar_t* media, const wchar_t* item, const wchar_t*,
                           const wchar_t* path, int32_t fact, int64_t* number, wchar_t* text)
{
    return vh::Mapped(context, [&](ObjectContext& c) -> int32_t {
        const vh::item_split split = vh::SplitItem(vh::View(path));
        if (split.tail.empty() && NeedsFile(fact))
            return -1;
        vh::variant value;
        const int32_t code =
            c.media.Find(vh::View(media)).FileInfo(vh::View(item), split.head, split.tail, fact, value.put());
        return code < 0 ? code : Deliver(context, fact, value, number, text);
    });
}
