// The data folder of the machine, which the system and its administrators alone may change: a run with their rights
// believes what lies there.
#pragma once

#include <string>

#include <windows.h>

#include <aclapi.h>

#include "../scriptdata/late_libraries.h"
#include "../scriptdata/unique.h"
#include "messages.h"

namespace vh::engine {

namespace late {

inline constinit late_function<decltype(GetSecurityInfo)> get_security_info(vh::late::advapi32, "GetSecurityInfo");

} // namespace late

// Something that others than administrators could have changed.
class untrusted_error : public engine_error {
public:
    untrusted_error(const std::wstring& path, const std::wstring& reason);
};

// Who else than the system and its administrators may change what has this descriptor, or let others change it, in
// words behind "because". Empty when nobody may.
std::wstring WhyUntrusted(PSECURITY_DESCRIPTOR descriptor);

// Throws untrusted_error when others could have made the thing that is open, or may change it, or when it leads
// elsewhere.
void RequireTrusted(const std::wstring& path, HANDLE thing);
// The same for a folder, which is held so that nobody moves or removes it.
unique_file HoldTrusted(const std::wstring& folder);

// For a process with the rights of an administrator, in a folder where others may write: a new folder, or a file to be
// written, that administrators alone may change and the user of this process may read. Without those rights it is one
// like others.
void MakePrivateFolder(const std::wstring& path);
unique_file MakePrivateFile(const std::wstring& path);

// Makes the folder of an install log. Of those that are in the data folder `machine` of the machine that folder is made
// so that administrators alone may change it. Throws untrusted_error as below.
void MakeLogFolder(const std::wstring& logFile, const std::wstring& machine);

// A log in the data folder of the machine is believed, and what lies beside it and above it, when administrators alone
// could have changed it: the data folder, the list of files in use, the kept host, the product's folder. Others are
// their owners' choice. Throws untrusted_error, which names the first that is not so.
void RequireTrusted(const std::wstring& logFile, const std::wstring& machine);

} // namespace vh::engine
