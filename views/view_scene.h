// What views need of their context, which owns all of it and outlives them.
#pragma once

#include "../dialogs/resource_modules.h"
#include "../media/media_table.h"
#include "../scriptdata/stringx.h"

struct ObjectContext;

namespace vh {

struct ViewScene {
    MediaTable& media;
    const ResourceModules& modules;
    const stringx& supportDir;
    // Passed through to the media.
    ObjectContext* context;
};

} // namespace vh
