#include "view_pictures.h"

#include "dpi_control_utils.h"
#include "late_views.h"

namespace vh {

namespace {

unique_bitmap CheckBox(HWND window, int state)
{
    return CDpiControlUtils(window, L"Button").GetBitmap(CDpiControlUtils::check_box, state);
}

} // namespace

ready_picture::ready_picture(unique_bitmap bitmap)
    : m_bitmap(std::move(bitmap)), m_size(SizeOf(m_bitmap.get())), m_context(nullptr, m_bitmap.get())
{
}

ViewPictures::ViewPictures(HWND window, const stringx& support_dir)
    : m_checked(CheckBox(window, CDpiControlUtils::checked)), m_clear(CheckBox(window, CDpiControlUtils::clear)),
      m_usable(LoadItems(support_dir))
{
}

bool ViewPictures::LoadItems(const stringx& support_dir)
{
    constexpr SIZE tile{item_picture_size, item_picture_size};
    m_items = image_list(nullptr, tile, ILC_MASK, 2, 2);
    if (m_items.AddTiles(support_dir, m_width) != tiles::added)
        return false;
    const unique_screen_context screen(late::get_dc(HWND{nullptr}));
    m_tile.emplace(screen.get(), tile);
    return static_cast<bool>(*m_tile);
}

void ViewPictures::DrawItem(HDC target, POINT place, int32_t image, int ground) const
{
    constexpr RECT tile{0, 0, item_picture_size, item_picture_size};
    late::fill_rect(m_tile->get(), &tile, late::get_system_brush(ground));
    m_items.Draw(image, m_tile->get());
    late::bit_blt(target, static_cast<int>(place.x), static_cast<int>(place.y), int{item_picture_size},
                  int{item_picture_size}, m_tile->get(), 0, 0, DWORD{SRCCOPY});
}

SharedViews& SharedViews::Get()
{
    static SharedViews shared;
    return shared;
}

} // namespace vh
