// Interfaces that the service provider hands out.
#pragma once

#include <oaidl.h>
#include <servprov.h>

#include "identifiers.h"
#include "slots.h"

namespace vh {

// The two text-substitution stores share one interface and differ by service identifier.
inline constexpr GUID local_text_service = Guid("{B9F4B7C2-6D8E-4251-A47B-1D024D6CEAC9}");
inline constexpr GUID global_text_service = Guid("{2942A10A-ADA0-42A6-8597-DACA9AB0033A}");
inline constexpr GUID driver_helper_service = Guid("{EFB7539B-24F3-46B6-AF6E-3B021B51EFEF}");

} // namespace vh

// Named texts and their substitution; a store can be written to and read from a log.
struct ISetupTextSub : IDispatch {
    static constexpr GUID iid = vh::Guid("{35A81AC2-7EF6-4B20-85A4-4BADCC12BEBC}");
    VH_SLOTS_FROM(7);
    VH_SLOT(7) GetValue(BSTR name, BSTR* value) = 0;
    VH_SLOT(8) SetValue(BSTR name, BSTR value) = 0;
    VH_SLOT(9) Substitute(BSTR* text) = 0;
    VH_SLOT(10) Load(BSTR name, IUnknown* store) = 0;
    VH_SLOT(11) Save(BSTR name, IUnknown* store) = 0;
};

// Protection: 1 or -1 protects a variable, 0 lifts that.
struct ISetupTextSubEx : vh::unnamed_slots<IDispatch, 7, 16> {
    static constexpr GUID iid = vh::Guid("{6A25C967-3322-4387-A2A6-2C0DE636AC3D}");
    VH_SLOTS_FROM(17);
    VH_SLOT(17) Protect(BSTR name, long protection) = 0;
};

// String table; S_FALSE says that the string is not there.
struct ISetupStrings : IDispatch {
    static constexpr GUID iid = vh::Guid("{498E9049-6B37-49BB-A955-D8E2F4EE14E7}");
    VH_SLOTS_FROM(7);
    VH_SLOT(7) GetString(BSTR id, BSTR* text) = 0;
};

// Numbered setup facts; the numbers in use are listed in scriptdata/facts.h.
struct ISetupInfo : IDispatch {
    static constexpr GUID iid = vh::Guid("{64774064-13C7-4F86-9801-EF0AB28E3D90}");
    VH_SLOTS_FROM(7);
    VH_SLOT(7) GetFact(long number, VARIANT* value) = 0;
};

// The install log, and the component log. The library only passes it on.
struct ISetupLog : IDispatch {
    static constexpr GUID iid = vh::Guid("{4F224BFE-A12F-49C2-9D77-B076C604645F}");
};

struct ISetupLogDB : IDispatch {
    static constexpr GUID iid = vh::Guid("{F5EBB941-06FC-4D66-9587-4CFBBD9C0129}");
    VH_SLOTS_FROM(7);
    VH_SLOT(7) GetStore(IUnknown** store) = 0;
};

struct ISetupRegistry : IDispatch {
    static constexpr GUID iid = vh::Guid("{5DD50F9D-8BA9-4B22-B34F-00B6CD0019EA}");
    VH_SLOTS_FROM(7);
    VH_SLOT(7) CreateKey(LONG64 root, BSTR key, BSTR keyClass, VARIANT_BOOL shared, ISetupLog* log) = 0;
    VH_SLOT(8) SetValue(LONG64 root, BSTR key, BSTR name, long type, VARIANT* value, ISetupLog* log) = 0;
    VH_SLOT(9) QueryValue(LONG64 root, BSTR key, BSTR name, long* type, VARIANT* value) = 0;
    VH_SLOT(10) DeleteKey(LONG64 root, BSTR key, long reserved) = 0;
    VH_SLOT(11) DeleteValue(LONG64 root, BSTR key, BSTR name) = 0;
    VH_SLOT(12) Connect(LONG64 root, BSTR machine, LONG64* remoteKey) = 0;
    VH_SLOT(13) Disconnect(LONG64 remoteKey) = 0;
    VH_SLOT(14) EnumKeys(LONG64 root, BSTR key, SAFEARRAY** names) = 0;
    VH_SLOT(15) EnumValues(LONG64 root, BSTR key, SAFEARRAY** names) = 0;
    VH_SLOT(16) KeyExists(LONG64 root, BSTR key, VARIANT_BOOL* exists) = 0;
};

