#include "skin_painter.h"

#include <algorithm>

#include <commctrl.h>

#include "../pictures/picture_options.h"
#include "../pictures/placement.h"
#include "../scriptdata/live_objects.h"

using namespace vh;

namespace {

constexpr const wchar_t* dialog_property = L"PROP_PSKIN";
constexpr const wchar_t* static_property = L"PROP_STAT_PSKIN";
constexpr const wchar_t* procedure_property = L"PROP_STAT_OLDPROC";
// Skins are drawn for a dialog of these units.
constexpr SIZE design_base{6, 13};

live_objects<SkinnedDialog>& LiveDialogs()
{
    static live_objects<SkinnedDialog> live;
    return live;
}

LONG_PTR StyleOf(HWND window) { return late::get_window_long(window, GWL_STYLE); }

bool IsClass(HWND window, const wchar_t* name)
{
    wchar_t type[32] = L"";
    late::get_class_name(window, type, static_cast<int>(std::size(type)));
    return stringxi(type) == name;
}

SIZE ClientSize(HWND window)
{
    RECT client{};
    late::get_client_rect(window, &client);
    return {client.right, client.bottom};
}

SIZE BaseOf(HWND dialog)
{
    RECT units{0, 0, 4, 8};
    late::map_dialog_rect(dialog, &units);
    return {units.right, units.bottom};
}

unique_screen_context Screen() { return unique_screen_context(late::get_dc(HWND{nullptr})); }

SIZE TextSize(HDC context, HWND font_of, std::wstring_view text)
{
    const auto font = reinterpret_cast<HGDIOBJ>(late::send_message(font_of, UINT{WM_GETFONT}, WPARAM{0}, LPARAM{0}));
    const HGDIOBJ before = font ? late::select_object(context, font) : nullptr;
    SIZE size{};
    late::get_text_extent(context, text.data(), static_cast<int>(text.size()), &size);
    if (before)
        late::select_object(context, before);
    return size;
}

} // namespace

bool ApplySkin(const std::shared_ptr<Skin>& skin, const SkinAttr& attr)
{
    std::string name = attr.sectionName;
    if (attr.version >= 2 && attr.language) {
        char language[8];
        std::snprintf(language, sizeof(language), "-%04x", unsigned{attr.language});
        name += language;
    }
    const SkinSection* section = skin ? skin->Find(name) : nullptr;
    if (!section) {
        if (GetLastError() != ERROR_PROC_NOT_FOUND || attr.version < 2)
            return false;
        SkinAttr bare = attr;
        bare.version = 1;
        bare.language = 0;
        return ApplySkin(skin, bare);
    }
    if (late::get_prop(attr.window, dialog_property))
        return false;
    std::shared_ptr<SkinnedDialog> made(new SkinnedDialog(skin, *section, attr));
    if (!made->m_surface)
        return false;
    made->Compose();
    made->TakeControls();
    if (!made->Take())
        return false;
    LiveDialogs().Add(std::move(made));
    late::invalidate(attr.window, static_cast<const RECT*>(nullptr), BOOL{FALSE});
    late::update_window(attr.window);
    return true;
}

