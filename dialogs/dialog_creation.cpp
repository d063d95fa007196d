// How a script dialog's window comes to be, and what it does before anybody sees it.
#include <windows.h>

#include <commctrl.h>

#include "../pictures/placement.h"
#include "dialog_manager.h"
#include "dialog_procedure.h"
#include "late_dialogs.h"
#include "picture_resource.h"
#include "script_dialog.h"
#include "template_font.h"

namespace {

// A library that is held for the time of a creation.
class CreationLibrary {
public:
    CreationLibrary(const vh::DialogScene& scene, const stringx& path)
    {
        if (path.empty())
            return;
        m_engine = scene.Ask<ISetupResources>();
        if (m_engine)
            m_engine->Load(path.AsBstr(), &m_module);
        else
            m_module = Load(path.c_str());
    }
    CreationLibrary(const CreationLibrary&) = delete;
    CreationLibrary& operator=(const CreationLibrary&) = delete;
    ~CreationLibrary()
    {
        if (!m_module)
            return;
        long result = 0;
        if (m_engine)
            m_engine->Free(m_module, &result);
        else
            vh::unique_module closing(m_module);
    }

    HMODULE module() const { return m_module; }

private:
    static HMODULE Load(const wchar_t* path)
    {
        HMODULE module = LoadLibraryExW(path, nullptr, 0);
        // One of another word size can still give its templates.
        if (!module && GetLastError() == ERROR_BAD_EXE_FORMAT)
            module = LoadLibraryExW(path, nullptr, LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE);
        return module;
    }

    vh::com_ptr<ISetupResources> m_engine;
    HMODULE m_module = nullptr;
};

std::span<const std::byte> ResourceBytes(HMODULE module, const wchar_t* type, const wchar_t* name)
{
    const HRSRC found = FindResourceW(module, name, type);
    const HGLOBAL loaded = found ? LoadResource(module, found) : nullptr;
    const auto* bytes = loaded ? static_cast<const std::byte*>(LockResource(loaded)) : nullptr;
    return {bytes, bytes ? SizeofResource(module, found) : 0};
}

} // namespace

bool CScriptDialog::Create()
{
    const vh::DialogScene& scene = m_manager.scene();
    const CreationLibrary library(scene, m_definition.library);
    HMODULE module = library.module() ? library.module() : m_definition.module;
    if (!module && m_definition.library.empty())
        module = scene.modules.Find(RT_DIALOG, MAKEINTRESOURCEW(m_definition.resource));
    if (!module || !CreateFrom(module))
        return false;
    if (m_definition.parent && vh::late::is_iconic(m_definition.parent))
        vh::late::show_window(m_definition.parent, SW_RESTORE);
    return true;
}

bool CScriptDialog::CreateFrom(HMODULE module)
{
    const wchar_t* name =
        m_definition.resourceName.empty() ? MAKEINTRESOURCEW(m_definition.resource) : m_definition.resourceName.c_str();
    const std::span<const std::byte> original = ResourceBytes(module, RT_DIALOG, name);
    if (original.empty())
        return false;
    std::vector<std::byte> copy = m_fontName.empty() ? std::vector(original.begin(), original.end())
                                                     : vh::WithFont(original, m_fontName.view(), m_fontSize);
    if (copy.empty())
        return false;
    vh::MakeEndSafe(copy);
    const HWND made =
        vh::late::create_dialog_indirect(module, reinterpret_cast<const DLGTEMPLATE*>(copy.data()), m_definition.parent,
                                         &DialogProcedure::Run, reinterpret_cast<LPARAM>(this));
    // It is known since its first message, unless that ended it.
    return made && made == m_window;
}

INT_PTR DialogProcedure::Initialise(CScriptDialog& dialog, HWND window)
{
    constexpr void (*steps[])(CScriptDialog&) = {&Place,         &MakeSeparator,   &ShowWarning, &MakeTitle,
                                                 &CallHook,      &ShowDiskPicture, &FindTop,     &PrepareSkin,
                                                 &ShowMainImage, &FindLinks};
    dialog.m_window = window;
    vh::late::set_prop(window, dialog_property, static_cast<HANDLE>(&dialog));
    // The messages of each step may end the dialog.
    for (const auto step : steps)
        if (dialog.m_window == window)
            step(dialog);
    return 1;
}

void DialogProcedure::Place(CScriptDialog& dialog)
{
    if (dialog.m_definition.style & style_centred)
        vh::Centre(dialog.m_window, dialog.m_definition.parent);
}

void DialogProcedure::ShowWarning(CScriptDialog& dialog)
{
    if (const HWND warning = dialog.Control(control_warning))
        vh::late::send_message(warning, UINT{STM_SETICON},
                               reinterpret_cast<WPARAM>(vh::late::load_icon(nullptr, IDI_WARNING)), LPARAM{0});
}

void DialogProcedure::CallHook(CScriptDialog& dialog) { dialog.m_manager.scene().CallHook(dialog.m_window); }