// The registry service's tie to its surroundings; it also switches substitution on registry texts.
struct ISetupSiteAware : vh::unnamed_slots<IDispatch, 7, 17> {
    static constexpr GUID iid = vh::Guid("{4D5E95CC-5230-4F90-B7F1-EBD5DC19F4E1}");
    VH_SLOTS_FROM(18);
    VH_SLOT(18) SetSite(IServiceProvider* services) = 0;
    VH_SLOT(19) EnableTextSubs(VARIANT_BOOL on) = 0;
};

struct ISetupRegistryOptions : vh::unnamed_slots<IDispatch, 7, 19> {
    static constexpr GUID iid = vh::Guid("{55E18D2E-C713-4C45-9E84-69D0F1B7C51E}");
    VH_SLOTS_FROM(20);
    VH_SLOT(20) SetOptions(long options) = 0;
    VH_SLOT(21) GetOptions(long* options) = 0;
};

struct ISetupReboot : IDispatch {
    static constexpr GUID iid = vh::Guid("{A9556F76-7376-4F6B-80CD-7266953C51A6}");
    VH_SLOTS_FROM(7);
    VH_UNNAMED(7)
    VH_UNNAMED(8)
    VH_UNNAMED(9)
    VH_SLOT(10) PutString(BSTR first, BSTR second, BSTR third) = 0;
};

struct ISetupDirs : IUnknown {
    static constexpr GUID iid = vh::Guid("{5DCF21ED-65E6-4D6B-8CB7-69F90576EFC9}");
    VH_SLOTS_FROM(3);
    VH_SLOT(3) GetSupportDir(BSTR* directory) = 0;
    VH_SLOT(4) GetContextGuid(BSTR* identifier) = 0;
};

struct ISetupResources : IUnknown {
    static constexpr GUID iid = vh::Guid("{15207087-BE70-4F50-9654-611852FC0E8A}");
    VH_SLOTS_FROM(3);
    VH_SLOT(3) Load(BSTR file, HMODULE* module) = 0;
    VH_SLOT(4) Free(HMODULE module, long* result) = 0;
};

struct ISetupFileRegistrar : IUnknown {
    static constexpr GUID iid = vh::Guid("{BB6B1EDB-10D1-41F2-BFE1-4B7B5826B8B0}");
};

struct ISetupMsiStringTable : IUnknown {
    static constexpr GUID iid = vh::Guid("{908731D8-0A67-4E0C-900F-05261B04E115}");
};

// Lines for the script's author about what a call did.
struct ISetupScriptLog : IUnknown {
    static constexpr GUID iid = vh::Guid("{3B0E7C52-6A4D-4E0B-9C7A-5D1F2E8A9B46}");
    VH_SLOTS_FROM(3);
    VH_SLOT(3) WriteLine(BSTR line) = 0;
};

// Sets access lists for a process that does not see the 64-bit registry. Arguments as for _SetObjectPermissions, with
// the system's object type in the place of the kind; *result is what that call would give.
struct ISetupPermissionHelper : IUnknown {
    static constexpr GUID iid = vh::Guid("{A2D5B1F4-0C39-4D7E-8F16-7B9E3C5A4D20}");
    VH_SLOTS_FROM(3);
    VH_SLOT(3)
    SetObjectPermissions(BSTR object, BSTR domain, BSTR account, long objectType, long access, long flags,
                         long* result) = 0;
};

// Driver packages for a 32-bit process on a 64-bit system; asked for under driver_helper_service. `service` is the
// path of the driver library; the results are that library's codes.
struct ISetupDriverHelper : vh::unnamed_slots<IUnknown, 3, 14> {
    static constexpr GUID iid = vh::Guid("{101A9FA5-98CB-4AC3-B67C-3DC040C45996}");
    VH_SLOTS_FROM(15);
    VH_SLOT(15) SetInfo(BSTR applicationId, BSTR displayName, BSTR productName, BSTR manufacturerName) = 0;
    VH_SLOT(16) Preinstall(BSTR service, BSTR package, long flags) = 0;
    // hasInfo: 65535 when SetInfo has told who installs.
    VH_SLOT(17) Install(BSTR service, BSTR package, long flags, unsigned short hasInfo, short* reboot) = 0;
    VH_SLOT(18) Uninstall(BSTR service, BSTR package, long flags, unsigned short hasInfo, short* reboot) = 0;
    // Without a buffer the length alone, in units with the terminator.
    VH_SLOT(19) GetPath(BSTR service, BSTR package, long* length, BSTR buffer) = 0;
};

