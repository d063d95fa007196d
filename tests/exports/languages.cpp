// Which languages a configuration file supports.
#include <gtest/gtest.h>

#include "../../exports/vhrt/language.h"
#include "../support/temp_folder.h"

namespace {

TEST(LanguageConfiguration, TellsWhatIsSupported)
{
    const struct {
        const char* list;
        int32_t language;
        int32_t supported;
    } cases[] = {
        {"0x0409,1041", 1033, 1},
        {"0x0409,1041", 1041, 1},
        {"0x0409,1041", 9, 1},
        {"0x0409,1041", 1031, 0},
        {"9", 9, 0},
        {"1033,", 1033, 1},
        {"1033 ", 1033, 1},
        {" 1033", 1033, 1},
        {"0X409", 1033, 0},
        {"66569", 1033, 1},
        {"", 1033, 0},
        {"1033,,1041", 1041, 1},
    };
    const vh::test::TempFolder folder;
    for (const auto& one : cases) {
        const auto path = folder.Write(L"l.ini", std::string("[languages]\nSUPPORTED=") + one.list);
        EXPECT_EQ(_IsLangSupported(one.language, path.c_str()), one.supported) << one.list << " " << one.language;
    }
    EXPECT_EQ(_IsLangSupported(1033, (folder / L"missing").c_str()), 0);
    EXPECT_EQ(_IsLangSupported(1033, nullptr), 0);
}

} // namespace
