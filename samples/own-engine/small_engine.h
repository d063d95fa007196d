// A setup engine that fits on a few pages: text variables, and files and folders that a failed run takes back.
#pragma once

#include <map>
#include <string>
#include <vector>

#include <Src/inc/engine_host.h>
#include <Src/inc/engine_services.h>
#include <scriptdata/com_object.h>

namespace small {

// What all objects of one run share.
struct Session {
    std::map<std::wstring, std::wstring> variables;
    // Files and folders that the run has made, oldest first.
    std::vector<std::wstring> made;

    // The text with each <NAME> replaced.
    std::wstring Substituted(std::wstring text) const;
    // Takes away what was made, newest first; gives how much that was.
    std::size_t TakeBack();
};

// Both interfaces for __CreateObjectContext. The session has to outlive the context.
vh::com_ptr<ISetupHost> MakeHost();
vh::com_ptr<IServiceProvider> MakeServices(Session& session);

} // namespace small
