#include "compact_path.h"

#include "../scriptdata/path_text.h"
#include "late_dialogs.h"

namespace {

// A device context of a window for the length of a block.
class window_context {
public:
    explicit window_context(HWND window) : m_window(window), m_context(vh::late::get_dc(window)) {}
    window_context(const window_context&) = delete;
    window_context& operator=(const window_context&) = delete;
    ~window_context()
    {
        if (m_context)
            vh::late::release_dc(m_window, m_context);
    }
    explicit operator bool() const { return m_context != nullptr; }

    LONG client_width() const
    {
        RECT client{};
        vh::late::get_client_rect(m_window, &client);
        return client.right - client.left;
    }
    // A text that can't be measured takes no room.
    LONG width_of(std::wstring_view text) const
    {
        SIZE size{};
        return vh::late::get_text_extent(m_context, text.data(), static_cast<int>(text.size()), &size) ? size.cx : 0;
    }

private:
    HWND m_window;
    HDC m_context;
};

} // namespace

namespace vh {

bool CompactPath(HWND window, stringx& path)
{
    const window_context context(window);
    if (!context)
        return false;
    const LONG room = context.client_width();
    while (context.width_of(path) > room && ShortenPath(path)) {
    }
    return true;
}

} // namespace vh
