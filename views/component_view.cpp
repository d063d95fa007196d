#include "component_view.h"

#include <algorithm>
#include <memory>

#include "../dialogs/compact_path.h"
#include "../dialogs/window_impl.h"
#include "../files/disk_space.h"
#include "../pictures/placement.h"
#include "../scriptdata/live_objects.h"
#include "../scriptdata/results.h"
#include "late_views.h"

namespace {

// Set while it lives, also when something is raised.
class busy_mark {
public:
    explicit busy_mark(bool& flag) : m_flag(flag) { m_flag = true; }
    busy_mark(const busy_mark&) = delete;
    busy_mark& operator=(const busy_mark&) = delete;
    ~busy_mark() { m_flag = false; }

private:
    bool& m_flag;
};

constexpr DWORD window_style = WS_CHILD | WS_VSCROLL | WS_TABSTOP;
constexpr const wchar_t* window_title = L"VHAVIEWCMPTWINDOW";

// All views of the process, whatever context they belong to.
vh::live_objects<ComponentView>& LiveViews()
{
    static vh::live_objects<ComponentView> live;
    return live;
}

} // namespace

std::shared_ptr<ComponentView> ComponentView::Live(const void* view) { return LiveViews().Find(view); }

ComponentView::ComponentView(const vh::ViewScene& scene, HWND dialog, int32_t control)
    : m_items(scene), m_scene(scene), m_dialog(dialog), m_control(control)
{
}

ComponentView* ComponentView::Create(const vh::ViewScene& scene, HWND dialog, int32_t control)
{
    if (!TakeClass())
        return nullptr;
    const std::shared_ptr<ComponentView> view(new ComponentView(scene, dialog, control));
    view->Pictures();
    LiveViews().Add(view);
    return view.get();
}

void ComponentView::Destroy()
{
    LiveViews().Remove(this);
    // Also where only the other side knows of the chain.
    for (const auto& other : LiveViews().Those([](const ComponentView&) { return true; }))
        for (std::weak_ptr<ComponentView>* link : {&other->m_parent, &other->m_child})
            if (link->lock().get() == this)
                link->reset();
    if (m_window)
        vh::late::set_window_long(m_window, 0, LONG_PTR{0});
    if (m_ownsShared)
        vh::SharedViews::Get().pictures.reset();
    // What uses it still finds nothing more to show.
    m_window = m_dialog = nullptr;
    m_changeButton = m_description = m_spaceRequired = m_spaceFreeText = {};
    m_paths = {};
    m_items.End();
}

void ComponentView::EndAll(const ObjectContext* context)
{
    const auto of_context = [context](const ComponentView& view) { return view.m_scene.context == context; };
    for (const auto& view : LiveViews().Those(of_context))
        view->Destroy();
}

// Whichever view needs the pictures while there are none builds them.
const vh::ViewPictures& ComponentView::Pictures()
{
    auto& pictures = vh::SharedViews::Get().pictures;
    if (!pictures) {
        pictures.emplace(m_dialog, m_scene.supportDir);
        m_ownsShared = true;
    }
    return *pictures;
}

bool ComponentView::SetSharedInfo(const vh::ResourceModules& modules, int32_t info, int64_t number)
{
    enum : UINT { kilobytes_text = 11511, megabytes_text = 11512 };
    vh::SharedViews& shared = vh::SharedViews::Get();
    switch (info) {
    case vh::view_info::unit: {
        shared.format.kilobytes = number > 0;
        wchar_t unit[5] = L"";
        modules.LoadText(shared.format.kilobytes ? kilobytes_text : megabytes_text, unit,
                         static_cast<int>(std::size(unit)));
        shared.unit = *unit ? unit : shared.format.kilobytes ? L"K" : L"M";
        return true;
    }
    case vh::view_info::decimals:
        shared.format.decimals = number != 0;
        return true;
    default:
        return false;
    }
}

