// Which paths of pending operations are the same.
#include "../../system/pending_path.h"
#include "../support/test.h"

namespace {

TEST(PendingPath, LosesItsSteps)
{
    // A root has nothing above it, or two drives would be one; names may begin with dots.
    Table<const char*, const char*> cases = {
        {"C:\\a\\b", "C:\\a\\b"},     {"a\\..\\b", "\\b"},   {"", ""},
        {"C:\\a\\..\\b", "C:\\b"},    {"a\\b\\..", "a"},     {"C:\\a\\.\\b\\.", "C:\\a\\b"},
        {"C:\\a\\.\\..\\b", "C:\\b"}, {"\\..\\..", ""},      {"C:\\a\\b\\..\\..\\c", "C:\\c"},
        {"C:\\..\\b", "C:\\b"},       {"C:\\a\\...", "C:."}, {"\\\\server\\share\\..\\..\\b", "\\\\server\\share\\b"},
        {"C:\\a\\.b", "C:\\ab"},      {"..\\a", "..\\a"}};
    for (const auto& [path, plain] : cases) {
        const std::string narrow(path);
        const std::u16string wide(narrow.begin(), narrow.end());
        EXPECT_EQ(vh::PlainPath(std::string_view(narrow)), plain) << path;
        EXPECT_EQ(vh::PlainPath(std::u16string_view(wide)), std::u16string(plain, plain + std::strlen(plain))) << path;
    }
}

} // namespace
