// The edit control of the folder picker with its two labels, which the library builds into the platform's dialog.
#pragma once

#include "../pictures/placement.h"
#include "../scriptdata/stringx.h"

namespace vh {

class PickerEdit {
public:
    // Identifiers of the controls; the platform's own are far from them.
    static constexpr int edit_id = 0x7E01;
    static constexpr int label_id = 0x7E00;
    static constexpr int second_label_id = 0x7E02;
    static constexpr int max_length = 260;

    // Puts label, edit and second label above the tree and moves what stands below; the dialog grows for it as far
    // as its monitor allows.
    void Create(HWND dialog, const stringx& label, const stringx& second_label, const stringx& text);
    // Keeps the place after the platform has laid out its own controls again.
    void Arrange() const;

    explicit operator bool() const { return m_edit != nullptr; }
    // Below this height of the dialog the tree would be squeezed away.
    int LeastHeight() const;
    stringx Text() const;
    void SetText(const wchar_t* text) const;
    // Gives it the input with its whole text selected.
    void Select() const;

private:
    HWND Add(const wchar_t* type, DWORD style, DWORD extended_style, int id, const stringx& text, HWND behind) const;
    RECT Anchor() const;
    int HeightOfLabel(const stringx& text, int width) const;
    void MakeRoom(const RECT& anchor, int height);

    HWND m_dialog = nullptr;
    // The direct child of the dialog that is the tree or holds it; may be missing.
    HWND m_tree = nullptr;
    HWND m_label = nullptr;
    HWND m_edit = nullptr;
    HWND m_second_label = nullptr;
    int m_top_of_tree = 0;
};

} // namespace vh
