// Painting of the component view and of skinned dialogs, against the bare calls that draw the same.
#include <filesystem>
#include <fstream>
#include <string>

#include "../dialogs/dialog_skin.h"
#include "../exports/vhrt.h"
#include "areas.h"
#include "modules.h"

namespace bench {

namespace {

constexpr int rows = 50;
constexpr int row_height = 17;
constexpr int width = 400;
constexpr int placeholder = 10;

HWND MakeDialog()
{
    const HWND dialog = CreateWindowExW(0, L"#32770", L"", WS_POPUP | WS_VISIBLE, 0, 0, 800, rows * row_height + 20,
                                        nullptr, nullptr, nullptr, nullptr);
    CreateWindowExW(0, L"Static", L"", WS_CHILD, 0, 0, width, rows * row_height + 4, dialog,
                    reinterpret_cast<HMENU>(intptr_t{placeholder}), nullptr, nullptr);
    return dialog;
}

void Repaint(HWND window) { RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW); }

work Repainting(HWND target)
{
    return {[target](long count) {
        for (; count > 0; --count)
            Repaint(target);
    }};
}

// A window that paints itself by a function of the bench.
using painter = void (*)(HWND);
painter g_paint = nullptr;

LRESULT CALLBACK BareProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    if (message == WM_ERASEBKGND)
        return 1;
    if (message != WM_PAINT || !g_paint)
        return DefWindowProcW(window, message, wparam, lparam);
    g_paint(window);
    return 0;
}

HWND MakeBare(int height)
{
    WNDCLASSW made{};
    made.lpfnWndProc = &BareProcedure;
    made.lpszClassName = L"vhrt bench view";
    RegisterClassW(&made);
    return CreateWindowExW(0, made.lpszClassName, L"", WS_POPUP | WS_VISIBLE, 0, 0, width, height, nullptr, nullptr,
                           nullptr, nullptr);
}

HDC g_check = nullptr;

// Ground, check picture, name, size and unit of each row.
void PaintRows(HWND window)
{
    PAINTSTRUCT paint{};
    const HDC context = BeginPaint(window, &paint);
    SetBkMode(context, TRANSPARENT);
    for (int row = 0; row < rows; ++row) {
        const RECT place{2, 2 + row * row_height, width - 3, 2 + (row + 1) * row_height};
        FillRect(context, &place, GetSysColorBrush(COLOR_WINDOW));
        BitBlt(context, 5, static_cast<int>(place.top) + 2, 13, 13, g_check, 0, 0, SRCCOPY);
        SetTextColor(context, GetSysColor(COLOR_WINDOWTEXT));
        const int top = static_cast<int>(place.top);
        const std::wstring name = L"Component number " + std::to_wstring(row);
        ExtTextOutW(context, 20, top, ETO_CLIPPED, &place, name.c_str(), static_cast<UINT>(name.size()), nullptr);
        ExtTextOutW(context, width - 40, top, ETO_CLIPPED, &place, L"1024", 4, nullptr);
        ExtTextOutW(context, width - 14, top, ETO_CLIPPED, &place, L"K", 1, nullptr);
    }
    EndPaint(window, &paint);
}

