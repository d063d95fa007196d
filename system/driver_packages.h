// What a context keeps for driver packages: where their library lies and whom to ask for a helper.
#pragma once

#include <servprov.h>

#include "../Src/inc/engine_host.h"
#include "../scriptdata/com_ptr.h"
#include "../scriptdata/path_text.h"
#include "../scriptdata/stringx.h"

namespace vh {

struct DriverPackages {
    explicit DriverPackages(ObjectContext& owner) : context(&owner) {}

    void Initialise(std::wstring_view directory, const com_ptr<IServiceProvider>& from)
    {
        services = from;
        library = directory;
        PathAppend(library, std::wstring_view(L"difxapi.dll"));
    }

    ObjectContext* context;
    com_ptr<IServiceProvider> services;
    // Path of "difxapi.dll".
    stringx library;
};

} // namespace vh
