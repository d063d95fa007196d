#include "placed_bitmaps.h"

#include <algorithm>

#include "../scriptdata/bstr.h"
#include "../scriptdata/results.h"
#include "image_spec.h"

namespace vh {

namespace {

constexpr int32_t transparent_flag = 32;
constexpr int32_t remove_flag = 0x8000;
// The first one that the flags hold counts. Those from the fourth on stand at a position.
constexpr int32_t placements[] = {64, 128, 16, 1, 2, 4, 8, 16384};
constexpr const int32_t* first_with_position = placements + 3;
constexpr int32_t default_placement = 2;
constexpr long no_color = -1;
constexpr long default_color = 0xFF00FF;

// The colour behind the last ";", which goes off the text. A lone number there is that of a resource, and stays.
long TakeColor(std::wstring_view& text)
{
    const std::size_t at = text.rfind(L';');
    if (at == std::wstring_view::npos)
        return default_color;
    const std::wstring_view part = text.substr(at + 1);
    std::array<int, 3> color{};
    const bool given = ScanNumbers(part, color);
    std::wstring_view rest = part;
    int number = 0;
    if (given || !ScanNumber(rest, number) || !rest.empty())
        text = text.substr(0, at);
    return given ? (color[0] & 0xFF) | (color[1] & 0xFF) << 8 | (color[2] & 0xFF) << 16 : default_color;
}

} // namespace

int32_t PlacedBitmaps::Place(std::wstring_view text, int32_t id, int32_t x, int32_t y, int32_t flags)
{
    if (flags & remove_flag) {
        m_facts.bitmaps.erase(id);
        return 0;
    }
    if (!m_window)
        return E_FAIL;
    const long color = flags & transparent_flag ? TakeColor(text) : no_color;
    const auto* found =
        std::find_if(std::begin(placements), std::end(placements), [flags](int32_t kind) { return flags & kind; });
    const bool none = found == std::end(placements);
    com_ptr<ISetupBitmap> made;
    const HRESULT code = m_window->CreateBitmap(bstr(text).get(), none ? default_placement : *found, color, made.put());
    if (const HRESULT given = Given(code, made); FAILED(given))
        return given;
    // The one before goes when its place is taken.
    m_facts.bitmaps[id] = made;
    if (!none && found < first_with_position)
        return 0;
    return FailureOnly(none ? made->SetPosition(0, 0) : made->SetPosition(x, y));
}

} // namespace vh
