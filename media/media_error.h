// Stands in for a media that the table does not have. One object serves all contexts of the process.
#pragma once

#include "media.h"

// Most operations answer 0x8004F084; MoveData, NeedsValidate and the file queries stay "not supported", and
// scripts tell the two apart.
class CVHRTMediaError final : public CVHRTMedia {
public:
    static CVHRTMediaError& ErrorMedia();

    int32_t IsScriptMedia() override { return no_media; }
    bool IsReal() override { return false; }
    int32_t ListItems(text, std::vector<stringx>&, int32_t&, bool) override { return no_media; }
    int32_t GetData(text, int32_t, int32_t*, wchar_t*, int32_t) override { return no_media; }
    int32_t SetData(text, int32_t, int32_t, text, ObjectContext*) override { return no_media; }
    int32_t AddTreeItem(vh::tree_fill&, text, vh::tree_item, int32_t) override { return no_media; }
    int32_t AddTreeChildren(vh::tree_fill&, text, vh::tree_item, int32_t) override { return no_media; }
    int32_t GetDescription(text, stringx&) override { return no_media; }
    int32_t GetDisplayName(text, stringx&) override { return no_media; }
    int32_t GetMiscText(text, stringx&) override { return no_media; }
    int32_t IsSelected(text, bool&) override { return no_media; }
    int32_t SelectItem(text, bool, ObjectContext*) override { return no_media; }
    int32_t IsPartlySelected(text, bool&) override { return no_media; }
    int32_t IsVisible(text, bool&) override { return no_media; }
    int32_t GetChildCount(text, int32_t&, int32_t) override { return no_media; }
    int32_t GetChild(text, int32_t, stringx&) override { return no_media; }
    int32_t GetItemSize(text, int32_t&) override { return no_media; }
    int32_t GetTotalSize(text, bool, bool, int64_t&, int32_t) override { return no_media; }
    int32_t SetItemSize(text, int32_t) override { return no_media; }
    int32_t GetCost(text, text, uint64_t&) override { return no_media; }
    int32_t Advise(text, ISetupBasicFeatureStateEvents*, int64_t, int32_t&) override { return no_media; }
    int32_t Unadvise(text, int32_t) override { return no_media; }
    int32_t GetDisplayOrder(text, int32_t&) override { return no_media; }
    int32_t AddItem(text, int32_t, bool) override { return no_media; }
    int32_t GetOrderBase() override { return no_media; }
    int32_t TransferData(ObjectContext*) override { return no_media; }
    int32_t RemoveAll() override { return no_media; }
    int32_t Reinstall() override { return no_media; }
    int32_t RemoveAllInLogOnly() override { return no_media; }
    int32_t Patch(bool) override { return no_media; }
    int32_t SelectNew(bool) override { return no_media; }
    int32_t CreateRegistrySet(text, ISetupLog*) override { return no_media; }
    int32_t CreateShellObjects(ISetupLog*) override { return no_media; }
    int32_t CheckValidateKey(text, text) override { return no_media; }
    int32_t FilterOS(int32_t, int32_t, bool) override { return no_media; }
    int32_t FilterLanguage(int32_t, bool) override { return no_media; }
    int32_t CompareSizeRequired(wchar_t*, int32_t*) override { return no_media; }
    int32_t SetupTypeGetData(text, int32_t, int32_t*, wchar_t*, int32_t) override { return no_media; }
    int32_t SetupTypeEnum(std::vector<stringx>&) override { return no_media; }
    int32_t SetupTypeSet(text) override { return no_media; }
    int32_t Update() override { return no_media; }
    int32_t AddCost(text, text, int32_t, int32_t) override { return no_media; }
    int32_t AddUninstallCost(text, int32_t, int32_t) override { return no_media; }
    int32_t GetErrorObject(IUnknown**) override { return -132; }
    int32_t GetFilteringInfo(int32_t, CVHList&) override { return no_media; }
    int32_t GetInfo(ObjectContext*, VHRTMediaInfo*) override { return no_media; }

private:
    static constexpr int32_t no_media = vh::media_no_media;

    CVHRTMediaError() { m_mediaName.clear(); }
};
