// Exported functions of window services: the main window's title, colours and bitmaps, the wait message, fonts.
#include "vhrt/windows.h"

#include <cstring>

#include "../dialogs/fonts.h"
#include "../dialogs/late_dialogs.h"
#include "../dialogs/placed_bitmaps.h"
#include "../dialogs/status_window.h"
#include "../dialogs/title_text.h"
#include "../dialogs/wait_message.h"
#include "../files/font_names.h"
#include "../runtime/context.h"
#include "../runtime/interface_result.h"
#include "../runtime/own_windows.h"
#include "../scriptdata/results.h"

namespace {

constexpr int32_t title_selector = 1;
constexpr int32_t text_color_selector = 4;
constexpr int32_t background_selector = 12;
constexpr int32_t bar_selector = 36;
// All of these bits of a colour ask for a background that fades to black.
constexpr auto gradient_bits = static_cast<int32_t>(0xC2000000);
constexpr uint32_t last_effect = 7;
constexpr int32_t name_too_long = -5;

// The file's narrow content as text, each block turned by itself: a letter of two bytes that two blocks share is lost.
stringx TextOfFile(const wchar_t* path)
{
    constexpr DWORD block = 1024;
    stringx text;
    vh::file source;
    if (source.open(path ? path : L"", GENERIC_READ, FILE_SHARE_READ, FILE_ATTRIBUTE_NORMAL, OPEN_EXISTING) != 0)
        return text;
    char bytes[block];
    try {
        while (const DWORD count = source.read_bytes(bytes, block))
            text += stringx(bytes, static_cast<int>(count));
    } catch (const vh::file_exception&) {
        // What came so far is the content.
    }
    return text;
}

int32_t FontNameOf(const wchar_t* path, int32_t name, int32_t language, int32_t most, std::wstring& text,
                   int32_t& length)
{
    vh::file font;
    if (font.open(path ? path : L"", GENERIC_READ, FILE_SHARE_READ, FILE_ATTRIBUTE_NORMAL, OPEN_EXISTING) != 0)
        return -1;
    const auto read = [&font](uint64_t offset, std::span<std::byte> bytes) {
        auto high = static_cast<LONG>(offset >> 32);
        font.seek(static_cast<LONG>(offset & 0xFFFFFFFF), FILE_BEGIN, &high);
        return font.read_bytes(bytes.data(), static_cast<DWORD>(bytes.size())) == bytes.size();
    };
    try {
        switch (vh::ReadFontName(read, name, language, most, text, length)) {
        case vh::font_name_status::found:
            return 0;
        case vh::font_name_status::too_long:
            return name_too_long;
        case vh::font_name_status::not_found:
            return -1;
        }
    } catch (const vh::file_exception&) {
        // As for a name that is not there.
    }
    return -1;
}

} // namespace

int32_t _SdShowMsg(ObjectContext* context, const wchar_t* text, int32_t show)
{
    return vh::Framed(context, [&](ObjectContext& c) {
        return vh::WaitMessage(c.dialogs).Show(text, show != 0, c.silent && !c.silentMsg);
    });
}

int32_t _SetSilentSdShowMsg(ObjectContext* context, int32_t on)
{
    return vh::Framed(context, [&](ObjectContext& c) {
        c.silentMsg = on != 0;
        return 0;
    });
}

int32_t _SetTitle(ObjectContext* context, const wchar_t* text, int32_t size, int32_t style)
{
    return vh::WithOwnWindows(
        context, [&](ObjectContext& c) { return vh::TitleText(c.dialogs, c.windowFacts).Set(text, size, style); });
}

int32_t _SetFont(ObjectContext* context, int32_t selector, int32_t style, const wchar_t* face)
{
    return vh::Framed(context, [&](ObjectContext& c) {
        return selector == title_selector ? vh::TitleText(c.dialogs, c.windowFacts).SetFont(style, face) : -1;
    });
}

int64_t _GetFont(ObjectContext* context, const wchar_t* face, int32_t size, int32_t style)
{
    return vh::Framed(context, [&](ObjectContext& c) -> int64_t {
        const HFONT font = vh::MakeStyledFont(face ? face : L"", size, style);
        if (!font)
            return -1;
        c.gdiObjects.Add(font);
        return reinterpret_cast<int64_t>(font);
    });
}