// Wizard pages alone have a skin, and those with a picture of their own at the top have none.
void DialogProcedure::PrepareSkin(CScriptDialog& dialog)
{
    const vh::DialogSkin& skin = dialog.m_manager.skin;
    dialog.m_skinAttr.reset();
    if (!skin.enabled() || dialog.m_topImage || !vh::DialogSkin::Fits(dialog.m_window))
        return;
    dialog.m_skinAttr = skin.Record(dialog.m_window, dialog.m_name, dialog.m_brandText);
    vh::late::set_prop(dialog.m_window, skin_property, static_cast<HANDLE>(&*dialog.m_skinAttr));
}

// An etched line; without the brand text, which stands to its left, it takes that text's room too.
void DialogProcedure::MakeSeparator(CScriptDialog& dialog)
{
    const HWND separator = dialog.Control(control_separator);
    if (!separator)
        return;
    const auto change = [separator](int index, LONG_PTR cleared, LONG_PTR set) {
        vh::late::set_window_long(separator, index, (vh::late::get_window_long(separator, index) & ~cleared) | set);
    };
    change(GWL_STYLE, 7, SS_ETCHEDHORZ);
    change(GWL_EXSTYLE, 0, WS_EX_STATICEDGE);
    vh::late::set_window_pos(separator, nullptr, 0, 0, 0, 0,
                             UINT{SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED});
    const HWND brand = dialog.m_branding ? nullptr : dialog.Control(control_brand);
    if (!brand)
        return;
    RECT place = vh::PlaceIn(dialog.m_window, separator);
    place.left = vh::PlaceIn(dialog.m_window, brand).left;
    vh::Place(separator, place);
}

void DialogProcedure::MakeTitle(CScriptDialog& dialog)
{
    const HWND title = dialog.Control(control_title);
    if (!title)
        return;
    if (const stringx& caption = dialog.m_manager.window_title; !caption.empty())
        vh::late::set_text(dialog.m_window, caption.c_str());
    const auto font = reinterpret_cast<HFONT>(vh::late::send_message(title, UINT{WM_GETFONT}, WPARAM{0}, LPARAM{0}));
    LOGFONTW logical{};
    if (font && vh::late::get_object(font, static_cast<int>(sizeof(logical)), static_cast<void*>(&logical))) {
        logical.lfWeight = FW_BOLD;
        dialog.m_drawing.title_font.reset(vh::late::create_font(&logical));
        vh::late::send_message(title, UINT{WM_SETFONT}, reinterpret_cast<WPARAM>(dialog.m_drawing.title_font.get()),
                               LPARAM{TRUE});
    }
    dialog.m_drawing.window_brush.reset(vh::late::create_solid_brush(vh::late::get_system_color(COLOR_WINDOW)));
}

void DialogProcedure::ShowDiskPicture(CScriptDialog& dialog)
{
    constexpr int picture = 10777;
    constexpr int design_scale = 200;
    const HWND control = dialog.m_name == L"EnterDisk" ? dialog.Control(control_disk_picture) : nullptr;
    if (!control)
        return;
    vh::late::set_window_long(control, GWL_STYLE, LONG_PTR{WS_CHILD | WS_VISIBLE | SS_ICON});
    dialog.m_drawing.disk_picture = vh::LoadPictureIcon(dialog.m_manager.scene().modules, picture, design_scale);
    vh::late::send_message(control, UINT{STM_SETIMAGE}, WPARAM{IMAGE_ICON},
                           reinterpret_cast<LPARAM>(dialog.m_drawing.disk_picture.get()));
}

void DialogProcedure::FindTop(CScriptDialog& dialog) { dialog.m_topImage = dialog.Control(control_top) != nullptr; }

void DialogProcedure::ShowMainImage(CScriptDialog& dialog)
{
    // Its messages may end the context that has it.
    const std::shared_ptr<vh::MainImage> image = dialog.m_manager.image_window();
    const HWND control = image ? dialog.Control(control_image) : nullptr;
    if (!control)
        return;
    stringx text(dialog.m_mainImage);
    if (text.empty()) {
        wchar_t own[781] = L"";
        vh::late::get_text(control, own, static_cast<int>(std::size(own)));
        text = own;
    }
    const vh::DialogScene& scene = dialog.m_manager.scene();
    image->Show(dialog.m_window, control, vh::ParseImageSpec(text.view()), scene.modules, scene.palette.get());
}

// Controls whose text begins with a link's mark become links.
void DialogProcedure::FindLinks(CScriptDialog& dialog)
{
    // A control that turns into a link is another window afterwards, so all are listed first.
    std::vector<HWND> children;
    vh::late::enum_child_windows(
        dialog.m_window,
        [](HWND child, LPARAM list) -> BOOL {
            reinterpret_cast<std::vector<HWND>*>(list)->push_back(child);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&children));
    wchar_t text[2049];
    for (const HWND child : children) {
        const int length = vh::late::get_text(child, text, static_cast<int>(std::size(text)));
        dialog.SetHtmlContent(child, vh::late::get_control_id(child),
                              std::wstring_view(text, static_cast<std::size_t>(length)));
    }
}
