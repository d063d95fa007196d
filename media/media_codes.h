// Failure codes of the media family; scripts see 0xF000 minus the low 16 bits.
#pragma once

#include <cstdint>
#include <string_view>
#include <windows.h>

namespace vh {

enum media_code : int32_t {
    media_no_setup_type = static_cast<int32_t>(0x8004F003),
    media_bad_setup_type_attribute = static_cast<int32_t>(0x8004F005),
    media_item_exists = static_cast<int32_t>(0x8004F066),
    media_selection_refused = static_cast<int32_t>(0x8004F067),
    media_no_item = static_cast<int32_t>(0x8004F069),
    media_disk_full = static_cast<int32_t>(0x8004F06C),
    media_not_in_script_media = static_cast<int32_t>(0x8004F076),
    media_not_supported = static_cast<int32_t>(0x8004F07E),
    media_no_media = static_cast<int32_t>(0x8004F084),
    media_bad_attribute = static_cast<int32_t>(0x8004F089),
    media_read_only_attribute = static_cast<int32_t>(0x8004F08C),
    media_empty_name = static_cast<int32_t>(0x8004F093),
};

// The pseudo item that every data set carries as first child: the setup's own first disk.
inline constexpr std::wstring_view first_disk = L"Disk<1>";

// An engine collection says in two ways that it has no such item.
constexpr HRESULT NoItemCode(HRESULT code, HRESULT no_item = media_no_item)
{
    return code == E_INVALIDARG || code == no_item ? no_item : code;
}

// Attribute codes of an item, as in vhrt.h.
enum media_attribute : int32_t {
    attribute_description = 0,
    attribute_long_text = 1,
    attribute_visible = 2,
    attribute_status = 5,
    attribute_needs_validation = 6,
    attribute_selected = 8,
    attribute_size = 10,
    attribute_misc_text = 11,
    attribute_flag_bit = 13,
    attribute_display_order = 14,
    attribute_display_name = 15,
    attribute_text16 = 16,
    attribute_text17 = 17,
    attribute_text18 = 18,
    attribute_text19 = 19,
    attribute_text20 = 20,
    attribute_text21 = 21,
    attribute_text22 = 22,
    attribute_text23 = 23,
    attribute_flags = 24,
};

} // namespace vh
