// Versions and translations of files, and the copy that goes with them.
#include "../support/bare_context.h"
#include "../support/session.h"
#include "../support/traced_library.h"
#include "../support/version_file.h"

namespace {

constexpr wchar_t untouched[] = L"untouched";

// The text of a version, or "<code>"; a failure leaves the buffer alone.
std::wstring VersionOf(const std::wstring& path)
{
    wchar_t text[24];
    wcscpy_s(text, untouched);
    const int32_t code = VerGetFileVersion(path.c_str(), text);
    if (code == 0)
        return text;
    EXPECT_STREQ(text, untouched);
    return L"<" + std::to_wstring(code) + L">";
}

std::string Resource(const std::string& fixed, const std::vector<VersionBlock>& children = {}, int lie = 0)
{
    return VersionBlock{L"VS_VERSION_INFO", fixed, children, lie}.Bytes();
}

std::string Words(const std::vector<uint32_t>& words)
{
    return {reinterpret_cast<const char*>(words.data()), words.size() * sizeof(uint32_t)};
}

// The translations as a number list gets them, behind the result.
std::vector<int64_t> LanguagesOf(const std::wstring& path)
{
    const BareContext context;
    const ListHandle list = _ListCreate(context, ListTypeNumber);
    std::vector<int64_t> found{_VerGetFileLanguages(context, path.c_str(), list)};
    int32_t value = 0;
    for (int64_t code = _ListGetFirstItem(context, list, &value); code == 0;
         code = _ListGetNextItem(context, list, &value))
        found.push_back(static_cast<uint32_t>(value));
    return found;
}

TEST(FileVersion, IsFourNumbersFromHighToLow)
{
    const TempFolder folder;
    const auto made = [&](uint32_t high, uint32_t low) {
        return VersionOf(folder.Write(L"v.dll", ImageWithVersion(Resource(FixedPart(high, low)))));
    };
    EXPECT_EQ(made(0x00060001, 7601u << 16 | 17514), L"6.1.7601.17514");
    EXPECT_EQ(made(0, 0), L"0.0.0.0");
    EXPECT_EQ(made(0xFFFFFFFF, 0xFFFFFFFF), L"65535.65535.65535.65535");
}

TEST(FileVersion, ThatCannotBeReadHasACodeForEachReason)
{
    const TempFolder folder;
    for (const std::wstring& missing : {folder / L"missing.dll", std::wstring(), std::wstring(L"C:\\no|such?name")})
        EXPECT_EQ(VersionOf(missing), L"<-2>") << missing;
    EXPECT_EQ(VersionOf(folder.path().wstring()), L"<-8>") << "a directory exists";
    // No image, an empty and a cut one; no resource, none with a fixed part, a short fixed part.
    for (const std::string& unsound :
         {std::string("no image"), std::string(), ImageWithVersion(Resource(FixedPart(1, 1))).substr(0, 0x180),
          ImageWithVersion(""), ImageWithVersion(Resource("")),
          ImageWithVersion(Resource(FixedPart(1, 1).substr(0, 48)))})
        EXPECT_EQ(VersionOf(folder.Write(L"unsound.dll", unsound)), L"<-8>") << unsound.size();
    EXPECT_EQ(VerGetFileVersion(nullptr, nullptr), -2);
}

TEST(FileLanguages, AreTheTranslationWordsInTheirOrder)
{
    const TempFolder folder;
    const auto made = [&](const std::vector<VersionBlock>& children) {
        return LanguagesOf(folder.Write(L"l.dll", ImageWithVersion(Resource(FixedPart(1, 2), children))));
    };
    using Numbers = std::vector<int64_t>;
    EXPECT_EQ(made({Translations(Words({0x04B00409, 0x04E40407}))}), Numbers({0, 0x04B00409, 0x04E40407}));
    EXPECT_EQ(made({{L"StringFileInfo", "", {{L"040904B0", "", {}}}}, Translations(Words({0xFFFFFFFF}))}),
              Numbers({0, 0xFFFFFFFF}));
    EXPECT_EQ(made({}), Numbers({0})) << "no translations";
    EXPECT_EQ(made({Translations("")}), Numbers({0}));
    // Bytes that make no whole word are not looked at.
    EXPECT_EQ(made({Translations(Words({0x04B00409}) + "xyz")}), Numbers({0, 0x04B00409}));
    EXPECT_EQ(made({Translations("xyz")}), Numbers({0}));
    EXPECT_EQ(LanguagesOf(folder / L"missing.dll"), Numbers({-2}));
    EXPECT_EQ(LanguagesOf(folder.path().wstring()), Numbers({-8}));
}

TEST(FileLanguages, EndWithTheListsFailure)
{
    const TempFolder folder;
    const auto two = folder.Write(
        L"two.dll", ImageWithVersion(Resource(FixedPart(1, 2), {Translations(Words({0x04B00409, 0x04B00407}))})));
    const auto none = folder.Write(L"none.dll", ImageWithVersion(Resource(FixedPart(1, 2))));
    const BareContext context;
    const ListHandle texts = _ListCreate(context, ListTypeString);
    EXPECT_EQ(_VerGetFileLanguages(context, two.c_str(), texts), -500);
    EXPECT_EQ(_VerGetFileLanguages(context, two.c_str(), 77), -501);
    EXPECT_EQ(_VerGetFileLanguages(context, none.c_str(), 77), 0) << "nothing to add, so no list is needed";
    EXPECT_EQ(_VerGetFileLanguages(nullptr, two.c_str(), texts), -1);
}

TEST(DamagedVersions, AreReadInsideTheirBlockOnly)
{
    const TempFolder folder;
    // Lengths that promise more than there is.
    const auto lying = folder.Write(
        L"lying.dll", ImageWithVersion(Resource(FixedPart(1, 2), {Translations(Words({0x04B00409}), 0x7FF0)})));
    const std::vector<int64_t> found = LanguagesOf(lying);
    EXPECT_EQ(found.front(), 0);
    EXPECT_LT(found.size(), 200u) << "no more words than the block has";

    // Each byte of a sound resource in turn set to extreme values: any answer, but no crash.
    const std::string sound = Resource(FixedPart(1, 2), {Translations(Words({0x04B00409, 0x04B00407}))});
    const std::string image = ImageWithVersion(sound);
    const std::size_t start = image.find(sound);
    ASSERT_NE(start, image.npos);
    int answers = 0;
    for (std::size_t at = 0; at < sound.size(); ++at) {
        for (const char value : {'\x00', '\x7F', '\xFF'}) {
            std::string damaged = image;
            damaged[start + at] = value;
            const auto path = folder.Write(L"damaged.dll", damaged);
            wchar_t text[24] = L"";
            const int32_t code = VerGetFileVersion(path.c_str(), text);
            EXPECT_TRUE(code == 0 || code == -8) << at << ": " << code;
            EXPECT_EQ(LanguagesOf(path).front(), code) << at;
            ++answers;
        }
    }
    EXPECT_EQ(answers, static_cast<int>(3 * sound.size()));
}

TEST(VersionUpdate, CopiesAndGivesTheTargetOnSuccessOnly)
{
    Session session;
    const TempFolder folder;
    const std::wstring source = folder.Write(L"source.dll", "new"), target = folder / L"target.dll";
    wchar_t buffer[MAX_PATH] = L"";
    EXPECT_GIVES(_VerUpdateFile(session, source.c_str(), target.c_str(), 0, buffer), 0, buffer, target);
    EXPECT_TRUE(std::filesystem::exists(target));

    wcscpy_s(buffer, untouched);
    const int32_t failed = _VerUpdateFile(session, (folder / L"missing.dll").c_str(), target.c_str(), 0, buffer);
    EXPECT_EQ(failed, _FileCopy(session, (folder / L"missing.dll").c_str(), target.c_str(), 0));
    EXPECT_NE(failed, 0);
    EXPECT_STREQ(buffer, untouched);
    EXPECT_GIVES_TEXT(_VerUpdateFile(nullptr, source.c_str(), target.c_str(), 0, buffer), -1, buffer, untouched);
}

TEST(VersionTrace, TellsFileAndVersionAtBothEnds)
{
    const TempFolder folder;
    const std::wstring sound = folder.Write(
        L"sound.dll", ImageWithVersion(Resource(FixedPart(0x10002, 0x30004), {Translations(Words({0x04B00409}))})));
    const std::wstring missing = folder / L"missing.dll";
    const std::string text = TracedCalls(nullptr, nullptr, [&](auto& library, ObjectContext* context) {
        const ListHandle texts = VHRT_GET(library, _ListCreate)(context, ListTypeString);
        const ListHandle numbers = VHRT_GET(library, _ListCreate)(context, ListTypeNumber);
        const auto languages = VHRT_GET(library, _VerGetFileLanguages);
        wchar_t buffer[24] = L"before";
        VHRT_GET(library, VerGetFileVersion)(sound.c_str(), buffer);
        VHRT_GET(library, VerGetFileVersion)(missing.c_str(), buffer);
        languages(context, sound.c_str(), numbers);
        languages(context, sound.c_str(), texts);
        languages(context, folder.path().c_str(), numbers);
        languages(nullptr, sound.c_str(), numbers);
    });
    const std::string good = "FileName=" + std::filesystem::path(sound).string();
    const std::string gone = "FileName=" + std::filesystem::path(missing).string();
    const std::string place = "FileName=" + folder.path().string();
    EXPECT_EQ(text, Record("VerGetFileVersion", good + "\tFileVersion=before") +
                        "VHFuncEnd|VerGetFileVersion|Result=Success\t" + good + "\tFileVersion=1.2.3.4\r\n" +
                        Record("VerGetFileVersion", gone + "\tFileVersion=1.2.3.4") +
                        "VHFuncEnd|VerGetFileVersion|Result=Failure\t\tError=0xfffffffe\t" + gone + "\r\n" +
                        Record("VerGetFileLanguages", good, "Success\t") +
                        Record("VerGetFileLanguages", good, "Failure\t\tError=0xfffffe0c\t") +
                        Record("VerGetFileLanguages", place, "Failure\t\tError=0xfffffff8\t") +
                        // Without a context there is no end record.
                        Record("VerGetFileLanguages", good));
}

} // namespace
