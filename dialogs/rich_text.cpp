#include "rich_text.h"

#include <algorithm>

#include <windows.h>

#include <richedit.h>

#include "../scriptdata/unique.h"
#include "late_dialogs.h"

namespace vh {

namespace {

constexpr WPARAM rtf_format = 18;
constexpr WPARAM text_format = SF_TEXT;

// Takes the style of a read-only control off; Restore puts it back.
class Writable {
public:
    explicit Writable(HWND edit) : m_edit(edit), m_style(late::get_window_long(edit, GWL_STYLE))
    {
        if (m_style & ES_READONLY)
            late::set_window_long(m_edit, GWL_STYLE, m_style & ~LONG_PTR{ES_READONLY});
    }
    void Restore() const
    {
        if (m_style & ES_READONLY)
            late::set_window_long(m_edit, GWL_STYLE, late::get_window_long(m_edit, GWL_STYLE) | ES_READONLY);
    }

private:
    HWND m_edit;
    LONG_PTR m_style;
};

struct NarrowText {
    const char* next;
    std::size_t left;
};

DWORD CALLBACK ReadText(DWORD_PTR cookie, BYTE* buffer, LONG wanted, LONG* read)
{
    auto& text = *reinterpret_cast<NarrowText*>(cookie);
    const std::size_t count = std::min(text.left, static_cast<std::size_t>(std::max<LONG>(wanted, 0)));
    std::copy_n(text.next, count, reinterpret_cast<char*>(buffer));
    text.next += count;
    text.left -= count;
    *read = static_cast<LONG>(count);
    return 0;
}

DWORD CALLBACK ReadFromFile(DWORD_PTR cookie, BYTE* buffer, LONG wanted, LONG* read)
{
    DWORD count = 0;
    const BOOL good = ReadFile(reinterpret_cast<HANDLE>(cookie), buffer, static_cast<DWORD>(wanted), &count, nullptr);
    *read = static_cast<LONG>(count);
    return good ? 0 : static_cast<DWORD>(-1);
}

DWORD StreamIn(HWND edit, WPARAM format, DWORD_PTR cookie, EDITSTREAMCALLBACK callback)
{
    EDITSTREAM stream{};
    stream.dwCookie = cookie;
    stream.pfnCallback = callback;
    // Some values that are no window stand for all there are, those of other programs too.
    if (late::is_window(edit))
        late::send_message(edit, UINT{EM_STREAMIN}, format, reinterpret_cast<LPARAM>(&stream));
    return stream.dwError;
}

} // namespace

void StreamRichText(HWND edit, const stringx& text)
{
    const Writable writable(edit);
    const stringxi start(text.view().substr(0, 6));
    const char* narrow = text.AsNarrow();
    // As many bytes as the text has units: a code page with longer characters loses its end.
    NarrowText source{narrow, std::min(text.size(), std::strlen(narrow))};
    StreamIn(edit, start == L"{\\rtf1" ? rtf_format : text_format, reinterpret_cast<DWORD_PTR>(&source), &ReadText);
    writable.Restore();
}

int32_t StreamRichFile(HWND edit, const wchar_t* path)
{
    const Writable writable(edit);
    // A call that fails here leaves the control writable.
    if (!path)
        return -4;
    const unique_file file(
        CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!file)
        return static_cast<int32_t>(GetLastError());
    const stringxi name(path);
    const bool rtf = name.folded().ends_with(stringxi::view_type(L".rtf"));
    const DWORD error =
        StreamIn(edit, rtf ? rtf_format : text_format, reinterpret_cast<DWORD_PTR>(file.get()), &ReadFromFile);
    writable.Restore();
    return static_cast<int32_t>(error);
}

} // namespace vh
