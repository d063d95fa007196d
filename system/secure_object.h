// One entry more in the access list of a file, a folder or a registry key.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <windows.h>

#include "../scriptdata/com_ptr.h"
#include "../scriptdata/stringx.h"

struct ISetupPermissionHelper;

namespace vh {

// What one call asks for.
struct PermissionItem {
    enum kind { file = 0, folder = 1, key = 2 };

    // A path; a key begins with "MACHINE", "CURRENT_USER", "CLASSES_ROOT" or "USERS".
    stringx object;
    // The script's.
    int32_t objectKind = 0;
    // The system's SE_OBJECT_TYPE of that.
    int32_t platformKind = 0;
    stringx domain;
    // A well-known name, a SID as text, or an account.
    stringx account;
    uint32_t access = 0;
    // 1 denies, 2 limits inheritance; 2, 4 and 16 send a key through the helper.
    int32_t flags = 0;

    // With the system's type set by the script's kind.
    PermissionItem(const wchar_t* object_name, int32_t kind_of_it, const wchar_t* domain_name,
                   const wchar_t* account_name, uint32_t mask, int32_t item_flags);
};

// A function that the system lacks answers 0. The order of the virtual functions is fixed.
class CVHSecureObject {
public:
    CVHSecureObject() = default;
    CVHSecureObject(const CVHSecureObject&) = delete;
    CVHSecureObject& operator=(const CVHSecureObject&) = delete;
    virtual ~CVHSecureObject() = default;

    virtual void Log(const wchar_t* line) = 0;
    virtual HRESULT GetHelper(com_ptr<ISetupPermissionHelper>& helper) = 0;

    // Here or, for a key whose flags ask for it, through the helper. Result: 0, or the code of the step that failed,
    // as the system or the helper gave it; a list that can't be written back at the end is logged alone.
    int32_t SetPermissions(const PermissionItem& item);
    // Here in any case.
    int32_t SetLocally(const PermissionItem& item);

private:
    using sid_buffer = std::array<std::byte, 260>;

    int32_t SetThroughHelper(const PermissionItem& item);
    DWORD ResolveSid(const PermissionItem& item, sid_buffer& sid);
    DWORD LookUp(const PermissionItem& item, sid_buffer& sid);
    void LogFormatted(const wchar_t* format, ...);
};

} // namespace vh
