#include "picture_file.h"

#include <climits>

#include "../diagnostics/file.h"

namespace vh {

bool ReadPictureFile(const wchar_t* path, std::vector<std::byte>& bytes)
{
    try {
        file source;
        DWORD high = 0;
        if (source.open(path, GENERIC_READ, FILE_SHARE_READ, FILE_ATTRIBUTE_NORMAL, OPEN_EXISTING))
            return false;
        const DWORD size = source.size(&high);
        if (high || size > static_cast<DWORD>(INT_MAX))
            return false;
        bytes.resize(size);
        DWORD done = 0;
        while (done < size) {
            const DWORD read = source.read_bytes(bytes.data() + done, size - done);
            if (read == 0)
                return false;
            done += read;
        }
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace vh
