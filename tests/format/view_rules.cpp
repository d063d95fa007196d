// Sizes as the views show them, and the rules of picks and keys beside a plain model.
#include "../../views/view_rules.h"
#include "../../views/size_text.h"
#include "../support/test.h"

namespace {

TEST(SizeText, RoundsAndShowsWhatIsThere)
{
    // Bytes, in units of 1024 whole and with a decimal place, in units of 1048576 the same.
    std::istringstream rows(R"(0 0 0.0 0 0.0 1 1 0.1 1 0.1 511 1 0.5 1 0.1 1024 1 1.0 1 0.1 1535 1 1.5 1 0.1
        1536 2 1.5 1 0.1 1280 1 1.2 1 0.1 1792 2 1.8 1 0.1 2047 2 2.0 1 0.1 52428 51 51.2 1 0.1
        524288 512 512.0 1 0.5 1572863 1536 1536.0 1 1.5 1572864 1536 1536.0 2 1.5
        18446744073709551615 18014398509481984 18014398509481984.0 17592186044416 17592186044416.0)");
    std::string wanted;
    for (uint64_t bytes = 0; rows >> bytes;)
        for (const auto& [kilo, place] : {std::pair(true, false), {true, true}, {false, false}, {false, true}}) {
            rows >> wanted;
            EXPECT_EQ(size_text(bytes, {kilo, place}).view(), std::wstring(wanted.begin(), wanted.end())) << bytes;
        }
    EXPECT_EQ(wanted, "17592186044416.0");
}

TEST(ViewRules, FlipByPointOrWithoutOne)
{
    for (const bool current : {false, true})
        for (const bool user : {false, true})
            for (const bool disabled : {false, true})
                for (const pick_point point : {pick_point::none, pick_point::check, pick_point::row}) {
                    const bool wanted =
                        user && !disabled && (point == pick_point::check || (point == pick_point::none && current));
                    const auto [moves, flips] = DecidePick(current, user, disabled, point);
                    EXPECT_EQ(moves, !current);
                    EXPECT_EQ(flips, wanted) << current << user << disabled << static_cast<int>(point);
                }
}

// Row by row, as a person would scroll.
list_place Stepped(list_place place, list_move move, int count, int visible)
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
    const bool pages = move == list_move::page_up || move == list_move::page_down;
    const bool back = move == list_move::up || move == list_move::page_up || move == list_move::home;
    const bool ends = move == list_move::home || move == list_move::end;
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
        const list_place from{below(std::max(count, 1)), below(LastFirst(count, std::max(visible, 1)) + 1)};
        const auto move = static_cast<list_move>(below(6));
        EXPECT_EQ(Moved(from, move, count, visible), Stepped(from, move, count, visible))
            << from.current << " " << from.first << " " << count << " " << visible << " " << static_cast<int>(move);
    }
}

} // namespace
