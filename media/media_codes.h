// Failure codes of the media family; scripts see 0xF000 minus the low 16 bits.
#pragma once

#include <cstdint>
#include <string_view>
#include <windows.h>

#include "../Src/inc/script_values.h"

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

// Attribute codes of an item.
enum media_attribute : int32_t {
    attribute_description = AttributeDescription,
    attribute_long_text = AttributeLongText,
    attribute_visible = AttributeVisible,
    attribute_status = AttributeStatus,
    attribute_needs_validation = AttributeNeedsValidation,
    attribute_selected = AttributeSelected,
    attribute_size = AttributeSize,
    attribute_misc_text = AttributeMiscText,
    attribute_flag_bit = AttributeFlagBit,
    attribute_display_order = AttributeDisplayOrder,
    attribute_display_name = AttributeDisplayName,
    attribute_text16 = AttributeText16,
    attribute_text17 = AttributeText17,
    attribute_text18 = AttributeText18,
    attribute_text19 = AttributeText19,
    attribute_text20 = AttributeText20,
    attribute_text21 = AttributeText21,
    attribute_text22 = AttributeText22,
    attribute_text23 = AttributeText23,
    attribute_flags = AttributeFlags,
};

// What scripts see of a failure.
constexpr int32_t ScriptResult(media_code code) { return 0xF000 - (code & 0xFFFF); }
static_assert(ScriptResult(media_item_exists) == VHRT_ITEM_EXISTS &&
              ScriptResult(media_selection_refused) == VHRT_SELECTION_REFUSED &&
              ScriptResult(media_no_item) == VHRT_UNKNOWN_ITEM && ScriptResult(media_disk_full) == VHRT_DISK_FULL &&
              ScriptResult(media_not_supported) == VHRT_NOT_SUPPORTED &&
              ScriptResult(media_no_media) == VHRT_UNKNOWN_MEDIA &&
              ScriptResult(media_bad_attribute) == VHRT_UNKNOWN_ATTRIBUTE &&
              ScriptResult(media_read_only_attribute) == VHRT_READ_ONLY_ATTRIBUTE);

} // namespace vh
