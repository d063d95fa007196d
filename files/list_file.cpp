// The file operations of string lists, which stand on script files.
#include "../Src/inc/script_values.h"
#include "../scriptdata/list.h"
#include "script_file.h"

namespace {

constexpr int32_t mode_read = 2;
constexpr int32_t mode_read_write = 3;

bool ReadsAsWide(const wchar_t* path)
{
    CVHTextFile probe;
    const bool wide = probe.Open(path, mode_read, false) == 0 && probe.wide();
    probe.Close();
    return wide;
}

} // namespace

int32_t CStringxList::ReadFromFile(const wchar_t* path)
{
    CVHTextFile file;
    if (const int32_t failed = file.Open(path, mode_read, false))
        return failed;
    int32_t result = 0;
    for (stringx line; result == 0 && file.ReadLine(line) == 0;)
        result = AddString(line.c_str(), ListAddAfter);
    file.Close();
    return result;
}

int32_t CStringxList::WriteToFile(const wchar_t* path, int32_t flags)
{
    path = path ? path : L"";
    const bool exists = GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES;
    const bool wide = (flags & ListWriteUnicode) != 0 || ((flags & ListWriteAnsi) == 0 && exists && ReadsAsWide(path));

    CVHTextFile file;
    if (wide)
        file.set_mark_on_create();
    // Appending keeps the encoding that the file has.
    const bool append = exists && (flags & ListWriteAppend) != 0;
    if (const int32_t failed = file.Open(path, append ? mode_read_write : mode_read, !append))
        return failed;
    int32_t result = 0;
    for (auto element = begin(); result == 0 && element != end(); ++element)
        result = file.WriteLine(*element);
    file.Close();
    return result;
}
