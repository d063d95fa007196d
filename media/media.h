// A media: a named tree of items with selection, sizes and attributes. All component exports end in one
// of these operations. Operations give an HRESULT, or a code of their own where told.
#pragma once

#include <cstdint>
#include <vector>

#include "../Src/inc/engine_features.h"
#include "../Src/inc/engine_services.h"
#include "../Src/inc/script_values.h"
#include "../scriptdata/stringx.h"
#include "media_codes.h"
#include "tree_fill.h"

class CVHList;

class CVHRTMedia {
public:
    CVHRTMedia();
    CVHRTMedia(const CVHRTMedia&) = delete;
    CVHRTMedia& operator=(const CVHRTMedia&) = delete;
    virtual ~CVHRTMedia() = default;

    using text = std::wstring_view;

    virtual int32_t IsScriptMedia() = 0;
    virtual bool IsReal() { return true; }
    // Joined paths of the children; an invisible child is left out on request.
    virtual int32_t ListItems(text parent, std::vector<stringx>& items, int32_t& count, bool visible_only);
    // The result is in number, or a text for the buffer of `length` units.
    virtual int32_t GetData(text item, int32_t code, int32_t* number, wchar_t* buffer, int32_t length) = 0;
    virtual int32_t SetData(text item, int32_t code, int32_t number, text value, ObjectContext* context) = 0;
    virtual int32_t AddTreeItem(vh::tree_fill& view, text item, vh::tree_item parent, int32_t depth);
    virtual int32_t AddTreeChildren(vh::tree_fill& view, text item, vh::tree_item parent, int32_t depth);
    virtual int32_t GetDescription(text item, stringx& value) = 0;
    virtual int32_t GetDisplayName(text item, stringx& value) = 0;
    virtual int32_t GetMiscText(text item, stringx& value) = 0;
    virtual int32_t IsSelected(text item, bool& truth) = 0;
    virtual int32_t SelectItem(text item, bool truth, ObjectContext* context) = 0;
    virtual int32_t IsPartlySelected(text item, bool& truth) = 0;
    virtual int32_t IsVisible(text item, bool& truth) = 0;
    // Mode 0 counts all children, mode 1 the visible ones. An empty parent is the root.
    virtual int32_t GetChildCount(text parent, int32_t& count, int32_t mode) = 0;
    // The name, without the parent's path, of the child at a 1-based index.
    virtual int32_t GetChild(text parent, int32_t index, stringx& name) = 0;
    // Bytes, at most 0x7FFFFFFF.
    virtual int32_t GetItemSize(text item, int32_t& size) = 0;
    virtual int32_t GetTotalSize(text item, bool whole_tree, bool flag, int64_t& size, int32_t shift) = 0;
    virtual int32_t SetItemSize(text item, int32_t size) = 0;
    virtual int32_t GetCost(text item, text target, uint64_t& bytes) = 0;
    virtual int32_t Advise(text item, ISetupBasicFeatureStateEvents* view, int64_t view_item, int32_t& cookie) = 0;
    virtual int32_t Unadvise(text item, int32_t cookie) = 0;
    virtual int32_t GetDisplayOrder(text item, int32_t& order) = 0;

    // From here on a media without the operation answers 0x8004F07E and keeps that as its last error.
    virtual int32_t AddItem(text path, int32_t size, bool selected);
    virtual int32_t GetOrderBase();
    virtual int32_t MoveData(int32_t value, ObjectContext* context);
    virtual int32_t TransferData(ObjectContext* context);
    virtual int32_t RemoveAll();
    virtual int32_t Reinstall();
    virtual int32_t RemoveAllInLogOnly();
    virtual int32_t Patch(bool flag);
    virtual int32_t SelectNew(bool flag);
    virtual int32_t CreateRegistrySet(text name, ISetupLog* log);
    virtual int32_t CreateShellObjects(ISetupLog* log);
    virtual int32_t CheckValidateKey(text item, text key);
    virtual int32_t FilterOS(int32_t first, int32_t second, bool flag);
    virtual int32_t FilterLanguage(int32_t language, bool flag);
    // The first drive without room, and the bytes wanted there, at most 0x7FFFFFFF.
    virtual int32_t CompareSizeRequired(wchar_t* drive, int32_t* size);
    virtual int32_t SetupTypeGetData(text type, int32_t code, int32_t* number, wchar_t* buffer, int32_t length);
    virtual int32_t SetupTypeEnum(std::vector<stringx>& names);
    virtual int32_t SetupTypeSet(text type);
    virtual int32_t Update();
    virtual int32_t NeedsValidate(text item, bool& truth);
    virtual int32_t FileEnumIn(text item, text directory, bool flag, VARIANT* names);
    virtual int32_t FileEnum(text item, VARIANT* names);
    virtual int32_t FileInfo(text item, text group, text file, int32_t code, VARIANT* value);
    virtual int32_t AddCost(text item, text path, int32_t low, int32_t high);
    virtual int32_t AddUninstallCost(text item, int32_t low, int32_t high);
    virtual int32_t GetErrorObject(IUnknown** error);
    virtual int32_t GetFilteringInfo(int32_t kind, CVHList& list);
    virtual int32_t GetInfo(ObjectContext* context, VHRTMediaInfo* record);

    // What the script asks for with _ComponentError.
    const stringx& error_text() const { return m_errorText; }
    const stringx& error_detail1() const { return m_errorDetail1; }
    const stringx& error_detail2() const { return m_errorDetail2; }
    int32_t last_error() const { return m_lastError; }
    int32_t Fail(int32_t code, text error_text = {});

protected:
    // "<Data>" unless a class says otherwise.
    stringx m_mediaName;

private:
    struct tree_level;

    int32_t OpenTreeLevel(std::vector<tree_level>& open, text path, vh::tree_item parent, int32_t depth);
    // Adds one item below `tree`, which becomes its own; `depth` becomes what is left for its children, 0 for none.
    int32_t AddTreeNode(vh::tree_fill& view, text item, vh::tree_item& tree, int32_t& depth);
    int32_t NotSupported() { return Fail(vh::media_not_supported); }

    stringx m_errorText;
    stringx m_errorDetail1;
    stringx m_errorDetail2;
    int32_t m_lastError = 0;
};

namespace vh {

// "parent\child", or the child alone.
stringx JoinItem(std::wstring_view parent, std::wstring_view child);

// The part before and behind the first backslash; without one all is head.
struct item_split {
    std::wstring_view head;
    std::wstring_view tail;
};
item_split SplitItem(std::wstring_view path);

// Behind the last backslash, or all.
std::wstring_view LastComponent(std::wstring_view path);

// CopyOut of a text whose every two units backslash and n become carriage return and line feed.
int32_t CopyOutLines(std::wstring_view text, wchar_t* buffer, int32_t size);

} // namespace vh
