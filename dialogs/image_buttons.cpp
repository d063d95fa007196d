#include "image_buttons.h"

#include "dialog_procedure.h"
#include "image_spec.h"
#include "late_dialogs.h"
#include "picture_resource.h"

namespace vh {

namespace {

// Of a button that draws itself.
constexpr LONG_PTR owner_drawn_bits = 11;
constexpr LONG_PTR picture_bits = 0x380;

void ShowPicture(HWND button, WPARAM type, HANDLE picture)
{
    const LONG_PTR style = late::get_window_long(button, GWL_STYLE);
    late::set_window_long(button, GWL_STYLE, (style ^ owner_drawn_bits) | picture_bits);
    late::send_message(button, UINT{BM_SETIMAGE}, type, reinterpret_cast<LPARAM>(picture));
}

int NumberIn(std::wstring_view field)
{
    int number = 0;
    ScanNumber(field, number);
    return number;
}

void SetUpPicture(HWND button, std::wstring_view text, const ResourceModules& modules, ButtonPictures& pictures)
{
    TextFields fields(text, L';');
    std::wstring_view field;
    fields.Next(field);
    if (field.empty())
        return;
    const int number = NumberIn(field);
    const int scale = fields.Next(field) ? NumberIn(field) : 0;
    unique_icon icon = LoadPictureIcon(modules, number, scale == 0 ? 100 : scale);
    if (!icon)
        return;
    ShowPicture(button, IMAGE_ICON, icon.get());
    pictures.icons.push_back(std::move(icon));
}

// False when the routine is to end.
bool SetUpBitmap(HWND button, std::wstring_view text, const ResourceModules& modules, ButtonPictures& pictures)
{
    TextFields fields(text, L';');
    std::wstring_view number, other;
    fields.Next(number);
    // The flag and the colour behind the number have no effect.
    if (!fields.Next(other) || !fields.Next(other) || fields.Next(other))
        return false;
    const wchar_t* name = MAKEINTRESOURCEW(NumberIn(number));
    const HMODULE module = modules.Find(RT_BITMAP, name);
    if (!module)
        return false;
    unique_bitmap bitmap(static_cast<HBITMAP>(
        late::load_image(module, name, UINT{IMAGE_BITMAP}, 0, 0, UINT{LR_LOADMAP3DCOLORS | LR_LOADTRANSPARENT})));
    if (bitmap)
        ShowPicture(button, IMAGE_BITMAP, bitmap.get());
    pictures.bitmaps.push_back(std::move(bitmap));
    return true;
}

} // namespace

bool WantsImageButtons(HWND dialog)
{
    const HWND first = late::get_dialog_item(dialog, control_first_image_button);
    return first && (late::get_window_long(first, GWL_STYLE) & owner_drawn_bits) != 0;
}

void SetUpImageButtons(HWND dialog, const ResourceModules& modules, ButtonPictures& pictures)
{
    for (int id = control_first_image_button; id <= control_last_image_button; ++id) {
        const HWND button = late::get_dialog_item(dialog, id);
        wchar_t buffer[51] = L"";
        const int length = button ? late::get_text(button, buffer, static_cast<int>(std::size(buffer))) : 0;
        const std::wstring_view text(buffer, static_cast<std::size_t>(length));
        if (text.starts_with(L"@@"))
            SetUpPicture(button, text.substr(2), modules, pictures);
        else if (text.starts_with(L'@') && !SetUpBitmap(button, text.substr(1), modules, pictures))
            return;
    }
}

} // namespace vh
