// What stands on the screen: the texts of windows, and pictures of a part of it, kept for people to look at.
#pragma once

#include <cstring>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <vector>
#include <windows.h>

#include "../../pictures/gdi_objects.h"

namespace vh::ui {

inline std::wstring TextOf(HWND window)
{
    std::wstring text(static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)), L'\0');
    SendMessageW(window, WM_GETTEXT, text.size() + 1, reinterpret_cast<LPARAM>(text.data()));
    return text;
}

// What stands on the screen in a window's place, as a bitmap file.
inline std::vector<std::byte> PictureOf(HWND window)
{
    RECT place{};
    GetWindowRect(window, &place);
    BITMAPINFOHEADER picture{};
    picture.biSize = sizeof(picture);
    picture.biWidth = place.right - place.left;
    picture.biHeight = place.bottom - place.top;
    picture.biPlanes = 1;
    picture.biBitCount = 24;

    const unique_screen_context screen(GetDC(nullptr));
    void* bits = nullptr;
    const unique_bitmap bitmap(
        CreateDIBSection(screen.get(), reinterpret_cast<BITMAPINFO*>(&picture), DIB_RGB_COLORS, &bits, nullptr, 0));
    const bitmap_context memory(screen.get(), bitmap.get());
    BitBlt(memory.get(), 0, 0, picture.biWidth, picture.biHeight, screen.get(), place.left, place.top, SRCCOPY);
    GdiFlush();

    const auto size = bits ? static_cast<DWORD>((picture.biWidth * 3 + 3) / 4 * 4 * picture.biHeight) : 0;
    BITMAPFILEHEADER header{};
    header.bfType = 0x4D42;
    header.bfOffBits = sizeof(header) + sizeof(picture);
    header.bfSize = header.bfOffBits + size;
    std::vector<std::byte> file(header.bfSize);
    std::memcpy(file.data(), &header, sizeof(header));
    std::memcpy(file.data() + sizeof(header), &picture, sizeof(picture));
    std::memcpy(file.data() + header.bfOffBits, bits, size);
    return file;
}

// Into the folder that VHRT_PICTURES names; without it nothing is kept.
inline void Keep(std::span<const std::byte> picture, const std::wstring& name)
{
    wchar_t folder[MAX_PATH] = L"";
    if (!GetEnvironmentVariableW(L"VHRT_PICTURES", folder, MAX_PATH))
        return;
    // A path of the build machine is on the drive that shows its file system.
    const std::filesystem::path to((folder[0] == L'/' ? L"Z:" : L"") + std::wstring(folder));
    std::filesystem::create_directories(to);
    std::ofstream file(to / (name + L".bmp"), std::ios::binary);
    file.write(reinterpret_cast<const char*>(picture.data()), static_cast<std::streamsize>(picture.size()));
}

} // namespace vh::ui