int32_t ComponentView::MakeWindow()
{
    // The window may have come before there was anything to show.
    if (m_window)
        return Refresh();
    const HWND placeholder = vh::late::get_dialog_item(m_dialog, int{m_control});
    if (!placeholder)
        return -1;
    const RECT place = vh::PlaceIn(m_dialog, placeholder);
    const HWND before = vh::late::get_window(placeholder, UINT{GW_HWNDPREV});
    vh::late::destroy_window(placeholder);
    m_window = vh::late::create_window_ex(
        DWORD{0}, window_class, window_title, window_style, static_cast<int>(place.left), static_cast<int>(place.top),
        vh::WidthOf(place), vh::HeightOf(place), m_dialog, reinterpret_cast<HMENU>(static_cast<intptr_t>(m_control)),
        vh::ThisModule(), static_cast<void*>(this));
    if (!m_window)
        return -1;
    // The keyboard reaches it where it reached the placeholder.
    vh::late::set_window_pos(m_window, before ? before : HWND_TOP, 0, 0, 0, 0,
                             UINT{SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE});
    SetFont(reinterpret_cast<HFONT>(vh::late::send_message(m_dialog, UINT{WM_GETFONT}, WPARAM{0}, LPARAM{0})));
    const int32_t fetched = Refresh();
    vh::late::show_window(m_window, SW_SHOW);
    return fetched;
}

ComponentView::Linked* ComponentView::LinkOf(int32_t info)
{
    switch (info) {
    case vh::view_info::description:
        return &m_description;
    case vh::view_info::space_required:
        return &m_spaceRequired;
    case vh::view_info::space_free:
        return &m_spaceFreeText;
    case vh::view_info::change_button:
        return &m_changeButton;
    case vh::view_info::path1:
        return &m_paths[0];
    case vh::view_info::path2:
        return &m_paths[1];
    default:
        return nullptr;
    }
}

int32_t ComponentView::SetInfo(int32_t info, int64_t number, const wchar_t* text)
{
    switch (info) {
    case vh::view_info::reserved:
        m_reserved = number;
        return 1;
    case vh::view_info::show_sizes:
        // No row differs by it, but each looks different.
        if (std::exchange(m_showSizes, number != 0) != (number != 0) && m_window)
            vh::late::invalidate(m_window, static_cast<const RECT*>(nullptr), BOOL{FALSE});
        return 1;
    case vh::view_info::exclusive:
        m_exclusive = number != 0;
        return 1;
    case vh::view_info::parent_view:
        m_parent = Live(reinterpret_cast<const void*>(number));
        return 1;
    case vh::view_info::child_view:
        m_child = Live(reinterpret_cast<const void*>(number));
        return 1;
    case vh::view_info::target:
        return SetTarget(text);
    case vh::view_info::media:
        m_items.media_name = vh::View(text);
        return 1;
    case vh::view_info::parent_item:
        return SetParentItem(vh::View(text));
    default:
        break;
    }
    if (Linked* link = LinkOf(info)) {
        link->id = static_cast<int32_t>(number);
        link->window = vh::late::get_dialog_item(m_dialog, int{link->id});
        return 1;
    }
    return SetSharedInfo(m_scene.modules, info, number) ? 1 : 0;
}

int32_t ComponentView::SetTarget(const wchar_t* text)
try {
    m_items.target = vh::View(text);
    const auto space = vh::disk_space::query(m_items.target.view());
    m_spaceFree = space ? space->available : 0;
    ShowSpaceFree();
    for (const Linked& path : m_paths) {
        if (!path.window)
            continue;
        stringx shown(m_items.target);
        vh::CompactPath(path.window, shown);
        const bool network = shown.size() >= 3 && shown.view().starts_with(L"\\\\");
        if (!network)
            vh::late::upper_case(shown.data(), static_cast<DWORD>(shown.size()));
        vh::late::set_text(path.window, shown.c_str());
    }
    return 0;
} catch (const std::exception&) {
    return -1;
}

int32_t ComponentView::SetParentItem(std::wstring_view text)
try {
    m_items.parent_item = text;
    m_placed = true;
    m_place = {};
    return 0;
} catch (const std::exception&) {
    return -1;
}

