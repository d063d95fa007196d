// The product's data set, and every data set opened from a header file.
#pragma once

#include <oaidl.h>

#include "engine_features.h"
#include "engine_services.h"

// One setup type of the product.
struct ISetupType : IDispatch {
    VH_SLOTS_FROM(7);
    VH_SLOT(7) GetName(BSTR* name) = 0;
    VH_SLOT(8) GetDisplayText(BSTR* text) = 0;
    VH_SLOT(9) GetDescription(BSTR* text) = 0;
    VH_SLOT(10) Activate() = 0;
};

// E_INVALIDARG or 0x8004F003 says that there is no such setup type.
struct ISetupTypes : ISetupCollection<ISetupType> {};

struct ISetupData : IDispatch {
    static constexpr GUID iid = vh::Guid("{BB2FCC65-6108-4904-B89A-2E6F9881229A}");
    VH_SLOTS_FROM(7);
    // Holds the items "<Data>" and "<Support>".
    VH_SLOT(7) GetRoot(ISetupComponents** root) = 0;
    VH_UNNAMED(8)
    VH_SLOT(9) GetSetupTypes(ISetupTypes** types) = 0;
    VH_UNNAMED(10)
    VH_SLOT(11) FilterLanguage(long language, VARIANT_BOOL flag) = 0;
    VH_SLOT(12) GetMaintenance(VARIANT_BOOL* maintenance) = 0;
    VH_SLOT(13) GetProductGuid(long reserved, BSTR* identifier) = 0;
    VH_SLOT(14) GetSourcePath(BSTR* path) = 0;
    VH_SLOT(15) GetErrorObject(IUnknown** error) = 0;
    VH_SLOT(16) Validate(BSTR key) = 0;
    VH_SLOT(17) SetLog(ISetupLog* log) = 0;
    VH_SLOT(18) CreateRegistrySet(BSTR name, ISetupLog* log) = 0;
    VH_SLOT(19) CreateShellObjects(ISetupLog* log) = 0;
};

struct ISetupDataEx : vh::unnamed_slots<IDispatch, 7, 20> {
    static constexpr GUID iid = vh::Guid("{84E2D1D6-01D5-4872-8851-164348AC5FBB}");
    VH_SLOTS_FROM(21);
    VH_SLOT(21) GetInstallGuid(BSTR* identifier) = 0;
    // Bit 1: maintenance option 4; bit 3: maintenance option 8.
    VH_SLOT(22) GetFlags(long* flags) = 0;
    VH_UNNAMED(23)
    VH_SLOT(24) GetUpdateMode(VARIANT_BOOL* on) = 0;
    VH_SLOT(25) SetUpdateMode(VARIANT_BOOL on) = 0;
    // Bit 0 with bit 1 or 2: the log already saved the target.
    VH_SLOT(26) GetTargetState(long* flags) = 0;
    VH_UNNAMED(27)
    VH_UNNAMED(28)
    VH_UNNAMED(29)
    VH_UNNAMED(30)
    VH_UNNAMED(31)
    VH_UNNAMED(32)
    VH_SLOT(33) GetEnabledServices(long* services) = 0;
    VH_SLOT(34) GetRemoveAllMode(VARIANT_BOOL* on) = 0;
    VH_SLOT(35) SetRemoveAllMode(VARIANT_BOOL on) = 0;
    VH_SLOT(36) FilterOS(long first, long second, VARIANT_BOOL flag) = 0;
};

struct ISetupDataModes : vh::unnamed_slots<IDispatch, 7, 54> {
    static constexpr GUID iid = vh::Guid("{CEA84D3E-BB98-4BDB-B236-456F7F090575}");
    VH_SLOTS_FROM(55);
    VH_SLOT(55) GetReinstallMode(VARIANT_BOOL* on) = 0;
    VH_SLOT(56) SetReinstallMode(VARIANT_BOOL on) = 0;
    VH_UNNAMED(57)
    VH_SLOT(58) GetRootFiles(VARIANT* names) = 0;
    VH_SLOT(59) EnumRootFiles(BSTR directory, VARIANT_BOOL flag, VARIANT* names) = 0;
    VH_SLOT(60) RootFileInfo(BSTR group, BSTR file, long code, VARIANT* value) = 0;
    VH_SLOT(61) GetFilteringNumbers(long kind, VARIANT* numbers) = 0;
};

struct ISetupDataValidation : vh::unnamed_slots<IDispatch, 7, 19> {
    static constexpr GUID iid = vh::Guid("{23DDD509-99EC-4A6E-A46F-79E0C98DE452}");
    VH_SLOTS_FROM(20);
    VH_SLOT(20) GetNeedsValidation(VARIANT_BOOL* needed) = 0;
};

// Media information: fourteen texts, a number and five truths, in this order.
struct ISetupMediaInfo : vh::unnamed_slots<IDispatch, 7, 25> {
    static constexpr GUID iid = vh::Guid("{6CE5A693-CA72-41EF-84AE-E93D05D1343D}");
    VH_SLOTS_FROM(26);
    VH_SLOT(26) GetText1(BSTR* text) = 0;
    VH_SLOT(27) GetText2(BSTR* text) = 0;
    VH_SLOT(28) GetText3(BSTR* text) = 0;
    VH_SLOT(29) GetText4(BSTR* text) = 0;
    VH_SLOT(30) GetText5(BSTR* text) = 0;
    VH_SLOT(31) GetText6(BSTR* text) = 0;
    VH_SLOT(32) GetText7(BSTR* text) = 0;
    VH_SLOT(33) GetText8(BSTR* text) = 0;
    VH_SLOT(34) GetText9(BSTR* text) = 0;
    VH_SLOT(35) GetText10(BSTR* text) = 0;
    VH_SLOT(36) GetText11(BSTR* text) = 0;
    VH_SLOT(37) GetText12(BSTR* text) = 0;
    VH_SLOT(38) GetText13(BSTR* text) = 0;
    VH_SLOT(39) GetText14(BSTR* text) = 0;
    VH_SLOT(40) GetNumber(long* number) = 0;
    VH_SLOT(41) GetTruth1(VARIANT_BOOL* truth) = 0;
    VH_SLOT(42) GetTruth2(VARIANT_BOOL* truth) = 0;
    VH_SLOT(43) GetTruth3(VARIANT_BOOL* truth) = 0;
    VH_SLOT(44) GetTruth4(VARIANT_BOOL* truth) = 0;
    VH_SLOT(45) GetTruth5(VARIANT_BOOL* truth) = 0;
};

// Opens a header file (".hdr") into a data set.
struct ISetupDataFactory : IUnknown {
    static constexpr GUID iid = vh::Guid("{3FAB5B06-7FAB-45E5-8D29-546D3A95E227}");
    VH_SLOTS_FROM(3);
    VH_UNNAMED(3)
    VH_SLOT(4) Open(BSTR headerPath, BSTR reserved, ISetupData** data) = 0;
};