// The two numbers that the status display takes for a copy job.
struct ISetupCopyTotals : IUnknown {
    VH_SLOTS_FROM(3);
    VH_SLOT(3) GetLow(unsigned long* low) = 0;
    VH_SLOT(4) GetHigh(unsigned long* high) = 0;
};

struct ISetupCopyJob : IDispatch {
    VH_SLOTS_FROM(7);
    VH_SLOT(7) GetTotals(ISetupCopyTotals** totals) = 0;
    VH_SLOT(8) Run(ISetupLog* log, IUnknown* progress) = 0;
};

struct ISetupFileOps : IDispatch {
    static constexpr GUID iid = vh::Guid("{9C570786-1ABF-41D9-963C-B73A57B899AE}");
    VH_SLOTS_FROM(7);
    VH_SLOT(7) CreateCopyJob(BSTR source, BSTR target, unsigned long flags, ISetupCopyJob** job) = 0;
    VH_SLOT(8) MakeDirectory(BSTR path, ISetupLog* log) = 0;
};

struct ISetupShortcut : IDispatch {
    VH_SLOTS_FROM(7);
    VH_SLOT(7) GetTarget(BSTR* target) = 0;
    VH_SLOT(8) SetTarget(BSTR target) = 0;
    VH_UNNAMED(9)
    VH_UNNAMED(10)
    VH_SLOT(11) GetWorkingDir(BSTR* directory) = 0;
    VH_SLOT(12) SetWorkingDir(BSTR directory) = 0;
    VH_SLOT(13) GetArguments(BSTR* arguments) = 0;
    VH_SLOT(14) SetArguments(BSTR arguments) = 0;
    VH_SLOT(15) GetHotKey(BSTR* key) = 0;
    VH_SLOT(16) SetHotKey(BSTR key) = 0;
    VH_SLOT(17) GetShowCommand(long* command) = 0;
    VH_SLOT(18) SetShowCommand(long command) = 0;
    VH_UNNAMED(19)
    VH_SLOT(20) GetIcon(BSTR* file, long* index) = 0;
    VH_SLOT(21) SetIcon(BSTR file, long index) = 0;
    VH_SLOT(22) Save(ISetupLog* log, VARIANT* path) = 0;
};

struct ISetupShortcutProperties : vh::unnamed_slots<IDispatch, 7, 22> {
    static constexpr GUID iid = vh::Guid("{A6073466-959B-491F-B45B-4337532D2F72}");
    VH_SLOTS_FROM(23);
    VH_SLOT(23) SaveAs(long reserved, VARIANT path, VARIANT unused1, VARIANT unused2) = 0;
    VH_SLOT(24) SetProperty(BSTR key, BSTR value) = 0;
    VH_SLOT(25) Commit(VARIANT_BOOL* done) = 0;
};

// Program folders and shortcuts.
struct ISetupShell : IDispatch {
    static constexpr GUID iid = vh::Guid("{00E5995F-FDB0-44A2-B50C-A58342CF4440}");
    VH_SLOTS_FROM(7);
    VH_UNNAMED(7)
    VH_UNNAMED(8)
    VH_SLOT(9) NewItem(ISetupShortcut** shortcut) = 0;
    VH_SLOT(10) OpenItem(BSTR path, ISetupShortcut** shortcut) = 0;
    VH_SLOT(11) RemoveItem(BSTR path) = 0;
    VH_SLOT(12) ItemExists(BSTR path, VARIANT_BOOL* exists) = 0;
    VH_SLOT(13) ListItems(BSTR folder, SAFEARRAY** names) = 0;
    VH_SLOT(14) MakeFolder(BSTR folder, ISetupLog* log) = 0;
    VH_SLOT(15) RemoveFolder(BSTR folder) = 0;
    VH_UNNAMED(16)
    VH_SLOT(17) ListFolders(BSTR folder, SAFEARRAY** names) = 0;
    VH_SLOT(18) OpenFolderWindow(BSTR folder, long command) = 0;
};

// A named store of values that may live on another thread.
struct ISetupPropertyBag : IUnknown {
    static constexpr GUID iid = vh::Guid("{20779DCF-FBB5-4CF0-A856-5762225DDAB0}");
    VH_SLOTS_FROM(3);
    VH_SLOT(3) Read(BSTR name, VARIANT* value) = 0;
    VH_SLOT(4) Write(BSTR name, VARIANT* value) = 0;
};
