#include "link_control.h"

#include "html_control.h"
#include "hyperlink_control.h"

namespace vh {

LinkKind TakeLinkMark(std::wstring_view& text)
{
    constexpr std::pair<std::wstring_view, LinkKind> marks[] = {{L"[html]", LinkKind::page},
                                                                {L"[hyperlink]", LinkKind::link}};
    for (const auto& [mark, kind] : marks)
        if (text.starts_with(mark)) {
            text.remove_prefix(mark.size());
            return kind;
        }
    return LinkKind::none;
}

std::unique_ptr<CLinkControlHolder> MakeLinkControl(LinkKind kind, HWND placeholder, int32_t id,
                                                    CUrlClickHandler& dialog)
{
    if (kind == LinkKind::link)
        return std::make_unique<CHyperlinkControl>(placeholder, id, dialog);
    return std::make_unique<CHtmlControl>(placeholder, id, dialog);
}

} // namespace vh
