// Items with selection state, their collections and costs.
#pragma once

#include <oaidl.h>

#include "identifiers.h"
#include "slots.h"

// Size in bytes of a selection or an item, in all and per drive.
struct ISetupCosts : IUnknown {
    VH_SLOTS_FROM(3);
    VH_SLOT(3) GetTotalLow(unsigned long* low) = 0;
    VH_SLOT(4) GetTotalHigh(unsigned long* high) = 0;
    // A one-dimensional array of drive texts, "C:" or "\\server\share".
    VH_SLOT(5) GetDrives(VARIANT* drives) = 0;
    VH_SLOT(6) GetDriveLow(BSTR drive, unsigned long* low) = 0;
    VH_SLOT(7) GetDriveHigh(BSTR drive, unsigned long* high) = 0;
};

// A view's ear for selection changes. The item is the view's own cookie.
struct ISetupBasicFeatureStateEvents : IUnknown {
    static constexpr GUID iid = vh::Guid("{EE950C67-F1E9-46FE-999D-4DA119C0B2C0}");
    VH_SLOTS_FROM(3);
    VH_SLOT(3) OnStateChanged(LONG64 item, long selected, long locked) = 0;
};

// What items of both kinds have in common: everything before their children.
struct ISetupAnyItem : IDispatch {
    VH_SLOTS_FROM(7);
    VH_SLOT(7) GetName(BSTR* name) = 0;
    VH_SLOT(8) GetDisplayName(BSTR* text) = 0;
    VH_SLOT(9) SetDisplayName(BSTR text) = 0;
    VH_SLOT(10) GetVisible(VARIANT_BOOL* visible) = 0;
    VH_SLOT(11) SetVisible(VARIANT_BOOL visible) = 0;
    VH_SLOT(12) GetLongText(BSTR* text) = 0;
    VH_SLOT(13) SetLongText(BSTR text) = 0;
    VH_SLOT(14) GetSelected(short* selected) = 0;
    // 2 selects, 0 unselects; S_FALSE says that the item refused.
    VH_SLOT(15) SetSelected(short selected) = 0;
    VH_SLOT(16) GetPartlySelected(VARIANT_BOOL* partly) = 0;
    VH_UNNAMED(17)
    VH_SLOT(18) GetDescription(BSTR* text) = 0;
    VH_SLOT(19) SetDescription(BSTR text) = 0;
    VH_SLOT(20) GetMiscText(BSTR* text) = 0;
    VH_SLOT(21) SetMiscText(BSTR text) = 0;
    VH_SLOT(22) GetText17(BSTR* text) = 0;
    VH_SLOT(23) SetText17(BSTR text) = 0;
    VH_SLOT(24) GetText18(BSTR* text) = 0;
    VH_SLOT(25) SetText18(BSTR text) = 0;
    VH_SLOT(26) GetDisplayOrder(short* order) = 0;
    VH_SLOT(27) SetDisplayOrder(short order) = 0;
    VH_SLOT(28) GetStatus(long* status) = 0;
    VH_SLOT(29) GetNeedsValidation(VARIANT_BOOL* needed) = 0;
    VH_SLOT(30) Validate(BSTR key) = 0;
    VH_SLOT(31) GetText16(BSTR* text) = 0;
    VH_SLOT(32) GetText19(BSTR* text) = 0;
    VH_SLOT(33) GetFlags(long* flags) = 0;
    VH_SLOT(34) Advise(ISetupBasicFeatureStateEvents* view, LONG64 viewItem, long* cookie) = 0;
    VH_SLOT(35) Unadvise(long cookie) = 0;
    VH_SLOT(36) GetSize(VARIANT_BOOL wholeTree, unsigned long* low, unsigned long* high) = 0;
};

// The layout that items of both kinds share; `Collection` is the kind's own collection.
template <class Collection>
struct ISetupItem : ISetupAnyItem {
    VH_SLOTS_FROM(37);
    VH_SLOT(37) GetChildren(Collection** children) = 0;
    VH_UNNAMED(38)
    VH_UNNAMED(39)
    VH_UNNAMED(40)
    VH_SLOT(41) GetCosts(ISetupCosts** costs) = 0;
    VH_UNNAMED(42)
    VH_SLOT(43) Move(IUnknown* progress) = 0;
    VH_SLOT(44) Reinstall() = 0;
};