int32_t _SetColor(ObjectContext* context, int32_t selector, int32_t color)
{
    return vh::Framed(context, [&](ObjectContext& c) -> int32_t {
        if (selector == text_color_selector)
            return 0;
        if (selector != background_selector || !c.window)
            return -1;
        const bool gradient = (color & gradient_bits) == gradient_bits;
        return vh::FailureOnly(c.window->SetColor(color, gradient ? VARIANT_TRUE : VARIANT_FALSE));
    });
}

int32_t _SetDisplayEffect(ObjectContext* context, int32_t effect)
{
    return vh::Framed(context, [&](ObjectContext& c) -> int32_t {
        if (static_cast<uint32_t>(effect) > last_effect)
            return -1;
        c.windowFacts.effect = effect;
        const auto window = c.window.query<ISetupWindowEffect>();
        return window ? vh::FailureOnly(window->SetEffect(effect)) : 0;
    });
}

int32_t _PlaceBitmap(ObjectContext* context, const wchar_t* text, int32_t id, int32_t x, int32_t y, int32_t flags)
{
    return vh::Framed(context, [&](ObjectContext& c) {
        return vh::PlacedBitmaps(c.window.get(), c.windowFacts).Place(vh::View(text), id, x, y, flags);
    });
}

int32_t _SizeWindow(ObjectContext* context, int32_t selector, int32_t width, int32_t height)
{
    return vh::Framed(context, [&](ObjectContext& c) {
        if (selector != bar_selector)
            return -1;
        c.windowFacts.width = width;
        c.windowFacts.height = height;
        vh::StatusWindow(c.dialogs).SetBarSize(width, height);
        return 0;
    });
}

int32_t __GetMainWindow(ObjectContext* context, VARIANT* window)
{
    return vh::Framed(context, [&](ObjectContext& c) {
        IUnknown* found = c.windowEx2.get();
        if (!found)
            found = c.windowEx1.get();
        if (!found)
            found = c.window.get();
        return vh::InterfaceResult(found, window, E_POINTER);
    });
}

int32_t _SendRequest(const wchar_t* path, VARIANT* text)
{
    const stringx content = TextOfFile(path);
    if (text)
        vh::variant(content.view()).detach(text);
    return 0;
}

int32_t _DisableBranding(ObjectContext* context, const wchar_t*)
{
    constexpr long branding_option = 7;
    return vh::WithOwnWindows(context, [](ObjectContext& c) {
        c.dialogs.branding = false;
        return vh::FailureOnly(vh::StatusWindow(c.dialogs).SetOption(branding_option, 0));
    });
}

int32_t _IsFontTypefaceNameAvailable(const wchar_t* face) { return vh::IsEmpty(face) ? -1 : vh::IsFaceThere(face); }

int32_t _GetTrueTypeFontFileInfo(const wchar_t* path, int32_t name, int32_t language, wchar_t* buffer, int32_t* size)
{
    if (!size)
        return -1;
    std::wstring text;
    int32_t length = 0;
    const int32_t result = FontNameOf(path, name, language, *size, text, length);
    if (result == name_too_long)
        *size = length;
    if (result != 0)
        return result;
    if (!buffer)
        return -1;
    // An empty name in a buffer of no size takes no terminator.
    if (*size > 0)
        vh::CopyOutUnlimited(text, buffer);
    *size = static_cast<int32_t>(text.size());
    return 0;
}

int32_t GetFontSub(ObjectContext* context, wchar_t* buffer)
{
    constexpr DWORD most = 1024;
    return vh::Framed(context, [&](ObjectContext& c) {
        const auto* type = MAKEINTRESOURCEW(124);
        const auto* name = MAKEINTRESOURCEW(123);
        const HMODULE module = c.modules.Find(type, name);
        const HRSRC found = module ? FindResourceW(module, name, type) : nullptr;
        const DWORD bytes = found ? SizeofResource(module, found) : 0;
        const HGLOBAL loaded = found ? LoadResource(module, found) : nullptr;
        if (!loaded || !buffer || bytes >= most)
            return 0;
        const std::size_t units = bytes / sizeof(wchar_t);
        std::memcpy(buffer, LockResource(loaded), units * sizeof(wchar_t));
        buffer[units] = L'\0';
        return 1;
    });
}

int32_t EnableHourGlass(ObjectContext* context, int32_t on)
{
    return vh::Framed(context, [&](ObjectContext& c) -> int32_t {
        return c.window ? c.window->SetWaitCursor(on ? VARIANT_TRUE : VARIANT_FALSE) : E_FAIL;
    });
}

int32_t MessageBeepP(uint32_t sound) { return vh::late::message_beep(sound); }