namespace vh {

SkinnedDialog::SkinnedDialog(std::shared_ptr<Skin> skin, const SkinSection& section, const SkinAttr& attr)
    : m_attr(attr), m_skin(std::move(skin)), m_parts(m_skin->PartsOf(section)), m_base(BaseOf(attr.window)),
      m_scaleX(MulDiv(static_cast<int>(m_base.cx), scale_of_one, static_cast<int>(design_base.cx))),
      m_scaleY(MulDiv(static_cast<int>(m_base.cy), scale_of_one, static_cast<int>(design_base.cy))),
      m_client(ClientSize(attr.window)), m_surface(Screen().get(), m_client)
{
}

RECT SkinnedDialog::FromUnits(skin_pair first, skin_pair second) const
{
    const auto across = [this](int32_t units) { return LONG{MulDiv(units, static_cast<int>(m_base.cx), 4)}; };
    const auto down = [this](int32_t units) { return LONG{MulDiv(units, static_cast<int>(m_base.cy), 8)}; };
    return {across(first.x), down(first.y), across(second.x), down(second.y)};
}

// Rectangles, then pictures; the icons of controls come when these are taken.
void SkinnedDialog::Compose()
{
    const RECT all{0, 0, m_client.cx, m_client.cy};
    late::fill_rect(m_surface.get(), &all, late::get_system_brush(COLOR_BTNFACE));
    for (const auto& [number, rect] : *m_parts.rects) {
        const RECT place = FromUnits(rect.position, rect.area);
        late::fill_rect(m_surface.get(), &place, rect.brush.get());
    }
    for (const auto& [number, reference] : *m_parts.images) {
        if (!reference.image)
            continue;
        const RECT place = FromUnits(reference.position, {});
        SetupImage& picture = reference.image->picture;
        picture.SetPosition(
            reference.options & option_center_across ? centered_position : static_cast<int32_t>(place.left),
            reference.options & option_center_down ? centered_position : static_cast<int32_t>(place.top));
        picture.SetSize(static_cast<int32_t>(m_scaleX), static_cast<int32_t>(m_scaleY));
        picture.Draw(m_surface.get(), m_client);
    }
}

void SkinnedDialog::TakeControls()
{
    // Captions of group boxes become controls of their own meanwhile.
    std::vector<HWND> controls;
    for (HWND child = late::get_window(m_attr.window, UINT{GW_CHILD}); child;
         child = late::get_window(child, UINT{GW_HWNDNEXT}))
        controls.push_back(child);
    for (const HWND control : controls) {
        if (IsClass(control, WC_BUTTONW))
            TakeButton(control);
        else if (IsClass(control, WC_STATICW))
            TakeStatic(control);
        else if (IsClass(control, PROGRESS_CLASSW))
            DropTheme(control);
    }
    for (const auto& [number, placed] : m_icons)
        if (late::get_dialog_item(m_attr.window, placed.id))
            late::draw_icon(m_surface.get(), static_cast<int>(placed.place.x), static_cast<int>(placed.place.y),
                            placed.icon);
}

void SkinnedDialog::TakeButton(HWND control)
{
    switch (StyleOf(control) & BS_TYPEMASK) {
    case BS_GROUPBOX:
        TakeGroupBox(control);
        break;
    case BS_AUTOCHECKBOX:
    case BS_AUTORADIOBUTTON:
        DropTheme(control);
        MakeBrush(control);
        break;
    case BS_PUSHBUTTON:
    case BS_DEFPUSHBUTTON:
        TakePushButton(control);
        break;
    default:
        break;
    }
}

void SkinnedDialog::DropTheme(HWND control) const
{
    if (m_skin->themes_in_use() && late::set_window_theme)
        late::set_window_theme(control, L" ", L" ");
}

// The caption stands in a label of its own, since a box paints its background behind it.
void SkinnedDialog::TakeGroupBox(HWND control)
{
    DropTheme(control);
    wchar_t caption[80] = L"";
    const int length = late::get_text(control, caption, static_cast<int>(std::size(caption)));
    if (length <= 0)
        return;
    late::set_text(control, L"");
    const RECT place = PlaceIn(m_attr.window, control);
    const auto style = static_cast<DWORD>(StyleOf(control)) >> 16;
    const SIZE size =
        TextSize(Screen().get(), m_attr.window, std::wstring_view(caption, static_cast<std::size_t>(length)));
    const HWND label = late::create_window_ex(
        static_cast<DWORD>(late::get_window_long(control, GWL_EXSTYLE)), WC_STATICW,
        static_cast<const wchar_t*>(caption), (style & 0xAFFC) | WS_CHILD | WS_VISIBLE,
        static_cast<int>(place.left + 10), static_cast<int>(place.top), static_cast<int>(size.cx),
        static_cast<int>(size.cy), m_attr.window, HMENU{nullptr}, HINSTANCE{nullptr}, static_cast<void*>(nullptr));
    if (!label)
        return;
    late::send_message(label, UINT{WM_SETFONT},
                       static_cast<WPARAM>(late::send_message(m_attr.window, UINT{WM_GETFONT}, WPARAM{0}, LPARAM{0})),
                       LPARAM{FALSE});
    SubclassStatic(label);
    MakeBrush(label);
    late::set_window_pos(label, control, 0, 0, 0, 0, UINT{SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE});
}

// What the surface has under a control becomes its background.
void SkinnedDialog::MakeBrush(HWND control)
{
    const RECT place = PlaceIn(m_attr.window, control);
    const SIZE size{WidthOf(place), HeightOf(place)};
    if (size.cx <= 0 || size.cy <= 0)
        return;
    unique_bitmap part(
        late::create_compatible_bitmap(m_surface.get(), static_cast<int>(size.cx), static_cast<int>(size.cy)));
    {
        const bitmap_context context(m_surface.get(), part.get());
        if (!context)
            return;
        late::bit_blt(context.get(), 0, 0, static_cast<int>(size.cx), static_cast<int>(size.cy), m_surface.get(),
                      static_cast<int>(place.left), static_cast<int>(place.top), DWORD{SRCCOPY});
    }
    m_brushes[control].reset(late::create_pattern_brush(part.get()));
}

const SkinButton* SkinnedDialog::ButtonOf(int id) const
{
    auto found = m_parts.buttons->find(id);
    if (found == m_parts.buttons->end())
        found = m_parts.buttons->find(0);
    return found == m_parts.buttons->end() ? nullptr : &found->second;
}

void SkinnedDialog::FitPicture(SkinImage& image, SIZE size)
{
    const SIZE natural = image.picture.size();
    image.picture.SetPosition(0, 0);
    image.picture.SetSize(MulDiv(static_cast<int>(size.cx), scale_of_one, std::max(static_cast<int>(natural.cx), 1)),
                          MulDiv(static_cast<int>(size.cy), scale_of_one, std::max(static_cast<int>(natural.cy), 1)));
}

// A picture that is smaller than its control fills it; a larger one makes the control grow.
void SkinnedDialog::TakePushButton(HWND control)
{
    late::set_window_long(control, GWL_STYLE, StyleOf(control) | BS_OWNERDRAW);
    const SkinButton* button = ButtonOf(late::get_control_id(control));
    if (!button)
        return;
    RECT place = PlaceIn(m_attr.window, control);
    SIZE size{WidthOf(place), HeightOf(place)};
    if (button->upImage) {
        SIZE least = button->upImage->picture.size();
        if (button->options & option_scale)
            least = {MulDiv(static_cast<int>(least.cx), static_cast<int>(m_scaleX), scale_of_one),
                     MulDiv(static_cast<int>(least.cy), static_cast<int>(m_scaleY), scale_of_one)};
        size = {std::max(size.cx, least.cx), std::max(size.cy, least.cy)};
    }
    if (button->position) {
        const RECT told = FromUnits(*button->position, {});
        place.left = told.left;
        place.top = told.top;
    }
    late::move_window(control, static_cast<int>(place.left), static_cast<int>(place.top), static_cast<int>(size.cx),
                      static_cast<int>(size.cy), BOOL{FALSE});
}

void SkinnedDialog::TakeStatic(HWND control)
{
    constexpr LONG_PTR type_mask = SS_TYPEMASK;
    switch (StyleOf(control) & type_mask) {
    case SS_ICON: {
        if (!(StyleOf(control) & WS_VISIBLE))
            return;
        const auto icon = reinterpret_cast<HICON>(late::send_message(control, UINT{STM_GETICON}, WPARAM{0}, LPARAM{0}));
        const RECT place = PlaceIn(m_attr.window, control);
        const auto number = static_cast<int32_t>(m_icons.size()) + 1;
        m_icons[number] = {icon, {place.left, place.top}, late::get_control_id(control)};
        late::show_window(control, SW_HIDE);
        return;
    }
    case SS_OWNERDRAW:
    case SS_BITMAP:
    case SS_ENHMETAFILE:
        return;
    default:
        break;
    }
    wchar_t text[10] = L"";
    late::get_text(control, text, static_cast<int>(std::size(text)));
    if (*text != L'@')
        SubclassStatic(control);
}

void SkinnedDialog::SubclassStatic(HWND control)
{
    const auto before = reinterpret_cast<HANDLE>(late::get_window_long(control, GWLP_WNDPROC));
    if (!late::set_prop(control, static_property, static_cast<HANDLE>(this)) ||
        !late::set_prop(control, procedure_property, before))
        return;
    late::set_window_long(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&StaticProcedure));
}

