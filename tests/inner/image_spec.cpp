// The text that says which picture stands in a dialog's image control.
#include "../../dialogs/image_spec.h"
#include "../support/test.h"

namespace {

using Triple = std::array<int, 3>;

TEST(ImageSpec, IsReadFieldByField)
{
    // Text; names, flags, colors, scale, and whether it is a resource's alone and a number.
    Table<const wchar_t*, const wchar_t*, const wchar_t*, bool, bool, Triple, Triple, int, bool, bool> cases = {
        {L"", L"", L"", false, false, {}, {}, 100, false, false},
        {L"a.bmp", L"a.bmp", L"", false, false, {}, {}, 100, false, false},
        {L"@a.bmp,b.bmp", L"a.bmp", L"b.bmp", false, false, {}, {}, 100, false, false},
        {L"10,20", L"10", L"20", false, false, {}, {}, 100, false, true},
        {L"0,20;1;1", L"", L"20", true, true, {}, {}, 100, false, true},
        {L"10,0;0;1x;1,2,3;4,5,6;150", L"10", L"", false, true, {1, 2, 3}, {6, 5, 4}, 150, false, true},
        {L"10", L"10", L"", false, false, {}, {}, 100, false, true},
        {L"x;;;1,2;4,5,6,7;0", L"x", L"", false, false, {}, {6, 5, 4}, 100, false, false},
        {L"x;11;10; 1,-2, 3;;twenty", L"x", L"", true, true, {1, -2, 3}, {}, 100, false, false},
        {L"@@c:\\p.png", L"c:\\p.png", L"c:\\p.png", false, false, {}, {}, 100, true, false},
        {L"@@10777;200;1", L"10777", L"10777", false, false, {}, {}, 200, true, true},
        {L"@@p;0", L"p", L"p", false, false, {}, {}, 100, true, false},
        {L"@!", L"!", L"", false, false, {}, {}, 100, false, false}};
    for (const auto& [text, normal, alternative, flag1, flag2, color1, color2, scale, resource_only, numeric] : cases) {
        SCOPED_TRACE(testing::PrintToString(text));
        const vh::ImageSpec spec = vh::ParseImageSpec(text);
        EXPECT_EQ(spec.normal.view(), normal);
        EXPECT_EQ(spec.alternative.view(), alternative);
        EXPECT_TRUE(spec.flag1 == flag1 && spec.flag2 == flag2);
        EXPECT_EQ(spec.color1, color1);
        EXPECT_EQ(spec.color2, color2);
        EXPECT_EQ(spec.scale, scale);
        EXPECT_TRUE(spec.resource_only == resource_only && spec.numeric() == numeric);
    }
}

} // namespace
