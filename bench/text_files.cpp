// Text files: lines read from narrow and UTF-16 files, and lines written.
#include <cstring>
#include <fstream>
#include <memory>

#include "../scriptdata/unique.h"
#include "../tests/support/temp_folder.h"
#include "areas.h"
#include "counting.h"
#include "modules.h"

namespace bench {

namespace {

constexpr int32_t line_room = 512;
constexpr wchar_t line_end[] = L"\r\n";

struct files_api {
    explicit files_api(const module& side)
        : context(side), open(BENCH_GET(side, _OpenFile)), close(BENCH_GET(side, _CloseFile)),
          write_line(BENCH_GET(side, _WriteLine))
    {
    }

    bench::context context;
    decltype(&_OpenFile) open;
    decltype(&_CloseFile) close;
    decltype(&_WriteLine) write_line;
};

// All lines of the file; how many there were.
long ReadByGetLine(const std::wstring& path)
{
    const files_api api(Library());
    const auto get_line = BENCH_GET(Library(), _GetLine);
    const auto file = static_cast<FileHandle>(api.open(api.context, path.c_str(), FileReadText, 0));
    wchar_t line[line_room];
    long lines = 0;
    for (; get_line(api.context, file, line, line_room) == 0; ++lines)
        Keep(line[0]);
    api.close(api.context, file);
    return lines;
}

// The plain program: reads the file whole into a new buffer, walks to the line ends, and copies or widens each
// line into one buffer.
template <class Unit>
long ReadWhole(const std::wstring& path)
{
    const vh::unique_file file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                           FILE_ATTRIBUTE_NORMAL, nullptr));
    const DWORD bytes = GetFileSize(file.get(), nullptr);
    const std::unique_ptr<char[]> content(new char[bytes]);
    DWORD read = 0;
    ReadFile(file.get(), content.get(), bytes, &read, nullptr);
    const Unit* at = reinterpret_cast<const Unit*>(content.get());
    const Unit* const end = at + read / sizeof(Unit);
    wchar_t line[line_room];
    long lines = 0;
    while (at < end) {
        const Unit* stop = at;
        while (stop < end && *stop != '\r' && *stop != '\n')
            ++stop;
        const auto units = static_cast<int>(stop - at);
        if constexpr (sizeof(Unit) == 1)
            MultiByteToWideChar(CP_ACP, 0, at, units, line, line_room);
        else
            std::memcpy(line, at, static_cast<std::size_t>(units) * sizeof(wchar_t));
        line[units] = L'\0';
        Keep(line[0]);
        ++lines;
        at = stop;
        for (int i = 0; i < 2 && at < end && (*at == '\r' || *at == '\n'); ++i)
            ++at;
    }
    return lines;
}

long ReadByStream(const std::wstring& path)
{
    std::wifstream file{std::filesystem::path(path)};
    std::wstring line;
    long lines = 0;
    for (; std::getline(file, line); ++lines)
        Keep(line.data());
    return lines;
}

work Reading(long (*read)(const std::wstring&), const std::wstring& path, long lines)
{
    work made{[=](long) { Keep(read(path)); }};
    made.units = lines;
    return made;
}

template <class Unit>
std::string ContentOf(long lines)
{
    constexpr std::size_t line_bytes = 64 * sizeof(Unit);
    std::string content;
    content.reserve(static_cast<std::size_t>(lines) * line_bytes + 2);
    if constexpr (sizeof(Unit) == 2)
        content = "\xFF\xFE";
    for (long i = 0; i < lines; ++i) {
        const std::wstring line =
            std::wstring(62 - 8, static_cast<wchar_t>(L'a' + i % 26)) + std::to_wstring(10000000 + i) + line_end;
        for (const wchar_t unit : line) {
            content += static_cast<char>(unit);
            if constexpr (sizeof(Unit) == 2)
                content += '\0';
        }
    }
    return content;
}

// Lines to a file that is emptied before each round.
work Writing(std::shared_ptr<files_api> api, const std::wstring& path)
{
    const auto file = std::make_shared<FileHandle>();
    work made{[api, file](long count) {
        for (; count > 0; --count)
            api->write_line(api->context, *file, L"a line of sixty characters, which is what most lines of text are");
    }};
    made.before = [api, file, path] {
        *file = static_cast<FileHandle>(api->open(api->context, path.c_str(), FileAppendText, 1));
    };
    made.after = [api, file] { api->close(api->context, *file); };
    made.units = 2000;
    return made;
}

} // namespace

void TextRead(suite& s)
{
    const vh::test::TempFolder folder;
    const long lines = s.quick() ? 10000 : 100000;
    const std::wstring narrow = folder.Write(L"narrow.txt", ContentOf<char>(lines));
    const std::wstring wide = folder.Write(L"wide.txt", ContentOf<wchar_t>(lines));
    s.Count("lines that _GetLine gives, narrow", lines, ReadByGetLine(narrow));
    s.Count("lines that _GetLine gives, UTF-16", lines, ReadByGetLine(wide));

    s.Compare("_GetLine, narrow, to the plain program", 1.2, Reading(ReadByGetLine, narrow, lines),
              Reading(ReadWhole<char>, narrow, lines));
    s.Compare("_GetLine, narrow, to wifstream", 0.4, Reading(ReadByGetLine, narrow, lines),
              Reading(ReadByStream, narrow, lines));
    s.Compare("_GetLine, UTF-16, to the plain program", 1.15, Reading(ReadByGetLine, wide, lines),
              Reading(ReadWhole<wchar_t>, wide, lines));

    // One look for the mark at opening, one read of the content.
    const call_counter reads(Library().handle(), "ReadFile");
    ReadByGetLine(narrow);
    s.Count("reads of a text file, mark included", 2, reads.calls());
}

void TextWrite(suite& s)
{
    const vh::test::TempFolder folder;
    const auto library = std::make_shared<files_api>(Library());
    s.Compare("_WriteLine, to a seek and one write", 1.1, Writing(library, folder / L"library.txt"),
              Writing(std::make_shared<files_api>(Floor()), folder / L"floor.txt"));

    const std::wstring path = folder / L"counted.txt";
    const auto file = static_cast<FileHandle>(library->open(library->context, path.c_str(), FileAppendText, 1));
    const call_counter seeks(Library().handle(), "SetFilePointer");
    const call_counter writes(Library().handle(), "WriteFile");
    library->write_line(library->context, file, L"a line");
    s.Count("seeks of a line written", 1, seeks.calls());
    s.Count("writes of a line written", 1, writes.calls());
    library->close(library->context, file);
}

} // namespace bench