bool SkinnedDialog::Take()
{
    if (!late::set_prop(m_attr.window, dialog_property, static_cast<HANDLE>(this)))
        return false;
    m_attr.previousProcedure = reinterpret_cast<WNDPROC>(
        late::set_window_long(m_attr.window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure)));
    return true;
}

LRESULT CALLBACK SkinnedDialog::StaticProcedure(HWND control, UINT message, WPARAM wparam, LPARAM lparam)
{
    const auto before = reinterpret_cast<WNDPROC>(late::get_prop(control, procedure_property));
    // A new text is not to stand over the old one.
    if (message == WM_SETTEXT) {
        if (const auto skinned = LiveDialogs().Find(late::get_prop(control, static_property))) {
            const HDC context = late::get_dc(control);
            skinned->CopyUnder(control, context);
            late::release_dc(control, context);
        }
    } else if (message == WM_NCDESTROY) {
        late::remove_prop(control, static_property);
        late::remove_prop(control, procedure_property);
        late::set_window_long(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(before));
    }
    return before ? late::call_window_proc(before, control, message, wparam, lparam)
                  : late::def_window_proc(control, message, wparam, lparam);
}

void SkinnedDialog::CopyUnder(HWND control, HDC context) const
{
    const RECT place = PlaceIn(m_attr.window, control);
    late::bit_blt(context, 0, 0, WidthOf(place), HeightOf(place), m_surface.get(), static_cast<int>(place.left),
                  static_cast<int>(place.top), DWORD{SRCCOPY});
}

