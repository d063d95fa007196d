// Exported functions of the main image: the text that says which picture dialogs show, and the palette.
#include "vhrt/main_image.h"

#include "../dialogs/status_window.h"
#include "../files/exists.h"
#include "../pictures/palette.h"
#include "../runtime/context.h"
#include "../runtime/frame.h"
#include "../runtime/own_windows.h"
#include "../scriptdata/results.h"

namespace {

constexpr auto no_such_file = static_cast<int32_t>(0x80070004);
// Stands for no picture.
constexpr std::wstring_view no_picture = L"@!";
constexpr int32_t least_scale = 25;

// To every dialog, and to the status window, whose failure is the result.
int32_t ShowEverywhere(CDialogManager& dialogs, const stringx& text)
{
    dialogs.SetMainImage(text);
    return vh::FailureOnly(vh::StatusWindow(dialogs).SetMainImage(text));
}

int32_t ShowNew(CDialogManager& dialogs, const stringx& text)
{
    dialogs.previous_image = dialogs.main_image();
    return ShowEverywhere(dialogs, text);
}

bool IsFile(std::wstring_view path) { return vh::exists(stringx(path).c_str(), vh::exists_file); }

int32_t SetByText(CDialogManager& dialogs, int32_t kind, std::wstring_view text)
{
    switch (kind) {
    case ImageFile:
        if (!IsFile(text.substr(0, text.find(L';'))))
            return no_such_file;
        return ShowNew(dialogs, stringx(text));
    case ImageText:
        return ShowNew(dialogs, stringx(text));
    case ImagePrevious:
        return ShowEverywhere(dialogs, stringx(dialogs.previous_image));
    case ImageNone:
        // The text before stays: it comes back by ImagePrevious.
        return ShowEverywhere(dialogs, stringx(no_picture));
    default:
        return 0;
    }
}

int32_t SetByScale(CDialogManager& dialogs, int32_t scale, std::wstring_view path)
{
    if (scale == -1)
        return ShowEverywhere(dialogs, stringx(dialogs.previous_image));
    if (scale == 0) {
        if (dialogs.previous_image.empty())
            dialogs.previous_image = dialogs.main_image();
        return ShowEverywhere(dialogs, stringx(no_picture));
    }
    if (scale < least_scale)
        return -2;
    if (!IsFile(path))
        return no_such_file;
    stringx text(L"@@");
    text += path;
    text += L';';
    text += std::to_wstring(scale);
    return ShowNew(dialogs, text);
}

} // namespace

int32_t _SetAltMainImage(ObjectContext* context, int32_t kind, const wchar_t* text)
{
    return vh::WithOwnWindows(context, [&](ObjectContext& c) { return SetByText(c.dialogs, kind, vh::View(text)); });
}

int32_t _SetAltMainImageEx(ObjectContext* context, int32_t scale, const wchar_t* path)
{
    return vh::WithOwnWindows(context, [&](ObjectContext& c) { return SetByScale(c.dialogs, scale, vh::View(path)); });
}

int32_t _SetPaletteFile(ObjectContext* context, const wchar_t* path)
{
    return vh::Framed(context, [&](ObjectContext& c) {
        c.palette = vh::LoadPalette(path ? path : L"");
        return 0;
    });
}
