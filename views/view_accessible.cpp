#include "view_accessible.h"

#include <oleacc.h>

#include "../scriptdata/bstr.h"
#include "../scriptdata/com_object.h"
#include "component_view.h"
#include "late_views.h"

namespace vh {

namespace late {

constinit late_library oleacc(L"oleacc.dll");
constinit late_function<decltype(CreateStdAccessibleObject)> standard_object(oleacc, "CreateStdAccessibleObject");
constinit late_function<decltype(LresultFromObject)> result_from_object(oleacc, "LresultFromObject");

} // namespace late

namespace {

// The platform's interface under our way of naming identifiers.
struct IAccessibleObject : IAccessible {
    static constexpr GUID iid = Guid("{618736E0-3C3D-11CF-810C-00AA00389B71}");
};

// The list itself is what the system makes of any window; the rows are its children by number, from 1.
class AccessibleView final : public com_object<IAccessibleObject> {
public:
    AccessibleView(std::weak_ptr<ComponentView> view, com_ptr<IAccessible> window)
        : m_view(std::move(view)), m_window(std::move(window))
    {
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override { return m_window->GetTypeInfoCount(count); }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override
    {
        return m_window->GetTypeInfo(index, locale, info);
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override
    {
        return m_window->GetIDsOfNames(id, names, count, locale, ids);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override
    {
        return DISP_E_MEMBERNOTFOUND;
    }

    HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) override { return m_window->get_accParent(parent); }
    HRESULT STDMETHODCALLTYPE get_accChildCount(long* count) override
    {
        return OnList([&](ComponentView& view) {
            *count = view.count();
            return S_OK;
        });
    }
    // Rows are no objects of their own.
    HRESULT STDMETHODCALLTYPE get_accChild(VARIANT, IDispatch** child) override
    {
        *child = nullptr;
        return S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* name) override
    {
        return OnRow(
            child, [&](ComponentView& view, int32_t index) { return Give(view.RowOf(index).name.view(), name); },
            [&] { return m_window->get_accName(child, name); });
    }
    HRESULT STDMETHODCALLTYPE get_accValue(VARIANT child, BSTR* value) override
    {
        return OnRow(
            child,
            [&](ComponentView& view, int32_t index) {
                const ViewRow row = view.RowOf(index);
                return Give(Concat(row.size.view(), L" ", row.unit.view()).view(), value);
            },
            [&] { return m_window->get_accValue(child, value); });
    }
    HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT child, BSTR* text) override
    {
        return m_window->get_accDescription(Itself(child), text);
    }
    HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) override
    {
        return OnRow(
            child, [&](ComponentView&, int32_t) { return Give(ROLE_SYSTEM_CHECKBUTTON, role); },
            [&] { return Give(ROLE_SYSTEM_LIST, role); });
    }
    HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* state) override
    {
        return OnRow(
            child, [&](ComponentView& view, int32_t index) { return Give(StateOf(view, index), state); },
            [&] { return m_window->get_accState(child, state); });
    }
    HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT child, BSTR* text) override
    {
        return m_window->get_accHelp(Itself(child), text);
    }
    HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR* file, VARIANT child, long* topic) override
    {
        return m_window->get_accHelpTopic(file, Itself(child), topic);
    }
    HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT child, BSTR* text) override
    {
        return m_window->get_accKeyboardShortcut(Itself(child), text);
    }
    HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* child) override
    {
        return OnList([&](ComponentView& view) {
            return view.has_focus() && view.count() ? Give(view.current() + 1, child) : None(child);
        });
    }
    HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* child) override
    {
        return OnList(
            [&](ComponentView& view) { return view.count() ? Give(view.current() + 1, child) : None(child); });
    }
    HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT child, BSTR* text) override
    {
        return OnRow(
            child,
            [&](ComponentView& view, int32_t index) {
                return Give(view.RowOf(index).selected ? L"Uncheck" : L"Check", text);
            },
            [&] { return m_window->get_accDefaultAction(child, text); });
    }
    HRESULT STDMETHODCALLTYPE accSelect(long flags, VARIANT child) override
    {
        return OnRow(
            child,
            [&](ComponentView& view, int32_t index) {
                if (flags & SELFLAG_TAKEFOCUS)
                    late::set_focus(view.window());
                view.Pick(index, false, pick_point::none);
                return S_OK;
            },
            [&] { return m_window->accSelect(flags, child); });
    }
    HRESULT STDMETHODCALLTYPE accLocation(long* left, long* top, long* width, long* height, VARIANT child) override
    {
        return OnRow(
            child,
            [&](ComponentView& view, int32_t index) {
                RECT place = view.PlaceOf(index);
                late::map_window_points(view.window(), HWND{nullptr}, reinterpret_cast<POINT*>(&place), UINT{2});
                *left = place.left;
                *top = place.top;
                *width = place.right - place.left;
                *height = place.bottom - place.top;
                return S_OK;
            },
            [&] { return m_window->accLocation(left, top, width, height, child); });
    }
    HRESULT STDMETHODCALLTYPE accNavigate(long direction, VARIANT start, VARIANT* end) override
    {
        const bool forward = direction == NAVDIR_NEXT || direction == NAVDIR_DOWN;
        if (direction == NAVDIR_FIRSTCHILD || direction == NAVDIR_LASTCHILD)
            return OnList([&](ComponentView& view) {
                return view.count() ? Give(direction == NAVDIR_FIRSTCHILD ? 1 : view.count(), end) : None(end);
            });
        return OnRow(
            start,
            [&](ComponentView& view, int32_t index) {
                const int32_t next = forward                                                  ? index + 1
                                     : direction == NAVDIR_PREVIOUS || direction == NAVDIR_UP ? index - 1
                                                                                              : -1;
                return next >= 0 && next < view.count() ? Give(next + 1, end) : None(end);
            },
            [&] { return m_window->accNavigate(direction, start, end); });
    }
    HRESULT STDMETHODCALLTYPE accHitTest(long left, long top, VARIANT* child) override
    {
        return OnList([&](ComponentView& view) {
            POINT point{left, top};
            late::screen_to_client(view.window(), &point);
            RECT client{};
            late::get_client_rect(view.window(), &client);
            if (point.x < 0 || point.y < 0 || point.x >= client.right || point.y >= client.bottom)
                return None(child);
            return Give(view.RowAt(point.y) + 1, child);
        });
    }
    HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT child) override
    {
        return OnRow(
            child,
            [&](ComponentView& view, int32_t index) {
                view.Pick(index, true, pick_point::check);
                return S_OK;
            },
            [&] { return m_window->accDoDefaultAction(child); });
    }
    HRESULT STDMETHODCALLTYPE put_accName(VARIANT, BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_accValue(VARIANT, BSTR) override { return E_NOTIMPL; }

private:
    static HRESULT Give(std::wstring_view text, BSTR* result)
    {
        *result = bstr(text).detach();
        return S_OK;
    }
    static HRESULT Give(long number, VARIANT* result)
    {
        result->vt = VT_I4;
        result->lVal = number;
        return S_OK;
    }
    static HRESULT None(VARIANT* result)
    {
        result->vt = VT_EMPTY;
        return S_FALSE;
    }
    static VARIANT Itself(VARIANT child)
    {
        child.vt = VT_I4;
        child.lVal = CHILDID_SELF;
        return child;
    }
    static long StateOf(ComponentView& view, int32_t index)
    {
        const ViewRow row = view.RowOf(index);
        long state = STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_SELECTABLE;
        state |= row.selected ? STATE_SYSTEM_CHECKED : 0;
        state |= row.current ? STATE_SYSTEM_SELECTED : 0;
        state |= row.focus ? STATE_SYSTEM_FOCUSED : 0;
        state |= row.disabled ? STATE_SYSTEM_UNAVAILABLE : 0;
        state |= view.IsOnScreen(index) ? 0 : STATE_SYSTEM_OFFSCREEN;
        return state;
    }

    // Whoever asks may keep this object longer than the view lives.
    template <class Answer>
    HRESULT OnList(Answer&& answer)
    try {
        const auto view = m_view.lock();
        return view ? answer(*view) : CO_E_OBJNOTCONNECTED;
    } catch (const std::exception&) {
        return E_OUTOFMEMORY;
    }
    template <class OfRow, class OfList>
    HRESULT OnRow(const VARIANT& child, OfRow&& of_row, OfList&& of_list)
    {
        return OnList([&](ComponentView& view) -> HRESULT {
            if (child.vt != VT_I4 || child.lVal < CHILDID_SELF || child.lVal > view.count())
                return E_INVALIDARG;
            return child.lVal == CHILDID_SELF ? of_list() : of_row(view, static_cast<int32_t>(child.lVal) - 1);
        });
    }

    std::weak_ptr<ComponentView> m_view;
    com_ptr<IAccessible> m_window;
};

} // namespace

bool AnswerAccessible(ComponentView& view, WPARAM wparam, LPARAM lparam, LRESULT& answer)
{
    constexpr GUID id = IAccessibleObject::iid;
    if (static_cast<LONG>(lparam) != OBJID_CLIENT || !late::standard_object || !late::result_from_object)
        return false;
    com_ptr<IAccessible> window;
    if (FAILED(late::standard_object(view.window(), LONG{OBJID_CLIENT}, id, window.put_void())) || !window)
        return false;
    const auto object = make_object<AccessibleView>(ComponentView::Live(&view), std::move(window));
    answer = late::result_from_object(id, wparam, static_cast<IUnknown*>(object.get()));
    return true;
}

} // namespace vh
