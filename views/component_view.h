// A hand-painted list of the items of a media inside a script dialog.
#pragma once

#include <array>
#include <memory>

#include "view_items.h"
#include "view_pictures.h"
#include "view_rules.h"

// The numbers of a view's properties.
namespace vh::view_info {
enum : int32_t {
    unit = 2,
    decimals = 3,
    reserved = 5,
    show_sizes = 6,
    exclusive = 7,
    parent_view = 20,
    child_view = 21,
    description = 22,
    space_required = 23,
    space_free = 24,
    target = 25,
    media = 26,
    parent_item = 27,
    change_button = 28,
    path1 = 29,
    path2 = 30
};
} // namespace vh::view_info

struct ComponentView {
public:
    static constexpr const wchar_t* window_class = L"VHAVIEWCMPTCLASS";

    // For a placeholder control of the dialog; null when the window class can't be had.
    static ComponentView* Create(const vh::ViewScene& scene, HWND dialog, int32_t control);
    // What a script handed over, or null when no view of that address lives.
    static std::shared_ptr<ComponentView> Live(const void* view);
    // Views that a context leaves behind.
    static void EndAll(const ObjectContext* context);
    // The class goes with the library that holds its procedure.
    static void DropClass();
    // Of all views of the process. False for another number.
    static bool SetSharedInfo(const vh::ResourceModules& modules, int32_t info, int64_t number);

    ComponentView(const ComponentView&) = delete;
    ComponentView& operator=(const ComponentView&) = delete;
    ~ComponentView() = default;

    // These give 0 or -1 unless they say otherwise.
    int32_t MakeWindow();
    // 1 for most numbers, 0 for an unknown one.
    int32_t SetInfo(int32_t info, int64_t number, const wchar_t* text);
    int32_t QueryInfo(int32_t info, int64_t* number, wchar_t* text, int32_t size) const;
    int32_t Refresh();
    int32_t SelectAll(bool selected);
    // Ends the object; its window stays with the dialog and does nothing any more.
    void Destroy();

    // For those who read the view in another way than by looking.
    int32_t count() const { return m_items.count(); }
    int32_t current() const { return m_place.current; }
    bool IsOnScreen(int32_t index) const { return index >= m_place.first && index < m_place.first + m_visible; }
    bool has_focus() const { return m_focus; }
    vh::ViewRow RowOf(int32_t index) const;
    RECT PlaceOf(int32_t index) const;
    // -1 where no row is.
    int32_t RowAt(LONG y) const;
    void Pick(int32_t index, bool by_user, vh::pick_point point);
    HWND window() const { return m_window; }

private:
    // A control of the dialog by number.
    struct Linked {
        int32_t id = 0;
        HWND window = nullptr;
    };
    static constexpr int32_t most_rows = 50;

    ComponentView(const vh::ViewScene& scene, HWND dialog, int32_t control);

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
    static bool TakeClass();
    LRESULT Answer(UINT message, WPARAM wparam, LPARAM lparam);

    Linked* LinkOf(int32_t info);
    int32_t SetTarget(const wchar_t* text);
    int32_t SetParentItem(std::wstring_view text);
    void SetFont(HFONT font);

    const vh::ViewPictures& Pictures();
    RECT Client() const;
    // How many rows the window shows, and its scroll bar.
    void Arrange();
    void ScrollTo(int32_t first);
    // Asks the media for every row on the screen; those that changed are painted, or all.
    void Redraw(bool all);
    // The same for current row and focus, which the media has no part in.
    void Mark();
    void Invalidate(int32_t row) const;
    void Paint();
    void Flip(int32_t index);
    void ShowChildren(bool moved);
    void ShowDescription() const;
    void ShowChangeButton() const;
    void ShowSpaceRequired() const;
    void ShowSpaceFree() const;
    stringx SizeWithUnit(uint64_t bytes) const;
    void Tell(DWORD event, int32_t index) const;

    void OnKey(WPARAM key, LPARAM details, LRESULT& answer);
    void OnButton(LPARAM point, bool twice);
    void OnScroll(WORD code);
    void OnFocus(bool focus);
    void PressDefaultButton() const;

    vh::ViewItems m_items;
    vh::ViewScene m_scene;
    uint64_t m_spaceFree = 0;
    HWND m_window = nullptr;
    HWND m_dialog;
    int32_t m_control;
    Linked m_changeButton;
    std::weak_ptr<ComponentView> m_parent;
    std::weak_ptr<ComponentView> m_child;
    // The item whose children are shown was chosen.
    bool m_placed = false;
    Linked m_description;
    Linked m_spaceRequired;
    Linked m_spaceFreeText;
    std::array<Linked, 2> m_paths;
    HFONT m_font = nullptr;
    int m_rowHeight = 17;
    vh::list_place m_place;
    int32_t m_visible = 0;
    bool m_scrolls = false;
    bool m_showSizes = true;
    bool m_exclusive = false;
    int64_t m_reserved = 0;
    bool m_focus = false;
    // While the views of a chain refresh each other.
    bool m_busy = false;
    bool m_ownsShared = false;
    std::array<vh::ViewRow, most_rows> m_rows;
};
