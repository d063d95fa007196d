#include "call_record.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <stdexcept>

#include "exports/vhrt/components.h"
#include "exports/vhrt/disks.h"
#include "exports/vhrt/drivers.h"
#include "exports/vhrt/facts.h"
#include "exports/vhrt/paths.h"
#include "script_object.h"
#include "script_value.h"

namespace host {

namespace {

#define VH_FIELD(record, field, kind, unit)                                                                            \
    {                                                                                                                  \
        L"" #field, FieldKind::kind, offsetof(record, field), sizeof(record::field) / sizeof(unit)                     \
    }

constexpr RecordField disk_info[] = {
    VH_FIELD(VHRTDiskInfo, path, Chars, wchar_t),      VH_FIELD(VHRTDiskInfo, request, Int, int32_t),
    VH_FIELD(VHRTDiskInfo, clusterSize, Int, int32_t), VH_FIELD(VHRTDiskInfo, totalHigh, Int, int32_t),
    VH_FIELD(VHRTDiskInfo, totalLow, Int, int32_t),    VH_FIELD(VHRTDiskInfo, freeHigh, Int, int32_t),
    VH_FIELD(VHRTDiskInfo, freeLow, Int, int32_t),     VH_FIELD(VHRTDiskInfo, driveType, Int, int32_t),
    VH_FIELD(VHRTDiskInfo, result, Int, int32_t),
};
constexpr RecordField url_parts[] = {
    VH_FIELD(VHRTUrlParts, scheme, Chars, wchar_t), VH_FIELD(VHRTUrlParts, schemeType, Int, int32_t),
    VH_FIELD(VHRTUrlParts, host, Chars, wchar_t),   VH_FIELD(VHRTUrlParts, port, Int, int32_t),
    VH_FIELD(VHRTUrlParts, user, Chars, wchar_t),   VH_FIELD(VHRTUrlParts, password, Chars, wchar_t),
    VH_FIELD(VHRTUrlParts, path, Chars, wchar_t),   VH_FIELD(VHRTUrlParts, extra, Chars, wchar_t),
};
constexpr RecordField processor_info[] = {
    VH_FIELD(VHRTProcessorInfo, architecture, Int, int32_t),
    VH_FIELD(VHRTProcessorInfo, processorCount, Int, int32_t),
    VH_FIELD(VHRTProcessorInfo, processorType, Int, int32_t),
    VH_FIELD(VHRTProcessorInfo, processorLevel, Int, int32_t),
    VH_FIELD(VHRTProcessorInfo, processorRevision, Int, int32_t),
};
constexpr RecordField media_info[] = {
    VH_FIELD(VHRTMediaInfo, number, Int, int32_t),   VH_FIELD(VHRTMediaInfo, text1, Chars, wchar_t),
    VH_FIELD(VHRTMediaInfo, text2, Chars, wchar_t),  VH_FIELD(VHRTMediaInfo, text3, Chars, wchar_t),
    VH_FIELD(VHRTMediaInfo, text4, Chars, wchar_t),  VH_FIELD(VHRTMediaInfo, text5, Chars, wchar_t),
    VH_FIELD(VHRTMediaInfo, text6, Chars, wchar_t),  VH_FIELD(VHRTMediaInfo, text7, Chars, wchar_t),
    VH_FIELD(VHRTMediaInfo, text8, Chars, wchar_t),  VH_FIELD(VHRTMediaInfo, text9, Chars, wchar_t),
    VH_FIELD(VHRTMediaInfo, text10, Chars, wchar_t), VH_FIELD(VHRTMediaInfo, text11, Chars, wchar_t),
    VH_FIELD(VHRTMediaInfo, text12, Chars, wchar_t), VH_FIELD(VHRTMediaInfo, text13, Chars, wchar_t),
    VH_FIELD(VHRTMediaInfo, text14, Chars, wchar_t), VH_FIELD(VHRTMediaInfo, truths, Ints, int32_t),
};
constexpr RecordField installer_info[] = {
    VH_FIELD(INSTALLERINFO, applicationId, Text, void*),
    VH_FIELD(INSTALLERINFO, displayName, Text, void*),
    VH_FIELD(INSTALLERINFO, productName, Text, void*),
    VH_FIELD(INSTALLERINFO, manufacturerName, Text, void*),
};

#undef VH_FIELD

constexpr RecordInfo records[] = {
    {"DiskInfo", sizeof(VHRTDiskInfo), disk_info},
    {"UrlParts", sizeof(VHRTUrlParts), url_parts},
    {"ProcessorInfo", sizeof(VHRTProcessorInfo), processor_info},
    {"MediaInfo", sizeof(VHRTMediaInfo), media_info},
    {"InstallerInfo", sizeof(INSTALLERINFO), installer_info},
};

} // namespace

const RecordInfo& RecordNamed(std::string_view name)
{
    for (const RecordInfo& record : records)
        if (record.name == name)
            return record;
    throw std::invalid_argument("there is no record " + std::string(name));
}

RecordBlock::RecordBlock(const RecordInfo& info, IDispatch* given) : m_info(&info), m_block(info.size)
{
    for (const RecordField& field : info.fields)
        if (const auto value = Property(given, field.name))
            Fill(field, value->get());
}

void RecordBlock::Fill(const RecordField& field, const VARIANT& value)
{
    std::byte* place = m_block.data() + field.offset;
    if (field.kind == FieldKind::Int) {
        const int32_t number = ToInt(value);
        std::memcpy(place, &number, sizeof number);
    } else if (field.kind == FieldKind::Chars) {
        const std::wstring text = ToText(value);
        if (text.size() >= field.count)
            throw script_error(std::wstring(field.name) + L" is too long");
        std::memcpy(place, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
    } else if (field.kind == FieldKind::Text && !IsAbsent(value)) {
        m_texts.push_back(ToText(value));
        const wchar_t* text = m_texts.back().c_str();
        std::memcpy(place, &text, sizeof text);
    }
}

vh::variant RecordBlock::Value(const RecordField& field) const
{
    const std::byte* place = m_block.data() + field.offset;
    if (field.kind == FieldKind::Chars) {
        std::wstring text(field.count, L'\0');
        std::memcpy(text.data(), place, field.count * sizeof(wchar_t));
        return vh::variant(std::wstring_view(text.c_str()));
    }
    std::vector<vh::variant> numbers;
    for (std::size_t i = 0; i < field.count; ++i) {
        int32_t number = 0;
        std::memcpy(&number, place + i * sizeof number, sizeof number);
        numbers.emplace_back(static_cast<long>(number));
    }
    return field.kind == FieldKind::Ints ? SafeArrayOf(numbers) : numbers.front();
}

vh::com_ptr<NamedValues> RecordBlock::Values() const
{
    auto values = vh::make_object<NamedValues>();
    for (const RecordField& field : m_info->fields)
        if (field.kind != FieldKind::Text)
            values->Add(field.name, Value(field));
    return values;
}

} // namespace host
