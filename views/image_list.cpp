#include "image_list.h"

#include <utility>

#include "../scriptdata/path_text.h"
#include "../scriptdata/unique_gdi.h"
#include "late_views.h"

namespace vh {

SIZE SizeOf(HBITMAP bitmap)
{
    BITMAP facts{};
    if (!bitmap || !late::get_object(bitmap, static_cast<int>(sizeof(facts)), static_cast<void*>(&facts)))
        return {};
    return {facts.bmWidth, facts.bmHeight};
}

image_list::image_list(HMODULE module, SIZE size, UINT flags, int initial, int growth)
    : m_module(late::image_list_create.get_in(module) ? module : late::common_controls.load())
{
    if (const auto create = late::image_list_create.get_in(m_module))
        m_list = create(static_cast<int>(size.cx), static_cast<int>(size.cy), flags, initial, growth);
}

image_list::image_list(image_list&& other) noexcept
    : m_module(other.m_module), m_list(std::exchange(other.m_list, nullptr))
{
}

image_list& image_list::operator=(image_list&& other) noexcept
{
    std::swap(m_module, other.m_module);
    std::swap(m_list, other.m_list);
    return *this;
}

image_list::~image_list()
{
    if (m_list)
        late::image_list_destroy.get_in(m_module)(m_list);
}

bool image_list::Add(HBITMAP picture) const
{
    return m_list && picture && late::image_list_add.get_in(m_module)(m_list, picture, nullptr) >= 0;
}

tiles image_list::AddTiles(const stringx& support_dir, int& width) const
{
    constexpr std::wstring_view name = L"view.bmp";
    constexpr COLORREF mask = 0xFF00FF;
    stringx file(support_dir);
    PathAppend(file, name);
    const unique_bitmap bitmap(static_cast<HBITMAP>(
        late::load_image(HINSTANCE{nullptr}, file.c_str(), UINT{IMAGE_BITMAP}, 0, 0, UINT{LR_LOADFROMFILE})));
    if (!bitmap)
        return tiles::missing;
    width = static_cast<int>(SizeOf(bitmap.get()).cx);
    const bool added = m_list && late::image_list_add_masked.get_in(m_module)(m_list, bitmap.get(), mask) >= 0;
    return added ? tiles::added : tiles::refused;
}

void image_list::Draw(int index, HDC context) const
{
    late::image_list_draw.get_in(m_module)(m_list, index, context, 0, 0, ILD_TRANSPARENT);
}

} // namespace vh