LRESULT CALLBACK SkinnedDialog::Procedure(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam)
{
    // The property would tell too, but costs a call of the window system for each message.
    const auto skinned =
        LiveDialogs().Newest([dialog](const SkinnedDialog& one) { return one.m_attr.window == dialog; });
    if (!skinned)
        return late::def_window_proc(dialog, message, wparam, lparam);
    const WNDPROC before = skinned->m_attr.previousProcedure;
    switch (message) {
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN: {
        const auto control = reinterpret_cast<HWND>(lparam);
        if (IsClass(control, WC_BUTTONW) || (message == WM_CTLCOLORSTATIC && IsClass(control, WC_STATICW)))
            return skinned->ColorOf(reinterpret_cast<HDC>(wparam), message == WM_CTLCOLORSTATIC ? control : nullptr);
        break;
    }
    case WM_DRAWITEM: {
        const auto* item = reinterpret_cast<const DRAWITEMSTRUCT*>(lparam);
        if (item && IsClass(item->hwndItem, WC_BUTTONW) && (StyleOf(item->hwndItem) & BS_TYPEMASK) == BS_OWNERDRAW) {
            skinned->DrawItem(*item);
            return 0;
        }
        break;
    }
    case WM_ERASEBKGND:
        return 1;
    case WM_PAINT:
        skinned->Paint();
        break;
    case WM_DESTROY: {
        late::remove_prop(dialog, dialog_property);
        late::set_window_long(dialog, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(before));
        LiveDialogs().Remove(skinned.get());
        break;
    }
    default:
        break;
    }
    return late::call_window_proc(before, dialog, message, wparam, lparam);
}

