#include "picture.h"

#include <algorithm>

namespace vh::engine {

namespace {

// The number behind the last ";", which goes off the text; 0 when there is none.
int TakeNumber(std::wstring& text)
{
    const std::size_t at = text.rfind(L';');
    if (at == std::wstring::npos || at + 1 == text.size() || text.size() - at > 6 ||
        !std::all_of(text.begin() + static_cast<std::ptrdiff_t>(at) + 1, text.end(),
                     [](wchar_t unit) { return unit >= L'0' && unit <= L'9'; }))
        return 0;
    const int number = std::stoi(text.substr(at + 1));
    text.resize(at);
    return number;
}

} // namespace

unique_bitmap PictureOf(HMODULE library, int number)
{
    return unique_bitmap(
        static_cast<HBITMAP>(LoadImageW(library, MAKEINTRESOURCEW(number), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION)));
}

unique_bitmap LoadPicture(const Core& core, std::wstring_view text)
{
    std::wstring name(text);
    const int number = TakeNumber(name);
    const std::wstring path = core.FindFile(name);
    unique_bitmap loaded;
    if (number == 0) {
        loaded.reset(static_cast<HBITMAP>(
            LoadImageW(nullptr, path.c_str(), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE | LR_CREATEDIBSECTION)));
    } else {
        const unique_module library(
            LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE));
        if (!library)
            ThrowFileError(path, L"can't load the library", GetLastError());
        loaded = PictureOf(library.get(), number);
    }
    if (!loaded)
        throw engine_error(HRESULT_FROM_WIN32(FactsOf(path).file() ? ERROR_INVALID_DATA : ERROR_FILE_NOT_FOUND), path,
                           L"is no picture that can be shown");
    return loaded;
}

unique_bitmap Scaled(HBITMAP picture, SIZE size)
{
    const WindowContext screen(nullptr);
    unique_bitmap made(CreateCompatibleBitmap(screen.get(), std::max(size.cx, 1L), std::max(size.cy, 1L)));
    const unique_memory_context memory(CreateCompatibleDC(screen.get()));
    const Selected selected(memory.get(), made.get());
    DrawPicture(memory.get(), {0, 0, size.cx, size.cy}, picture);
    return made;
}

unique_bitmap Repeated(HBITMAP picture, long least)
{
    const SIZE one = SizeOf(picture);
    if (one.cx <= 0 || one.cy <= 0)
        return {};
    const auto whole = [least](long side) { return (least + side - 1) / side * side; };
    const SIZE size{std::max(whole(one.cx), one.cx), std::max(whole(one.cy), one.cy)};
    const WindowContext screen(nullptr);
    unique_bitmap made(CreateCompatibleBitmap(screen.get(), size.cx, size.cy));
    const unique_memory_context memory(CreateCompatibleDC(screen.get()));
    const Selected selected(memory.get(), made.get());
    DrawPicture(memory.get(), {0, 0, one.cx, one.cy}, picture);
    // What is there already, beside itself and below itself.
    for (long done = one.cx; done < size.cx; done *= 2)
        BitBlt(memory.get(), done, 0, done, one.cy, memory.get(), 0, 0, SRCCOPY);
    for (long done = one.cy; done < size.cy; done *= 2)
        BitBlt(memory.get(), 0, done, size.cx, done, memory.get(), 0, 0, SRCCOPY);
    return made;
}

void DrawPicture(HDC to, const RECT& place, HBITMAP picture, long transparent)
{
    const SIZE from = SizeOf(picture);
    const SIZE size = SizeOf(place);
    const unique_memory_context memory(CreateCompatibleDC(to));
    const Selected selected(memory.get(), picture);
    if (transparent != -1) {
        GdiTransparentBlt(to, place.left, place.top, size.cx, size.cy, memory.get(), 0, 0, from.cx, from.cy,
                          static_cast<UINT>(transparent));
    } else if (from.cx == size.cx && from.cy == size.cy) {
        BitBlt(to, place.left, place.top, size.cx, size.cy, memory.get(), 0, 0, SRCCOPY);
    } else {
        SetStretchBltMode(to, HALFTONE);
        SetBrushOrgEx(to, 0, 0, nullptr);
        StretchBlt(to, place.left, place.top, size.cx, size.cy, memory.get(), 0, 0, from.cx, from.cy, SRCCOPY);
    }
}

} // namespace vh::engine