int32_t ComponentView::QueryInfo(int32_t info, int64_t* number, wchar_t* text, int32_t size) const
{
    const auto put = [number](int64_t value) -> int32_t {
        if (number)
            *number = value;
        return 0;
    };
    const auto copy = [text, size](const stringx& value) {
        return !text || vh::CopyOut(value.view(), text, size) == 0 ? 0 : -1;
    };
    switch (info) {
    case vh::view_info::parent_view:
        return put(reinterpret_cast<int64_t>(m_parent.lock().get()));
    case vh::view_info::child_view:
        return put(reinterpret_cast<int64_t>(m_child.lock().get()));
    case vh::view_info::description:
        return put(m_description.id);
    case vh::view_info::space_required:
        return put(m_spaceRequired.id);
    case vh::view_info::space_free:
        return put(m_spaceFreeText.id);
    case vh::view_info::change_button:
        return put(m_changeButton.id);
    case vh::view_info::target:
        return copy(m_items.target);
    case vh::view_info::media:
        return copy(m_items.media_name);
    case vh::view_info::parent_item: {
        // As much as there is room for.
        const std::size_t room = text && size > 0 ? static_cast<std::size_t>(size) - 1 : 0;
        const stringx cut(m_items.parent_item.view().substr(0, room));
        return size > 0 ? copy(cut) : -1;
    }
    default:
        return -1;
    }
}

int32_t ComponentView::Refresh()
{
    const int32_t failed = m_items.Fetch();
    m_place.current = std::clamp(m_place.current, 0, std::max(count() - 1, 0));
    Arrange();
    Redraw(false);
    // A view below speaks when the user comes to it: it often has the label of the one above.
    if (m_parent.expired())
        ShowDescription();
    ShowChangeButton();
    ShowSpaceRequired();
    ShowSpaceFree();
    // A view below that nobody has told what to show begins with the current row.
    if (const auto child = m_child.lock(); child && !child->m_placed)
        ShowChildren(true);
    return failed ? -1 : 0;
}

int32_t ComponentView::SelectAll(bool selected)
{
    if (m_exclusive && selected && count() > 1)
        return -1;
    m_items.SelectAll(selected);
    Redraw(false);
    if (const auto parent = m_parent.lock())
        parent->Redraw(false);
    ShowChildren(false);
    ShowSpaceRequired();
    return 0;
}

// What a pick leads to, in its order: the item, the views above, the view below, the texts around the list.
void ComponentView::Pick(int32_t index, bool by_user, vh::pick_point point)
{
    if (index < 0 || index >= count())
        return;
    const vh::pick_result result = vh::DecidePick(index == m_place.current, by_user, m_items.IsDisabled(index), point);
    if (result.moves) {
        m_place.current = index;
        m_focus = true;
        Mark();
        Tell(EVENT_OBJECT_FOCUS, index);
        Tell(EVENT_OBJECT_SELECTION, index);
        ShowChangeButton();
    }
    if (result.flips)
        Flip(index);
    if (result.moves || result.flips)
        ShowChildren(result.moves);
    if (result.moves)
        ShowDescription();
}

void ComponentView::Flip(int32_t index)
{
    const bool selected = !m_items.IsSelected(index);
    if (m_exclusive && selected)
        m_items.SelectAll(false);
    m_items.Select(index, selected);
    Redraw(false);
    Tell(EVENT_OBJECT_STATECHANGE, index);
    if (const auto parent = m_parent.lock()) {
        parent->Redraw(false);
        parent->ShowSpaceRequired();
    }
    ShowSpaceRequired();
}

void ComponentView::ShowChildren(bool moved)
{
    // Chains that lead back to their beginning end here.
    const auto child = m_child.lock();
    if (!child || count() == 0 || m_busy)
        return;
    const busy_mark busy(m_busy);
    if (moved)
        child->SetParentItem(m_items.item(m_place.current).view());
    child->Refresh();
    child->ShowChildren(moved);
}

stringx ComponentView::SizeWithUnit(uint64_t bytes) const
{
    const vh::SharedViews& shared = vh::SharedViews::Get();
    return vh::Concat(vh::size_text(bytes, shared.format).view(), L" ", shared.unit.view());
}

void ComponentView::ShowSpaceRequired() const
{
    if (m_spaceRequired.window)
        vh::late::set_text(m_spaceRequired.window, SizeWithUnit(m_items.TotalSize()).c_str());
}

void ComponentView::ShowSpaceFree() const
{
    if (m_spaceFreeText.window)
        vh::late::set_text(m_spaceFreeText.window, SizeWithUnit(m_spaceFree).c_str());
}

void ComponentView::ShowDescription() const
{
    if (m_description.window)
        vh::late::set_text(m_description.window, m_items.Description(m_place.current).c_str());
}

void ComponentView::ShowChangeButton() const
{
    if (m_changeButton.window)
        vh::late::enable_window(m_changeButton.window, BOOL{m_items.HasChildren(m_place.current)});
}