// By 1-based index or by name; E_INVALIDARG or 0x8004F069 says that there is no such item.
template <class Item_>
struct ISetupCollection : IDispatch {
    VH_SLOTS_FROM(7);
    VH_SLOT(7) Count(long* count) = 0;
    VH_SLOT(8) Item(VARIANT index, Item_** item) = 0;
};

struct ISetupComponents;
struct ISetupFeatures;
struct ISetupComponent : ISetupItem<ISetupComponents> {};
struct ISetupFeature : ISetupItem<ISetupFeatures> {};
struct ISetupComponents : ISetupCollection<ISetupComponent> {};
struct ISetupFeatures : ISetupCollection<ISetupFeature> {};

// Extensions of an item, each by query.
struct ISetupItemFileQueries : vh::unnamed_slots<IDispatch, 7, 46> {
    static constexpr GUID iid = vh::Guid("{5367EDC6-7F06-41A1-8E99-AD6FB689207E}");
    VH_SLOTS_FROM(47);
    VH_SLOT(47) EnumFiles(BSTR directory, VARIANT_BOOL flag, VARIANT* names) = 0;
    VH_SLOT(48) FileInfo(BSTR group, BSTR file, long code, VARIANT* value) = 0;
};

struct ISetupItemFiles : vh::unnamed_slots<IDispatch, 7, 50> {
    static constexpr GUID iid = vh::Guid("{DCCED59D-0FF2-44C5-B7D1-5C94A97EE179}");
    VH_SLOTS_FROM(51);
    VH_SLOT(51) GetFiles(VARIANT* names) = 0;
    VH_SLOT(52) AddCost(long low, long high, BSTR path) = 0;
};

struct ISetupItemUninstallCost : vh::unnamed_slots<IDispatch, 7, 49> {
    static constexpr GUID iid = vh::Guid("{ACC78CD7-3CDC-4FB4-BBEF-AB49487A9E3C}");
    VH_SLOTS_FROM(50);
    VH_SLOT(50) AddUninstallCost(long low, long high) = 0;
};

// Four further texts of an item: attribute codes 22, 23, 20 and 21.
struct ISetupItemTexts : IUnknown {
    static constexpr GUID iid = vh::Guid("{B1B5A92E-A600-45B3-8DA1-597D60679FC9}");
    VH_SLOTS_FROM(3);
    VH_SLOT(3) GetText22(BSTR* text) = 0;
    VH_SLOT(4) GetText23(BSTR* text) = 0;
    VH_SLOT(5) GetText20(BSTR* text) = 0;
    VH_SLOT(6) GetText21(BSTR* text) = 0;
};

// The product's features as a whole, from the host.
struct ISetupFeatureHost : IUnknown {
    static constexpr GUID iid = vh::Guid("{6293EDAB-47DD-49C9-873D-35DF01C20B79}");
    VH_SLOTS_FROM(3);
    VH_SLOT(3) GetFeatures(ISetupFeatures** features) = 0;
    // 0 selects none, 2 all.
    VH_SLOT(4) SelectAll(short selection) = 0;
    VH_SLOT(5) GetErrorObject(IUnknown** error) = 0;
    VH_SLOT(6) GetCosts(ISetupCosts** costs) = 0;
    VH_SLOT(7) Transfer(IUnknown* progress) = 0;
    VH_SLOT(8) Move(IUnknown* progress) = 0;
    VH_SLOT(9) Reinstall(VARIANT_BOOL patch) = 0;
};

struct ISetupFeatureCosts : vh::unnamed_slots<IUnknown, 3, 13> {
    static constexpr GUID iid = vh::Guid("{7C200B8F-0CC8-498A-B438-FA92DA4819B0}");
    VH_SLOTS_FROM(14);
    VH_SLOT(14) GetFeatureCosts(BSTR name, ISetupCosts** costs) = 0;
};

struct ISetupFeatureModes : vh::unnamed_slots<IUnknown, 3, 10> {
    static constexpr GUID iid = vh::Guid("{EEA93FE1-CD70-4E37-94A7-C9EE6B20755B}");
    VH_SLOTS_FROM(11);
    VH_SLOT(11) RemoveAllInLogOnly(long value) = 0;
    VH_SLOT(12) Patch(VARIANT_BOOL on) = 0;
    VH_SLOT(13) SelectNew(short selection) = 0;
};