LRESULT SkinnedDialog::ColorOf(HDC context, HWND control) const
{
    late::set_background_mode(context, TRANSPARENT);
    late::set_text_color(context, m_parts.textColor);
    const auto found = m_brushes.find(control);
    return found == m_brushes.end() ? reinterpret_cast<LRESULT>(late::get_stock_object(NULL_BRUSH))
                                    : reinterpret_cast<LRESULT>(found->second.get());
}

void SkinnedDialog::Paint() const
{
    PAINTSTRUCT paint{};
    const HDC context = late::begin_paint(m_attr.window, &paint);
    const RECT& place = paint.rcPaint;
    late::bit_blt(context, static_cast<int>(place.left), static_cast<int>(place.top), WidthOf(place), HeightOf(place),
                  m_surface.get(), static_cast<int>(place.left), static_cast<int>(place.top), DWORD{SRCCOPY});
    late::end_paint(m_attr.window, &paint);
}

void SkinnedDialog::DrawItem(const DRAWITEMSTRUCT& item) const
{
    constexpr UINT text_format = DT_CENTER | DT_VCENTER | DT_SINGLELINE;
    const SkinButton* button = ButtonOf(static_cast<int>(item.CtlID));
    if (item.CtlType != ODT_BUTTON || !button)
        return;
    const saved_context saved(item.hDC);
    const auto font =
        reinterpret_cast<HGDIOBJ>(late::send_message(item.hwndItem, UINT{WM_GETFONT}, WPARAM{0}, LPARAM{0}));
    if (font)
        late::select_object(item.hDC, font);
    late::set_background_mode(item.hDC, TRANSPARENT);
    wchar_t text[1024] = L"";
    const int length = late::get_text(item.hwndItem, text, static_cast<int>(std::size(text)));
    RECT place = item.rcItem;
    if (item.itemAction != ODA_FOCUS) {
        const bool down = (item.itemState & ODS_SELECTED) != 0;
        CopyUnder(item.hwndItem, item.hDC);
        if (SkinImage* image = down && button->downImage ? button->downImage : button->upImage) {
            const SIZE size{WidthOf(place), HeightOf(place)};
            FitPicture(*image, size);
            image->picture.Draw(item.hDC, size, option_scale);
        } else {
            // Without a picture it still is a button to look at.
            late::draw_frame_control(item.hDC, &place, UINT{DFC_BUTTON},
                                     UINT{DFCS_BUTTONPUSH} | (down ? UINT{DFCS_PUSHED} : 0u));
        }
        RECT text_place = place;
        if (down)
            place = {place.left + 2, place.top + 2, place.right + 2, place.bottom + 2};
        late::set_text_color(item.hDC, item.itemState & ODS_DISABLED ? button->disabledTextColor : button->textColor);
        late::draw_text(item.hDC, static_cast<const wchar_t*>(text), length, &text_place, text_format);
    }
    if (item.itemAction != ODA_FOCUS && !(item.itemState & ODS_FOCUS))
        return;
    // Centred in nothing, a text measures half its height.
    RECT size{};
    late::draw_text(item.hDC, static_cast<const wchar_t*>(text), length, &size, UINT{DT_SINGLELINE | DT_CALCRECT});
    const POINT middle{(place.left + place.right) / 2, (place.top + place.bottom) / 2};
    const RECT frame{middle.x - size.right / 2 - 2, middle.y - size.bottom / 2 - 2, middle.x + size.right / 2 + 2,
                     middle.y + size.bottom / 2 + 2};
    late::draw_focus(item.hDC, &frame);
    late::send_message(m_attr.window, UINT{DM_SETDEFID}, WPARAM{item.CtlID}, LPARAM{0});
}

} // namespace vh