void ComponentRows(suite& s)
{
    ObjectContext* context = BENCH_GET(Library(), __CreateObjectContext)(nullptr, nullptr);
    const auto add = BENCH_GET(Library(), _ComponentAddItem);
    for (int row = 0; row < rows; ++row)
        add(context, L"M", (L"Component number " + std::to_wstring(row)).c_str(), 1048576, 1);
    const HWND dialog = MakeDialog();
    ComponentView* view = BENCH_GET(Library(), _ComponentViewCreate)(context, dialog, placeholder);
    const auto set = BENCH_GET(Library(), ComponentViewSetInfo);
    const auto refresh = BENCH_GET(Library(), ComponentViewRefresh);
    set(view, 26, 0, L"M");
    BENCH_GET(Library(), ComponentViewCreateWindow)(view);
    const HWND window = GetDlgItem(dialog, placeholder);
    const HWND bare = MakeBare(rows * row_height + 4);
    g_check = CreateCompatibleDC(nullptr);
    const HDC screen = GetDC(bare);
    const vh::unique_bitmap picture(CreateCompatibleBitmap(screen, 13, 13));
    ReleaseDC(bare, screen);
    const HGDIOBJ before = SelectObject(g_check, picture.get());
    g_paint = &PaintRows;
    s.Compare("full paint of 50 rows, to the bare calls", 1.2, Repainting(window), Repainting(bare));

    const std::wstring long_name(260, L'W');
    BENCH_GET(Library(), _ComponentSetData)(context, L"M", L"Component number 0", 15, 0, long_name.c_str());
    refresh(view);
    const auto first_row = [](HWND target) {
        return work{[target](long count) {
            constexpr RECT place{2, 2, width - 3, 2 + row_height};
            for (; count > 0; --count)
                RedrawWindow(target, &place, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        }};
    };
    const auto second_row = work{[window](long count) {
        constexpr RECT place{2, 2 + row_height, width - 3, 2 + 2 * row_height};
        for (; count > 0; --count)
            RedrawWindow(window, &place, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    }};
    s.Extra("a name of 260 units, above a short one", 20000, first_row(window), second_row);
    BENCH_GET(Library(), ComponentViewDestroy)(view);
    DestroyWindow(dialog);
    DestroyWindow(bare);
    SelectObject(g_check, before);
    DeleteDC(g_check);
    BENCH_GET(Library(), __ReleaseObjectContext)(context);
}

HDC g_surface = nullptr;

void CopySurface(HWND window)
{
    PAINTSTRUCT paint{};
    const HDC context = BeginPaint(window, &paint);
    BitBlt(context, 0, 0, static_cast<int>(paint.rcPaint.right), static_cast<int>(paint.rcPaint.bottom), g_surface, 0,
           0, SRCCOPY);
    EndPaint(window, &paint);
}

WNDPROC g_before = nullptr;

// One copy, and the message passed on as a skin has to.
LRESULT CALLBACK PassingProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    if (message == WM_ERASEBKGND)
        return 1;
    if (message == WM_PAINT)
        CopySurface(window);
    return CallWindowProcW(g_before, window, message, wparam, lparam);
}

// A skin of one rectangle, read from a file as a setup reads it.
bool StartSkin(vh::DialogSkin& skin)
{
    constexpr std::string_view text = "[ALL]\r\nRECTS=1\r\nRECT1=10,20,30\r\nRECT1AREA=1000,1000\r\n";
    std::vector<std::byte> bytes;
    vh::AddSkinEntry(bytes, vh::skin_text_name, std::as_bytes(std::span(text)));
    vh::ScrambleSkin(bytes);
    const std::filesystem::path folder = std::filesystem::temp_directory_path();
    const std::filesystem::path file = folder / L"vhrt bench skin";
    std::ofstream(file, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    const bool started = skin.Start(file.c_str(), 0, folder.c_str());
    std::filesystem::remove(file);
    return started;
}

void SkinnedDialog(suite& s)
{
    // Both windows fit on the screen, side by side.
    constexpr int height = 300;
    constexpr int page = 600;
    vh::DialogSkin skin;
    const HWND dialog = CreateWindowExW(0, L"#32770", L"", WS_POPUP | WS_VISIBLE, 0, 0, page, height, nullptr, nullptr,
                                        nullptr, nullptr);
    if (!StartSkin(skin) || !skin.Apply(skin.Record(dialog, L"Page", L"")))
        return s.Leave("a skinned dialog's paint", "the skin could not be applied");
    const HDC screen = GetDC(dialog);
    g_surface = CreateCompatibleDC(screen);
    const vh::unique_bitmap bitmap(CreateCompatibleBitmap(screen, page, height));
    const HGDIOBJ before = SelectObject(g_surface, bitmap.get());
    const HWND passing = CreateWindowExW(0, L"#32770", L"", WS_POPUP | WS_VISIBLE, 0, height, page, height, nullptr,
                                         nullptr, nullptr, nullptr);
    g_before = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(passing, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&PassingProcedure)));
    s.Compare("a skinned dialog's paint, to one copy and the dialog's own answer", 1.1, Repainting(dialog),
              Repainting(passing));
    DestroyWindow(passing);
    SelectObject(g_surface, before);
    DeleteDC(g_surface);
    ReleaseDC(dialog, screen);
    DestroyWindow(dialog);
}

} // namespace

void Views(suite& s)
{
    ComponentRows(s);
    SkinnedDialog(s);
}

} // namespace bench
