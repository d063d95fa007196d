// Placeable metafiles (.wmf).
#pragma once

#include <vector>

#include "byte_view.h"

namespace vh {

struct metafile_picture {
    // In the metafile's own units.
    int32_t left = 0;
    int32_t top = 0;
    int32_t right = 0;
    int32_t bottom = 0;
    // The metafile that the system takes: a header that tells the true size, whole records, an end.
    std::vector<std::byte> bits;
};

// 0 or picture_data_error. A told size that runs past the file is cut to it, and so is a record.
uint32_t ReadMetafile(std::span<const std::byte> file, metafile_picture& picture);

} // namespace vh
