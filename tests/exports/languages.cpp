// Which languages a configuration file supports, and where numbered texts come from.
#include "../support/bare_context.h"
#include "../support/session.h"

namespace {

TEST(LanguageConfiguration, TellsWhatIsSupported)
{
    Table<const char*, int32_t, int32_t> cases = {
        {"9", 9, 0},        {"0x0409,1041", 1033, 1}, {"1033,", 1033, 1}, {"0x0409,1041", 1041, 1},
        {"1033 ", 1033, 1}, {"0x0409,1041", 9, 1},    {" 1033", 1033, 1}, {"0x0409,1041", 1031, 0},
        {"0X409", 1033, 0}, {"1033,,1041", 1041, 1},  {"66569", 1033, 1}, {"1033", 0x10409, 1},
        {"", 1033, 0},      {"1033", 0x10009, 0},     {"9", 0x10009, 1}};
    const TempFolder folder;
    for (const auto& [list, language, supported] : cases) {
        const auto path = folder.Write(L"l.ini", std::string("[languages]\nSUPPORTED=") + list);
        EXPECT_EQ(_IsLangSupported(language, path.c_str()), supported) << list << " " << language;
    }
    EXPECT_EACH(0, _IsLangSupported(1033, (folder / L"missing").c_str()), _IsLangSupported(1033, nullptr));
}

// The text, its result and the unit behind the buffer's end, which is not the library's to write.
std::wstring LoadedText(ObjectContext* context, uint32_t id, int32_t size = 60)
{
    std::vector<wchar_t> buffer(static_cast<std::size_t>(size) + 1, L'~');
    const int32_t length = LangLoadString(context, id, buffer.data(), size);
    EXPECT_EQ(buffer.back(), L'~') << id;
    if (length == 0)
        return L"<0>";
    EXPECT_EQ(static_cast<std::size_t>(length), std::wcslen(buffer.data())) << id;
    return buffer.data();
}

TEST(NumberedText, IsTheUsersFirstAndTheStandardOneElse)
{
    const std::wstring none = L"<0>", no_library = L"no library.dll";
    // What the user's library holds, and the standard one.
    Table<uint32_t, std::wstring, std::wstring> cases = {{14003, L"User title", L"Standard title"},
                                                         {11626, none, L"Standard message"},
                                                         {20001, L"Only the user's", none},
                                                         {14002, none, L"The folder \"%s\" cannot be used."},
                                                         {14001, none, none},
                                                         {0, none, none},
                                                         {0x12345678, none, none}};
    for (const std::wstring& users : {UserTexts(), std::wstring(), no_library})
        for (const std::wstring& standards : {StandardTexts(), std::wstring()}) {
            const TextSession session(users, standards);
            for (const auto& [id, user, standard] : cases) {
                const std::wstring of_user = users == UserTexts() ? user : none;
                const std::wstring of_standard = standards.empty() ? none : standard;
                EXPECT_EQ(LoadedText(session, id), of_user != none ? of_user : of_standard) << id << users << standards;
            }
        }
}

TEST(NumberedText, IsCutToTheBufferAndMissingWithoutLibraries)
{
    const TextSession session(UserTexts(), StandardTexts());
    EXPECT_EQ(LoadedText(session, 14003, 11), L"User title");
    EXPECT_EQ(LoadedText(session, 14003, 10), L"User titl");
    EXPECT_EQ(LoadedText(session, 14003, 2), L"U");
    EXPECT_EQ(LangLoadString(session, 14003, nullptr, 60), 0);
    wchar_t untouched[] = L"untouched";
    EXPECT_GIVES_TEXT(LangLoadString(session, 14003, untouched, 0), 0, untouched, L"untouched");

    const TextSession without(L"", L"");
    EXPECT_EQ(LoadedText(without, 14003), L"<0>");
    EXPECT_EQ(LoadedText(BareContext(), 14003), L"<0>");
}

} // namespace
