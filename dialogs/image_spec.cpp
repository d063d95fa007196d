#include "image_spec.h"

#include <algorithm>
#include <climits>
#include <string>

namespace vh {

namespace {

bool IsDigit(wchar_t unit) { return unit >= L'0' && unit <= L'9'; }

bool StartsWithDigit(const stringx& text) { return !text.empty() && IsDigit(*text.c_str()); }

// A scale of 0, and one that is no number, means 100.
int ScaleOf(std::wstring_view text)
{
    int scale = 0;
    ScanNumber(text, scale);
    return scale == 0 ? 100 : scale;
}

stringx ResourceText(int number) { return number == 0 ? stringx() : stringx(std::to_wstring(number)); }

void ReadImages(std::wstring_view field, ImageSpec& spec)
{
    if (std::array<int, 2> numbers{}; ScanNumbers(field, numbers)) {
        spec.normal = ResourceText(numbers[0]);
        spec.alternative = ResourceText(numbers[1]);
        return;
    }
    TextFields names(field, L',');
    std::wstring_view name;
    names.Next(name);
    spec.normal = name;
    if (names.Next(name))
        spec.alternative = name;
}

} // namespace

bool ImageSpec::numeric() const { return StartsWithDigit(alternative) || StartsWithDigit(normal); }

bool TextFields::Next(std::wstring_view& field)
{
    if (!m_more)
        return false;
    const std::size_t end = m_rest.find(m_separator);
    m_more = end != std::wstring_view::npos;
    field = m_rest.substr(0, end);
    m_rest.remove_prefix(m_more ? end + 1 : m_rest.size());
    return true;
}

bool ScanNumber(std::wstring_view& text, int& number)
{
    std::size_t at = std::min(text.find_first_not_of(L" \t\r\n"), text.size());
    const bool negative = at < text.size() && text[at] == L'-';
    if (at < text.size() && (text[at] == L'-' || text[at] == L'+'))
        ++at;
    if (at == text.size() || !IsDigit(text[at]))
        return false;
    long long value = 0;
    for (; at < text.size() && IsDigit(text[at]); ++at)
        value = std::min<long long>(value * 10 + (text[at] - L'0'), INT_MAX);
    number = static_cast<int>(negative ? -value : value);
    text.remove_prefix(at);
    return true;
}

ImageSpec ParseImageSpec(std::wstring_view text)
{
    ImageSpec spec;
    if (text.starts_with(L'@'))
        text.remove_prefix(1);
    const bool short_form = text.starts_with(L'@');
    if (short_form)
        text.remove_prefix(1);
    TextFields fields(text, L';');
    std::wstring_view field;
    fields.Next(field);
    if (short_form) {
        spec.normal = field;
        spec.alternative = field;
        spec.resource_only = true;
        if (fields.Next(field))
            spec.scale = ScaleOf(field);
        return spec;
    }
    ReadImages(field, spec);
    if (fields.Next(field))
        spec.flag1 = field.starts_with(L'1');
    if (fields.Next(field))
        spec.flag2 = field.starts_with(L'1');
    if (fields.Next(field))
        ScanNumbers(field, spec.color1);
    // The second triple is stored the other way round.
    if (fields.Next(field) && ScanNumbers(field, spec.color2))
        std::swap(spec.color2[0], spec.color2[2]);
    if (fields.Next(field))
        spec.scale = ScaleOf(field);
    return spec;
}

} // namespace vh
