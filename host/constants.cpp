#include "constants.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "exports/vhrt.h"

namespace host {

namespace {

// The name that C knows is the name that scripts use.
#define VH_CONSTANT(name, meaning)                                                                                     \
    {                                                                                                                  \
#name, static_cast < int64_t>(name), meaning                                                                   \
    }
// Handles of root keys are sign-extended numbers.
#define VH_ROOT(name, meaning)                                                                                         \
    {                                                                                                                  \
#name, root_##name, meaning                                                                                    \
    }

constexpr int64_t root_HKEY_CLASSES_ROOT = static_cast<int32_t>(0x80000000);
constexpr int64_t root_HKEY_CURRENT_USER = static_cast<int32_t>(0x80000001);
constexpr int64_t root_HKEY_LOCAL_MACHINE = static_cast<int32_t>(0x80000002);
constexpr int64_t root_HKEY_USERS = static_cast<int32_t>(0x80000003);

constexpr Constant results[] = {
    VH_CONSTANT(VHRT_OK, "done"),
    VH_CONSTANT(VHRT_FAILED, "failed"),
    VH_CONSTANT(VHRT_WRONG_TYPE, "the operation does not belong to the list's type or the file's mode"),
    VH_CONSTANT(VHRT_BAD_HANDLE, "no list or file has the handle"),
    VH_CONSTANT(VHRT_NO_ITEM, "the list has no such element"),
    VH_CONSTANT(VHRT_ITEM_EXISTS, "the item exists already"),
    VH_CONSTANT(VHRT_SELECTION_REFUSED, "the selection is refused, by a required item for example"),
    VH_CONSTANT(VHRT_UNKNOWN_ITEM, "there is no such item"),
    VH_CONSTANT(VHRT_DISK_FULL, "there is not enough space"),
    VH_CONSTANT(VHRT_NOT_SUPPORTED, "this media does not support it"),
    VH_CONSTANT(VHRT_UNKNOWN_MEDIA, "there is no such media"),
    VH_CONSTANT(VHRT_UNKNOWN_ATTRIBUTE, "there is no such attribute"),
    VH_CONSTANT(VHRT_WRONG_KEY, "the validation key is wrong"),
    VH_CONSTANT(VHRT_READ_ONLY_ATTRIBUTE, "the attribute can't be written"),
    VH_CONSTANT(VHRT_NO_KEY_NEEDED, "the item needs no validation key"),
};
constexpr Constant attributes[] = {
    VH_CONSTANT(AttributeDescription, "text: the description"),
    VH_CONSTANT(AttributeLongText, "text: a longer one"),
    VH_CONSTANT(AttributeVisible, "truth: whether the item is shown"),
    VH_CONSTANT(AttributeStatus, "number: the status"),
    VH_CONSTANT(AttributeNeedsValidation, "truth, only read: whether the item asks for a key"),
    VH_CONSTANT(AttributeSelected, "truth: whether the item is selected"),
    VH_CONSTANT(AttributeSize, "number: the size in bytes"),
    VH_CONSTANT(AttributeMiscText, "text: a further one"),
    VH_CONSTANT(AttributeFlagBit, "truth: a bit of the flags"),
    VH_CONSTANT(AttributeDisplayOrder, "number: the display order"),
    VH_CONSTANT(AttributeDisplayName, "text: the name for people"),
    VH_CONSTANT(AttributeText16, "text: \"16\" of \"texts\" in the product file"),
    VH_CONSTANT(AttributeText17, "text: \"17\""),
    VH_CONSTANT(AttributeText18, "text: \"18\""),
    VH_CONSTANT(AttributeText19, "text: \"19\""),
    VH_CONSTANT(AttributeText20, "text: \"20\""),
    VH_CONSTANT(AttributeText21, "text: \"21\""),
    VH_CONSTANT(AttributeText22, "text: \"22\""),
    VH_CONSTANT(AttributeText23, "text: \"23\""),
    VH_CONSTANT(AttributeFlags, "number: the flags"),
};
constexpr Constant setup_type_attributes[] = {
    VH_CONSTANT(SetupTypeDescription, "text: the description"),
    VH_CONSTANT(SetupTypeDisplayName, "text: the name for people"),
};
constexpr Constant systems[] = {
    VH_CONSTANT(SystemWindows7, "windows-7 of the product file"),
    VH_CONSTANT(SystemWindows8, "windows-8"),
    VH_CONSTANT(SystemWindows8_1, "windows-8.1"),
    VH_CONSTANT(SystemWindows10, "windows-10"),
    VH_CONSTANT(SystemWindows11, "windows-11"),
    VH_CONSTANT(SystemServer, "server"),
};
constexpr Constant filter_flags[] = {
    VH_CONSTANT(FilterLetIn, "lets the language or the systems take part again"),
    VH_CONSTANT(FilterTakeOut, "takes them out"),
};
constexpr Constant filtering_kinds[] = {
    VH_CONSTANT(FilteringLanguages, "languages that take part"),
    VH_CONSTANT(FilteringSystems, "bits of systems that take part"),
};
constexpr Constant file_facts[] = {
    VH_CONSTANT(FileFactSizeLow, "number: the low half of the size, 31 bits"),
    VH_CONSTANT(FileFactSizeHigh, "number: its high half"),
    VH_CONSTANT(FileFactDate, "text: the date, MM-DD-YY"),
    VH_CONSTANT(FileFactTime, "text: the time, HH:MM"),
    VH_CONSTANT(FileFactAttributes, "number: the attributes"),
    VH_CONSTANT(FileFactVersion, "text: the version"),
    VH_CONSTANT(FileFactLanguage, "text: the language"),
    VH_CONSTANT(FileFactSource, "text: the payload file"),
    VH_CONSTANT(FileFactLongDate, "text: the date, MM-DD-YYYY"),
    VH_CONSTANT(FileFactSystems, "a list of the bits of its systems"),
    VH_CONSTANT(FileFactSignature, "text: the MD5 sum"),
    VH_CONSTANT(FileFactPlainSizeLow, "number: as FileFactSizeLow"),
    VH_CONSTANT(FileFactPlainSizeHigh, "number: as FileFactSizeHigh"),
    VH_CONSTANT(FileFactGroupFiles, "number: how many files its group has"),
    VH_CONSTANT(FileFactGroup, "text: the group's name"),
    VH_CONSTANT(FileFactTargetFolder, "text: the folder at the target"),
    VH_CONSTANT(FileFactSourceFolder, "text: the folder of the payload"),
    VH_CONSTANT(FileFactGroupSizeLow, "number: the low half of the group's size"),
    VH_CONSTANT(FileFactItem, "text: the item's path"),
    VH_CONSTANT(FileFactGroupSizeHigh, "number: the high half of the group's size"),
    VH_CONSTANT(FileFactShared, "truth: shared with other products"),
    VH_CONSTANT(FileFactPermanent, "truth: stays at removal"),
    VH_CONSTANT(FileFactNeverOverwritten, "truth: an existing file stays"),
    VH_CONSTANT(FileFactLanguages, "a list of its languages"),
    VH_CONSTANT(FileFactSystemBits, "a list of the bits of its systems"),
};
constexpr Constant list_types[] = {
    VH_CONSTANT(ListTypeNumber, "a list of numbers"),
    VH_CONSTANT(ListTypeString, "a list of texts"),
};
constexpr Constant list_modes[] = {
    VH_CONSTANT(ListAddAfter, "behind the current element"),
    VH_CONSTANT(ListAddBefore, "before it"),
};
constexpr Constant list_indices[] = {
    VH_CONSTANT(ListIndexNext, "the next element"),
    VH_CONSTANT(ListIndexPrevious, "the previous one"),
    VH_CONSTANT(ListIndexLast, "the last one"),
    VH_CONSTANT(ListIndexFirst, "the first one"),
};
constexpr Constant list_write_flags[] = {
    VH_CONSTANT(ListWriteAnsi, "in the system's code page"),
    VH_CONSTANT(ListWriteUnicode, "as UTF-16; wins over ListWriteAnsi"),
    VH_CONSTANT(ListWriteAppend, "behind what the file holds, in its encoding"),
};
constexpr Constant file_modes[] = {
    VH_CONSTANT(FileReadWriteBytes, "bytes, to read and write"),
    VH_CONSTANT(FileReadText, "text, to read"),
    VH_CONSTANT(FileAppendText, "text, to write behind the end"),
    VH_CONSTANT(FileReadBytes, "bytes, to read"),
    VH_CONSTANT(FileAppendUnicodeText, "UTF-16 text, to write behind the end"),
};
constexpr Constant seek_origins[] = {
    VH_CONSTANT(SeekFromStart, "from the start"),
    VH_CONSTANT(SeekFromCurrent, "from the current position"),
    VH_CONSTANT(SeekFromEnd, "from the end"),
};
constexpr Constant copy_flags[] = {
    VH_CONSTANT(CopySubfolders, "folders below too"),
    VH_CONSTANT(CopyExistingStay, "existing files stay"),
    VH_CONSTANT(CopyByVersion, "a higher version stays"),
    VH_CONSTANT(CopyNewerOnly, "only newer files are written"),
    VH_CONSTANT(CopyUnlogged, "not recorded for removal"),
    VH_CONSTANT(CopyPermanent, "stays at removal"),
    VH_CONSTANT(CopyOverReadOnly, "read-only files are replaced"),
};
constexpr Constant disk_requests[] = {
    VH_CONSTANT(DiskClusterSize, "the cluster size"),
    VH_CONSTANT(DiskTotalSize, "the total size"),
    VH_CONSTANT(DiskFreeSpace, "the free space"),
    VH_CONSTANT(DiskDriveType, "the type of the drive"),
};
constexpr Constant dialog_styles[] = {
    VH_CONSTANT(DialogStandardEvents, "events of controls as scripts know them"),
    VH_CONSTANT(DialogCentered, "centred"),
    VH_CONSTANT(DialogAllCommands, "every command is an event"),
};
constexpr Constant dialog_results[] = {
    VH_CONSTANT(DialogCreated, "the dialog is made and not shown yet"),
    VH_CONSTANT(DialogClosed, "the dialog is closed"),
};
constexpr Constant dialog_events[] = {
    VH_CONSTANT(EventNone, "no event of a control"),
    VH_CONSTANT(EventComboBoxChanged, "the text of a combo box changed"),
    VH_CONSTANT(EventComboBoxSelection, "the selection of a combo box changed"),
    VH_CONSTANT(EventEditChanged, "the text of an edit control changed"),
    VH_CONSTANT(EventListBoxDoubleClick, "a double click in a list box"),
    VH_CONSTANT(EventListBoxSelection, "the selection of a list box changed"),
    VH_CONSTANT(EventButton, "a button was pressed"),
};
constexpr Constant status_styles[] = {
    VH_CONSTANT(StatusStyle4, "style 4"),   VH_CONSTANT(StatusStyle5, "style 5"),
    VH_CONSTANT(StatusStyle6, "style 6"),   VH_CONSTANT(StatusStyle57, "style 57"),
    VH_CONSTANT(StatusStyle58, "style 58"),
};
constexpr Constant image_kinds[] = {
    VH_CONSTANT(ImageText, "a text"),
    VH_CONSTANT(ImageFile, "a text that starts with the path of a file"),
    VH_CONSTANT(ImagePrevious, "what was shown before"),
    VH_CONSTANT(ImageNone, "no picture"),
};
constexpr Constant view_numbers[] = {
    VH_CONSTANT(ViewUnit, "unit of sizes"),
    VH_CONSTANT(ViewDecimals, "decimals of sizes"),
    VH_CONSTANT(ViewReserved, "kept and not used"),
    VH_CONSTANT(ViewShowSizes, "whether sizes are shown"),
    VH_CONSTANT(ViewExclusive, "whether one item at most is selected"),
    VH_CONSTANT(ViewParent, "the view above"),
    VH_CONSTANT(ViewChild, "the view below"),
    VH_CONSTANT(ViewDescription, "control of the description"),
    VH_CONSTANT(ViewSpaceRequired, "control of the space that is needed"),
    VH_CONSTANT(ViewSpaceFree, "control of the free space"),
    VH_CONSTANT(ViewTargetDirectory, "the target folder"),
    VH_CONSTANT(ViewMedia, "the media"),
    VH_CONSTANT(ViewParentItem, "the item whose children are shown"),
    VH_CONSTANT(ViewChangeButton, "control of the change button"),
    VH_CONSTANT(ViewPath1, "control of the first path"),
    VH_CONSTANT(ViewPath2, "control of the second path"),
};
constexpr Constant picker_flags[] = {
    VH_CONSTANT(PickStatus, "a status line; not together with an edit control"),
    VH_CONSTANT(PickEdit, "an edit control above the tree"),
    VH_CONSTANT(PickComputer, "a computer"),
    VH_CONSTANT(PickPrinter, "a printer"),
};
constexpr Constant shortcut_flags[] = {
    VH_CONSTANT(IconMinimized, "starts minimized"),          VH_CONSTANT(IconReplace, "changes an existing shortcut"),
    VH_CONSTANT(IconNormal, "starts in a normal window"),    VH_CONSTANT(IconMaximized, "starts maximized"),
    VH_CONSTANT(IconStartPin, "pinned to the start screen"), VH_CONSTANT(IconNoPin, "not to be pinned"),
    VH_CONSTANT(IconNotNew, "not shown as newly installed"),
};
constexpr Constant registry_roots[] = {
    VH_ROOT(HKEY_CLASSES_ROOT, "classes"),
    VH_ROOT(HKEY_CURRENT_USER, "the user's own"),
    VH_ROOT(HKEY_LOCAL_MACHINE, "the machine's"),
    VH_ROOT(HKEY_USERS, "all users'"),
};
constexpr Constant registry_types[] = {
    VH_CONSTANT(REG_SZ, "a text"),
    VH_CONSTANT(REG_EXPAND_SZ, "a text with %VARIABLES%"),
    VH_CONSTANT(REG_BINARY, "bytes"),
    VH_CONSTANT(REG_DWORD, "a number"),
    VH_CONSTANT(REG_MULTI_SZ, "a list of texts"),
};
constexpr Constant registry_kinds[] = {
    VH_CONSTANT(RegEnumKeys, "keys"),
    VH_CONSTANT(RegEnumValues, "values"),
};
constexpr Constant object_types[] = {
    VH_CONSTANT(ObjectFile, "a file"),
    VH_CONSTANT(ObjectFolder, "a folder"),
    VH_CONSTANT(ObjectRegistryKey, "a registry key"),
};
constexpr Constant permission_flags[] = {
    VH_CONSTANT(PermissionDeny, "deny instead of grant"),
    VH_CONSTANT(PermissionLimitInheritance, "the entry goes no further than one level down"),
    VH_CONSTANT(PermissionKey64, "the key of the 64-bit registry"),
};
constexpr Constant handle_selectors[] = {
    VH_CONSTANT(HandleMainWindow, "the main window"),
    VH_CONSTANT(HandleResourceModule, "the resource library"),
    VH_CONSTANT(HandleUserModule, "the user's resource library"),
};

#undef VH_ROOT
#undef VH_CONSTANT

constexpr ConstantGroup groups[] = {
    {"Results", results},
    {"Attributes of ComponentGetData and ComponentSetData", attributes},
    {"Attributes of ComponentSetupTypeGetData", setup_type_attributes},
    {"Systems of ComponentFilterOS", systems, true},
    {"Flag of ComponentFilterOS and ComponentFilterLanguage", filter_flags},
    {"Kinds of MediaGetFilteringInfo", filtering_kinds},
    {"Facts of ComponentFileInfo", file_facts},
    {"Types of ListCreate", list_types},
    {"Modes of ListAddItem and ListAddString", list_modes},
    {"Indices of ListSetIndex", list_indices},
    {"Flags of ListWriteToFile", list_write_flags, true},
    {"Modes of OpenFile", file_modes},
    {"Origins of SeekBytes", seek_origins},
    {"Flags of FileCopy", copy_flags, true},
    {"Requests of GetDiskInfo", disk_requests, true},
    {"Styles of DefineDialog", dialog_styles, true},
    {"Results of WaitOnDialog", dialog_results},
    {"Events of CtrlGetSubCommand and CtrlGetNotificationCode", dialog_events},
    {"Styles of EnableStatus", status_styles},
    {"Kinds of SetAltMainImage", image_kinds},
    {"Numbers of ComponentViewSetInfo and ComponentViewQueryInfo", view_numbers},
    {"Flags of BrowseForFolder", picker_flags, true},
    {"Flags of AddIcon and ReplaceIcon", shortcut_flags, true},
    {"Roots of the registry", registry_roots, true},
    {"Types of registry values", registry_types},
    {"Kinds of RegEnum", registry_kinds},
    {"Objects of SetObjectPermissions", object_types},
    {"Flags of SetObjectPermissions", permission_flags, true},
    {"Selectors of GetHandle", handle_selectors},
};

constexpr std::size_t Count()
{
    std::size_t count = 0;
    for (const ConstantGroup& group : groups)
        count += group.constants.size();
    return count;
}

// All of them in the order of the table.
constexpr auto all = [] {
    std::array<const Constant*, Count()> found{};
    std::size_t at = 0;
    for (const ConstantGroup& group : groups)
        for (const Constant& constant : group.constants)
            found[at++] = &constant;
    return found;
}();

// Their places in the order of their names.
constexpr auto by_name = [] {
    std::array<std::size_t, Count()> places{};
    for (std::size_t i = 0; i < places.size(); ++i)
        places[i] = i;
    std::sort(places.begin(), places.end(),
              [](std::size_t a, std::size_t b) { return std::string_view(all[a]->name) < all[b]->name; });
    return places;
}();

// Negative when the constant's name comes before this one.
int Compare(const char* name, std::wstring_view wanted)
{
    for (const wchar_t unit : wanted) {
        const int difference = static_cast<unsigned char>(*name) - static_cast<int>(unit);
        if (difference)
            return difference;
        ++name;
    }
    return *name ? 1 : 0;
}

} // namespace

std::span<const ConstantGroup> ConstantTable() { return groups; }

std::optional<std::size_t> FindConstant(std::wstring_view name)
{
    const auto* found = std::partition_point(by_name.begin(), by_name.end(),
                                             [&](std::size_t place) { return Compare(all[place]->name, name) < 0; });
    if (found == by_name.end() || Compare(all[*found]->name, name) != 0)
        return std::nullopt;
    return *found;
}

int64_t ConstantValue(std::size_t place) { return all[place]->value; }
std::size_t ConstantCount() { return all.size(); }

} // namespace host
