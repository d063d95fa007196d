// Sizes as the views show them, and the rules of picks and keys beside a plain model.
#include "../../views/view_rules.h"
#include "../../views/size_text.h"
#include "../support/test.h"

namespace {

TEST(SizeText, RoundsAndShowsWhatIsThere)
{
    constexpr uint64_t mega = 1048576;
    // Bytes, in units of 1024 whole and with a decimal place, in units of 1048576 the same.
    Table<uint64_t, const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*> cases = {
        {0, L"0", L"0.0", L"0", L"0.0"},
        {1, L"1", L"0.1", L"1", L"0.1"},
        {511, L"1", L"0.5", L"1", L"0.1"},
        {1024, L"1", L"1.0", L"1", L"0.1"},
        {1535, L"1", L"1.5", L"1", L"0.1"},
        {1536, L"2", L"1.5", L"1", L"0.1"},
        {1280, L"1", L"1.2", L"1", L"0.1"},
        {1792, L"2", L"1.8", L"1", L"0.1"},
        {2047, L"2", L"2.0", L"1", L"0.1"},
        {mega / 20, L"51", L"51.2", L"1", L"0.1"},
        {mega / 2, L"512", L"512.0", L"1", L"0.5"},
        {3 * mega / 2 - 1, L"1536", L"1536.0", L"1", L"1.5"},
        {3 * mega / 2, L"1536", L"1536.0", L"2", L"1.5"},
        {UINT64_MAX, L"18014398509481984", L"18014398509481984.0", L"17592186044416", L"17592186044416.0"}};
    for (const auto& [bytes, kilo, kilo_tenths, mega_whole, mega_tenths] : cases) {
        EXPECT_EQ(vh::size_text(bytes, {true, false}).view(), kilo) << bytes;
        EXPECT_EQ(vh::size_text(bytes, {true, true}).view(), kilo_tenths) << bytes;
        EXPECT_EQ(vh::size_text(bytes, {false, false}).view(), mega_whole) << bytes;
        EXPECT_EQ(vh::size_text(bytes, {false, true}).view(), mega_tenths) << bytes;
    }
}

TEST(ViewRules, FlipByPointOrWithoutOne)
{
    using vh::pick_point;
    for (const bool current : {false, true})
        for (const bool user : {false, true})
            for (const bool disabled : {false, true})
                for (const pick_point point : {pick_point::none, pick_point::check, pick_point::row}) {
                    const bool wanted =
                        user && !disabled && (point == pick_point::check || (point == pick_point::none && current));
                    const auto [moves, flips] = vh::DecidePick(current, user, disabled, point);
                    EXPECT_EQ(moves, !current);
                    EXPECT_EQ(flips, wanted) << current << user << disabled << static_cast<int>(point);
                }
}

// Row by row, as a person would scroll.
vh::list_place Stepped(vh::list_place place, vh::list_move move, int count, int visible)
{
    const int page = std::max(visible, 1);
    const auto scroll = [&](int rows) {
        for (; rows > 0 && place.first + page < count; --rows)
            ++place.first;
        for (; rows < 0 && place.first > 0; ++rows)
            --place.first;
    };
    const auto go = [&](int rows) {
        for (; rows > 0 && place.current + 1 < count; --rows)
            ++place.current;
        for (; rows < 0 && place.current > 0; ++rows)
            --place.current;
    };
    const bool pages = move == vh::list_move::page_up || move == vh::list_move::page_down;
    const bool back = move == vh::list_move::up || move == vh::list_move::page_up || move == vh::list_move::home;
    const bool ends = move == vh::list_move::home || move == vh::list_move::end;
    const int rows = (back ? -1 : 1) * (ends ? count : pages ? page : 1);
    go(rows);
    if (pages)
        scroll(rows);
    while (place.current < place.first)
        --place.first;
    while (place.current >= place.first + page)
        ++place.first;
    return place;
}

TEST(ViewRules, MoveAsStepsDo)
{
    std::mt19937 random(7);
    const auto below = [&random](int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); };
    for (int i = 0; i < 20000; ++i) {
        const int count = below(40), visible = below(12);
        const vh::list_place from{below(std::max(count, 1)), below(vh::LastFirst(count, std::max(visible, 1)) + 1)};
        const auto move = static_cast<vh::list_move>(below(6));
        EXPECT_EQ(vh::Moved(from, move, count, visible), Stepped(from, move, count, visible))
            << from.current << " " << from.first << " " << count << " " << visible << " " << static_cast<int>(move);
    }
}

} // namespace
