// The exports of script files: each finds the file and makes one call.
#include "vhrt/files.h"

#include "../runtime/context.h"
#include "../runtime/frame.h"

namespace {

// No exception leaves these exports, not even that of exhausted memory.
template <class Operation>
int64_t OnFiles(ObjectContext* context, Operation&& operation)
{
    return vh::Framed(context, [&](ObjectContext& c) -> int64_t {
        try {
            return operation(c.files);
        } catch (...) {
            return -1;
        }
    });
}

template <class Operation>
int64_t OnFile(ObjectContext* context, FileHandle file, Operation&& operation)
{
    return OnFiles(context, [&](FileTable& files) { return operation(files.Find(file)); });
}

} // namespace

int64_t _OpenFile(ObjectContext* context, const wchar_t* path, int32_t mode, int32_t create)
{
    return OnFiles(context, [&](FileTable& files) { return files.Open(path, mode, create != 0); });
}

int64_t _CloseFile(ObjectContext* context, FileHandle file)
{
    return OnFiles(context, [&](FileTable& files) { return files.Close(file); });
}

int64_t _GetLine(ObjectContext* context, FileHandle file, wchar_t* buffer, int32_t size)
{
    return OnFile(context, file, [&](CVHFile& f) { return f.GetLine(buffer, &size); });
}

int64_t _GetLineSize(ObjectContext* context, FileHandle file, int32_t* size)
{
    return OnFile(context, file, [&](CVHFile& f) { return f.GetLine(nullptr, size); });
}

int64_t _WriteLine(ObjectContext* context, FileHandle file, const wchar_t* text)
{
    return OnFile(context, file, [&](CVHFile& f) { return f.WriteLine(text ? text : L""); });
}

int64_t _ReadBytes(ObjectContext* context, FileHandle file, void* buffer, uint32_t size, uint32_t offset,
                   uint32_t count)
{
    return OnFile(context, file,
                  [&](CVHFile& f) { return f.ReadBytes(static_cast<uint8_t*>(buffer), size, offset, count); });
}

int64_t _SeekBytes(ObjectContext* context, FileHandle file, int32_t distance, int32_t origin)
{
    return OnFile(context, file, [&](CVHFile& f) { return f.SeekBytes(distance, origin); });
}

int64_t _WriteBytes(ObjectContext* context, FileHandle file, const void* buffer, uint32_t size, uint32_t offset,
                    uint32_t count)
{
    return OnFile(context, file,
                  [&](CVHFile& f) { return f.WriteBytes(static_cast<const uint8_t*>(buffer), size, offset, count); });
}
