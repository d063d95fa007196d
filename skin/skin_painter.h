// Turns a dialog into a surface that is composed once, and its controls into parts of it.
#pragma once

#include <map>
#include <memory>

#include "skin.h"
#include "skin_attr.h"

// Skins a dialog with the section that the record names, until the dialog is destroyed. False without a section.
bool ApplySkin(const std::shared_ptr<Skin>& skin, const SkinAttr& attr);

namespace vh {

// What one dialog is painted from. Each has its own, so that two dialogs of one section don't meet.
class SkinnedDialog {
public:
    SkinnedDialog(const SkinnedDialog&) = delete;
    SkinnedDialog& operator=(const SkinnedDialog&) = delete;
    ~SkinnedDialog() = default;

private:
    friend bool ::ApplySkin(const std::shared_ptr<Skin>& skin, const SkinAttr& attr);

    struct PlacedIcon {
        HICON icon;
        POINT place;
        int id;
    };

    SkinnedDialog(std::shared_ptr<Skin> skin, const SkinSection& section, const SkinAttr& attr);

    void Compose();
    bool Take();
    void TakeControls();
    void TakeButton(HWND control);
    void TakeGroupBox(HWND control);
    void TakePushButton(HWND control);
    void TakeStatic(HWND control);
    void SubclassStatic(HWND control);
    void DropTheme(HWND control) const;
    void MakeBrush(HWND control);
    const SkinButton* ButtonOf(int id) const;
    // Factors in hundred thousandths at which a picture fills so many pixels.
    static void FitPicture(SkinImage& image, SIZE size);
    RECT FromUnits(skin_pair first, skin_pair second) const;

    static LRESULT CALLBACK Procedure(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam);
    static LRESULT CALLBACK StaticProcedure(HWND control, UINT message, WPARAM wparam, LPARAM lparam);
    LRESULT ColorOf(HDC context, HWND control) const;
    void Paint() const;
    void CopyUnder(HWND control, HDC context) const;
    void DrawItem(const DRAWITEMSTRUCT& item) const;

    SkinAttr m_attr;
    std::shared_ptr<Skin> m_skin;
    SkinParts m_parts;
    SIZE m_base{};
    LONG m_scaleX = 0;
    LONG m_scaleY = 0;
    SIZE m_client{};
    canvas m_surface;
    std::map<int32_t, PlacedIcon> m_icons;
    std::map<HWND, unique_brush> m_brushes;
};

} // namespace vh
