// The items of a media that a component view shows, and what it shows of each. Without a window.
#pragma once

#include <vector>

#include "size_text.h"
#include "view_scene.h"

namespace vh {

// A row is painted again when one of these changes.
struct ViewRow {
    int32_t index = -1;
    stringx name;
    stringx size;
    stringx unit;
    bool selected = false;
    bool disabled = false;
    bool current = false;
    bool focus = false;
    int32_t image = -1;

    bool operator==(const ViewRow&) const = default;
};

class ViewItems {
public:
    static constexpr int32_t most_items = 500;
    static constexpr std::size_t longest_name = 260;

    explicit ViewItems(const ViewScene& scene) : m_scene(scene) {}

    stringx media_name;
    stringx parent_item;
    stringx target;

    // The items below the parent, at most 500 of them; -132 without a media's name, else the media's code.
    int32_t Fetch();
    // There are no items any more, and no media.
    void End();
    int32_t count() const { return static_cast<int32_t>(m_items.size()); }
    // Empty for an index outside.
    stringx item(int32_t index) const;

    bool IsSelected(int32_t index) const;
    bool IsDisabled(int32_t index) const;
    bool HasChildren(int32_t index) const;
    stringx Description(int32_t index) const;
    // Name, size, selection and picture; marks are the caller's. Without usable pictures the index stands for one.
    ViewRow Row(int32_t index, size_format format, bool pictures_usable) const;
    // Bytes that the whole selection needs at the target.
    uint64_t TotalSize() const;

    void Select(int32_t index, bool selected) const;
    void SelectAll(bool selected) const;
    // Of several selected items the first stays so; without any the first item becomes it.
    void KeepOneSelected() const;

private:
    CVHRTMedia& media() const;

    ViewScene m_scene;
    std::vector<stringx> m_items;
};

} // namespace vh
