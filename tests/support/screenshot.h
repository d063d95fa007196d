// A picture of a part of the screen, kept for people to look at.
#pragma once

#include "test.h"

namespace vh::test {

// Into the folder that VHRT_PICTURES names; without it nothing is kept.
inline void KeepPicture(HWND window, const std::wstring& name)
{
    wchar_t folder[MAX_PATH] = L"";
    if (!GetEnvironmentVariableW(L"VHRT_PICTURES", folder, MAX_PATH))
        return;
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    RECT place{};
    GetWindowRect(window, &place);
    BITMAPINFOHEADER picture{};
    picture.biSize = sizeof(picture);
    picture.biWidth = place.right - place.left;
    picture.biHeight = place.bottom - place.top;
    picture.biPlanes = 1;
    picture.biBitCount = 24;

    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    void* bits = nullptr;
    const HBITMAP bitmap =
        CreateDIBSection(memory, reinterpret_cast<BITMAPINFO*>(&picture), DIB_RGB_COLORS, &bits, nullptr, 0);
    const HGDIOBJ before = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, picture.biWidth, picture.biHeight, screen, place.left, place.top, SRCCOPY);
    GdiFlush();

    const auto size = static_cast<DWORD>((picture.biWidth * 3 + 3) / 4 * 4 * picture.biHeight);
    BITMAPFILEHEADER header{};
    header.bfType = 0x4D42;
    header.bfOffBits = sizeof(header) + sizeof(picture);
    header.bfSize = header.bfOffBits + size;
    // A path of the build machine is on the drive that shows its file system.
    const std::filesystem::path to((folder[0] == L'/' ? L"Z:" : L"") + std::wstring(folder));
    std::filesystem::create_directories(to);
    std::ofstream file(to / (name + L".bmp"), std::ios::binary);
    file.write(reinterpret_cast<const char*>(&header), sizeof(header));
    file.write(reinterpret_cast<const char*>(&picture), sizeof(picture));
    file.write(static_cast<const char*>(bits), static_cast<std::streamsize>(size));

    SelectObject(memory, before);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
}

} // namespace vh::test
