// The text that says which picture stands in a dialog's image control.
#include "../../dialogs/image_spec.h"

#include <gtest/gtest.h>

namespace {

using Triple = std::array<int, 3>;

TEST(ImageSpec, IsReadFieldByField)
{
    const struct {
        const wchar_t* text;
        const wchar_t* normal;
        const wchar_t* alternative;
        bool flag1, flag2;
        Triple color1, color2;
        int scale;
        bool resource_only, numeric;
    } cases[] = {
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
        {L"@!", L"!", L"", false, false, {}, {}, 100, false, false},
    };
    for (const auto& one : cases) {
        const vh::ImageSpec spec = vh::ParseImageSpec(one.text);
        EXPECT_EQ(spec.normal.view(), one.normal) << one.text;
        EXPECT_EQ(spec.alternative.view(), one.alternative) << one.text;
        EXPECT_EQ(spec.flag1, one.flag1) << one.text;
        EXPECT_EQ(spec.flag2, one.flag2) << one.text;
        EXPECT_EQ(spec.color1, one.color1) << one.text;
        EXPECT_EQ(spec.color2, one.color2) << one.text;
        EXPECT_EQ(spec.scale, one.scale) << one.text;
        EXPECT_EQ(spec.resource_only, one.resource_only) << one.text;
        EXPECT_EQ(spec.numeric(), one.numeric) << one.text;
    }
}

} // namespace
