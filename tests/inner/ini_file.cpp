// INI documents: what is read, kept, changed and written back.
#include <clocale>
#include <cwctype>

#include "../../files/ini_file.h"
#include "../support/test.h"

namespace {

std::wstring Joined(const inifilex::names& names)
{
    std::wstring all;
    for (const stringx& name : names)
        all += (all.empty() ? L"" : L"|") + std::wstring(name.view());
    return all;
}

std::wstring Sections(const inifilex& document)
{
    inifilex::names names;
    document.get_section_names(names);
    return Joined(names);
}

std::wstring Keys(const inifilex& document, std::wstring_view section)
{
    inifilex::names names;
    document.get_entry_names(section, names);
    return Joined(names);
}

struct Loaded {
    explicit Loaded(std::string_view bytes, std::wstring_view separator = L"=", bool keep_bare_keys = false)
        : path(folder.Write(L"t.ini", bytes))
    {
        read = document.load(path, separator, keep_bare_keys);
    }
    std::string Saved(uint32_t flags = 0, uint32_t code_page = 0, bool mark = false)
    {
        EXPECT_TRUE(document.save(flags, code_page, mark)) << document.get_last_error();
        return BytesOf(path);
    }

    TempFolder folder;
    std::wstring path;
    inifilex document;
    bool read;
};

TEST(IniFile, ComesBackAsItsRulesSay)
{
    Table<const char*, const wchar_t*, bool, const char*> cases = {
        {"[a]\nx=1\n[A]\ny=2\n[b]\n", L"=", false, "[a]\r\nx=1\r\ny=2\r\n\r\n[b]\r\n"},
        {"[s]\nk=1\n;note\n\nK=2", L"=", false, "[s]\r\nk=1\r\n"},
        {"[s]\nflag\nk=v", L"=", true, "[s]\r\nflag\r\nk=v\r\n"},
        {"[s]\nflag\nk=v", L"=", false, "[s]\r\nflag=\r\nk=v\r\n"},
        // Only one unit of a longer separator is stepped over, so the rest doubles.
        {"[s]\nk::v", L"::", false, "[s]\r\nk:::v\r\n"},
        {"", L"=", false, ""}};
    for (const auto& [given, separator, keep_bare_keys, saved] : cases) {
        Loaded file(given, separator, keep_bare_keys);
        EXPECT_TRUE(file.read);
        EXPECT_FALSE(file.document.is_dirty());
        EXPECT_EQ(file.Saved(), saved) << given;
    }
}

TEST(IniFile, KeepsItsEncoding)
{
    using namespace std::string_literals;
    Table<std::string, bool> cases = {{"\xEF\xBB\xBF[\xC3\xA4]\r\nk=\xE2\x82\xAC\r\n"s, true},
                                      {"\xFF\xFE[\0a\0]\0\r\0\n\0k\0=\0\xAC\x20\r\0\n\0"s, true},
                                      {"\xFE\xFF\0[\0a\0]\0\r\0\n\0k\0=\x20\xAC\0\r\0\n"s, true},
                                      {"[a]\r\nk=v\r\n"s, false}};
    for (const auto& [bytes, marked] : cases) {
        Loaded file(bytes);
        EXPECT_TRUE(file.read);
        EXPECT_EQ(Keys(file.document, file.document.key_at(0)), L"k");
        EXPECT_EQ(file.Saved(), bytes);
        EXPECT_EQ(file.Saved(inifile_set_encoding, 65001, false).substr(0, 1), "[");
    }
    // A code page that was set reads what has no mark, but not what has one.
    TempFolder folder;
    inifilex document;
    document.set_code_page(1252);
    ASSERT_TRUE(document.load(folder.Write(L"a.ini", "[s]\nk=\x80"), L"=", false));
    EXPECT_EQ(document.get_string(L"s", L"k", L"").view(), L"\u20AC");
    ASSERT_TRUE(document.load(folder.Write(L"b.ini", "\xEF\xBB\xBF[s]\nk=\xE2\x82\xAC"), L"=", false));
    EXPECT_EQ(document.get_string(L"s", L"k", L"").view(), L"\u20AC");
}

TEST(IniFile, EndsItsLoadAtABadLine)
{
    Loaded file("[a]\nx=1\n[b\ny=2");
    EXPECT_FALSE(file.read);
    EXPECT_EQ(file.document.get_last_error(), ERROR_INVALID_DATA + 0u);
    EXPECT_EQ(Sections(file.document), L"a");
    EXPECT_FALSE(file.document.load(file.folder / L"missing", L"=", false));
    EXPECT_EQ(file.document.get_last_error(), ERROR_FILE_NOT_FOUND + 0u);
    EXPECT_TRUE(file.document.empty());
}

TEST(IniFile, ReadsNumbersAndTruths)
{
    Loaded file("[s]\na=0x1F\nb=0X1F\nc=12x\nd= -7\ne=\nf=x\ng=0xFFFFFFFF\ny1=yes\ny2=Y\ny3=TRUE\ny4=1\nn=no way");
    const inifilex& document = file.document;
    Table<const wchar_t*, int32_t> numbers = {{L"a", 31}, {L"b", 0}, {L"c", 12}, {L"d", -7},
                                              {L"e", 99}, {L"f", 0}, {L"g", -1}, {L"none", 99}};
    for (const auto& [key, number] : numbers)
        EXPECT_EQ(document.get_number(L"S", key, 99), number) << key;
    for (const wchar_t* key : {L"y1", L"y2", L"y3", L"y4"})
        EXPECT_TRUE(document.get_boolean(L"s", key, false)) << key;
    EXPECT_FALSE(document.get_boolean(L"s", L"n", true));
    EXPECT_TRUE(document.get_boolean(L"s", L"e", true) && document.get_boolean(L"none", L"e", true));
    EXPECT_EQ(document.get_string(L"s", L"e", L"fallback").view(), L"");
    EXPECT_EQ(Sections(document), L"s") << "asking makes nothing";
}

TEST(IniFile, GivesNumberedValues)
{
    Table<const char*, const wchar_t*, const wchar_t*> cases = {{"[s]\nk1=a\nk2=b\nk4=c", L"k%d", L"a|b"},
                                                                {"[s]\nk0=a\nk2=b", L"k%d", L"a"},
                                                                {"[s]\nk2=b", L"k%d", L""},
                                                                {"[s]\nk0=a\nk1=b\nk2=c", L"k%d", L"a|b|c"},
                                                                {"[t]\nk0=a", L"k%d", L""}};
    for (const auto& [text, format, wanted_values] : cases) {
        Loaded file(text);
        inifilex::names values;
        file.document.get_numbered_values(L"s", values, format);
        EXPECT_EQ(Joined(values), wanted_values) << text;
    }
    Loaded same("[s]\nk=a\nl=b");
    inifilex::names values;
    same.document.get_numbered_values(L"s", values, L"k");
    EXPECT_LE(values.size(), 3u) << "a format without a number must end";
}

// Sections and their keys, as "s:a,b|t:".
std::wstring Shape(const inifilex& document)
{
    std::wstring shape;
    for (const auto& [name, section] : document) {
        shape += (shape.empty() ? L"" : L"|") + std::wstring(name.view()) + L":";
        for (const auto& [key, entry] : section)
            shape += (shape.ends_with(L":") ? L"" : L",") + std::wstring(key.view());
    }
    return shape;
}

TEST(IniFile, RenamesMovesRemovesAndSorts)
{
    Loaded file("[p1]\nc=1\nB=2\na=3\n[q]\n[P2]\n[r1]");
    inifilex& document = file.document;
    const std::wstring start = L"p1:c,B,a|q:|P2:|r1:";
    Table<std::function<bool(inifilex&)>, bool, bool, std::wstring> steps = {
        {[](auto& d) { return d.rename_section(L"nowhere", L"nowhere"); }, true, false, start},
        {[](auto& d) { return d.rename_section(L"q", L"R1"); }, false, false, start},
        // Names are equal without regard to case.
        {[](auto& d) { return d.rename_section(L"q", L"Q"); }, true, false, start},
        {[](auto& d) { return d.rename_section(L"z", L"new"); }, false, false, start},
        {[](auto& d) { return d.rename_section(L"q", L"s"); }, true, true, L"p1:c,B,a|s:|P2:|r1:"},
        {[](auto& d) { return d.rename_section(L"S", L"q"); }, true, true, start},
        {[](auto& d) { return d.move_entry(L"p1", L"c", L"zz"); }, false, true, start},
        {[](auto& d) { return d.move_entry(L"p1", L"C", L"b"); }, true, true, L"p1:B,c,a|q:|P2:|r1:"},
        {[](auto& d) { return d.move_entry(L"p1", L"a", L"b"); }, true, true, L"p1:B,a,c|q:|P2:|r1:"},
        {[](auto& d) { return d.rename_entry(L"p1", L"b", L"zeta"); }, true, true, L"p1:zeta,a,c|q:|P2:|r1:"},
        {[](auto& d) { return d.rename_entry(L"p1", L"a", L"C"); }, false, false, L"p1:zeta,a,c|q:|P2:|r1:"},
        {[](auto& d) { return d.sort_entries_of(L"p1"), true; }, true, false, L"p1:a,c,zeta|q:|P2:|r1:"},
        // "p1" gives way to the "r1" that is there.
        {[](auto& d) { return d.rename_sections(L"p", L"r"), true; }, true, true, L"p1:a,c,zeta|q:|r2:|r1:"},
        {[](auto& d) { return d.sort_sections(), true; }, true, false, L"p1:a,c,zeta|q:|r1:|r2:"},
        {[](auto& d) { return d.remove_sections(L"R"), true; }, true, true, L"p1:a,c,zeta|q:"},
        {[](auto& d) { return d.has_section(L"Q"); }, true, false, L"p1:a,c,zeta|q:"},
        {[](auto& d) { return d.remove_entry(L"p1", L"C"); }, true, true, L"p1:a,zeta|q:"},
        {[](auto& d) { return d.clear_section(L"p1"); }, true, true, L"p1:|q:"},
        {[](auto& d) { return d.remove_entry(L"p1", L"a"); }, false, false, L"p1:|q:"},
        {[](auto& d) { return d.remove_section(L"p1"); }, true, true, L"q:"},
        {[](auto& d) { return d.remove_section(L"p1"); }, false, false, L"q:"},
        {[](auto& d) { return d.clear(), true; }, true, false, L""}};
    int at = 0;
    for (const auto& [work, result, dirty, shape] : steps) {
        SCOPED_TRACE(at++);
        document.set_dirty(false);
        EXPECT_EQ(work(document), result);
        EXPECT_EQ(document.is_dirty(), dirty);
        EXPECT_EQ(Shape(document), shape);
        if (shape.starts_with(L"p1:a,c,zeta")) {
            EXPECT_EQ(document.get_string(L"p1", L"A", L"").view(), L"3");
            EXPECT_EQ(document.get_string(L"p1", L"zeta", L"").view(), L"2");
        }
        inifilex::names found;
        EXPECT_EQ(document.find_sections(found, L"R"), static_cast<std::size_t>(std::ranges::count(shape, L'r')));
    }
}

TEST(IniFile, TakesSectionsOfOthers)
{
    Loaded first("[s]\nk=old\n");
    Loaded second("[s]\nk=new\nl=more\n[t]\nx=1");
    first.document.merge_file(second.document, L"my", L"%s.%s");
    EXPECT_EQ(Sections(first.document), L"s|my.s|my.t");
    first.document.set_section(L"S", *second.document.find(L"s"));
    EXPECT_EQ(first.Saved(), "[s]\r\nk=new\r\nl=more\r\n\r\n[my.s]\r\nk=new\r\nl=more\r\n\r\n[my.t]\r\nx=1\r\n");
    first.document.set_number(L"n", L"v", -5);
    first.document.set_boolean(L"n", L"b", true);
    EXPECT_EQ(first.document.get_string(L"n", L"v", L"").view(), L"-5");
    EXPECT_EQ(first.document.get_string(L"n", L"b", L"").view(), L"Yes");
}

TEST(IniFile, FindsEachNameAfterAnyChange)
{
    // A plain list with the same operations is the measure.
    std::mt19937 random(29);
    vh::vector_map_i<int, stringxi> map;
    std::vector<std::pair<std::wstring, int>> plain;
    const auto place = [&](const std::wstring& key) {
        return std::ranges::find(plain, key, &std::pair<std::wstring, int>::first);
    };
    for (int round = 0; round < 20000; ++round) {
        const std::wstring key = L"Key" + std::to_wstring(random() % 60),
                           other = L"Key" + std::to_wstring(random() % 60);
        std::wstring asked = key;
        if (random() % 2)
            asked[0] = L'k';
        const auto here = place(key);
        switch (random() % 6) {
        case 0:
        case 1:
            map.insert(asked, round);
            if (here == plain.end())
                plain.emplace_back(key, round);
            break;
        case 2:
            if (here != plain.end()) {
                map.erase_at(map.position_of(asked));
                plain.erase(here);
            }
            break;
        case 3:
            if (here != plain.end() && place(other) == plain.end()) {
                map.rename_at(map.position_of(asked), other);
                here->first = other;
            }
            break;
        case 4:
            if (round % 50 == 0) {
                map.sort();
                std::ranges::sort(plain);
            }
            break;
        default:
            if (plain.size() > 1) {
                const std::size_t from = random() % plain.size(), behind = (from + 1) % plain.size();
                map.move_behind(static_cast<uint32_t>(from), static_cast<uint32_t>(behind));
                const auto moved = plain[from];
                const std::wstring target = plain[behind].first;
                plain.erase(plain.begin() + static_cast<std::ptrdiff_t>(from));
                plain.insert(place(target) + 1, moved);
            }
            break;
        }
        if (round % 97 == 0) {
            const wchar_t digit = static_cast<wchar_t>(L'0' + random() % 10);
            const auto goes = [&](const auto& name) { return std::wstring_view(name).back() == digit; };
            ASSERT_EQ(map.erase_if(goes), std::erase_if(plain, [&](const auto& one) { return goes(one.first); }));
        }
        ASSERT_EQ(map.size(), plain.size());
        for (uint32_t i = 0; i < map.size(); ++i) {
            ASSERT_EQ(map.position_of(plain[i].first), i) << round;
            ASSERT_EQ(map.at(i), plain[i].second) << round;
        }
    }
}

TEST(IniFile, ComparesAndHashesNamesAlikeUnderEveryLocale)
{
    for (const char* locale : {"C", "german", "turkish", "greek", "japanese"}) {
        ASSERT_TRUE(std::setlocale(LC_ALL, locale)) << locale;
        int folded = 0;
        for (unsigned unit = 1; unit <= 0xFFFF; ++unit) {
            // In front of units of both kinds, as these are folded differently.
            const wchar_t name[] = {static_cast<wchar_t>(unit), L'a', L'\u00E4', 0};
            for (const wint_t other : {std::towlower(name[0]), std::towupper(name[0])}) {
                const wchar_t same[] = {static_cast<wchar_t>(other), L'A', L'\u00E4', 0};
                const bool equal = stringxi(name) == stringxi(same);
                ASSERT_EQ(vh::SameName(name, same), equal) << locale << ": " << unit << " and " << other;
                if (!equal)
                    continue;
                folded += other != name[0];
                ASSERT_EQ(vh::map_i::hash(name), vh::map_i::hash(same)) << locale << ": " << unit << " and " << other;
            }
        }
        EXPECT_GE(folded, 52) << locale;
    }
    std::setlocale(LC_ALL, "C");
    const std::wstring long_name(200, L'\u00C4');
    vh::vector_map_i<int, stringxi> map;
    map.insert(long_name + L"x", 1);
    map.insert(long_name + L"y", 2);
    EXPECT_EQ(map.position_of(long_name + L"Y"), 1u);
}

TEST(IniFile, SavesAsTheFlagsSay)
{
    Loaded file("[b]\ny=1\nx=2\n[a]\n");
    EXPECT_EQ(file.Saved(inifile_sort), "[a]\r\n\r\n[b]\r\ny=1\r\nx=2\r\n");
    inifilex empty;
    EXPECT_TRUE(empty.save_as(file.path, inifile_skip_empty, 0, false));
    EXPECT_FALSE(BytesOf(file.path).empty());
    EXPECT_TRUE(empty.save_as(file.path, 0, 0, false) && BytesOf(file.path).empty());
    EXPECT_FALSE(empty.save_as(L"", 0, 0, false));
    const std::wstring deep = file.folder / L"one\\two/three.ini";
    EXPECT_TRUE(file.document.save_as(deep, 0, 0, false));
    EXPECT_FALSE(BytesOf(deep).empty());
    EXPECT_EQ(file.document.get_path().view(), deep);
}

// A disk that takes no more than so many bytes.
DWORD disk_room;

BOOL WINAPI WriteToFullDisk(HANDLE, const void*, DWORD count, DWORD* written, OVERLAPPED*)
{
    *written = std::min(count, disk_room);
    disk_room -= *written;
    if (*written == count)
        return TRUE;
    SetLastError(ERROR_DISK_FULL);
    return FALSE;
}

int writes;

BOOL WINAPI CutThirdWrite(HANDLE file, const void* bytes, DWORD count, DWORD* written, OVERLAPPED* overlapped)
{
    const bool cut = ++writes == 3;
    const auto write = OfSystem<decltype(WriteFile)>("WriteFile");
    const BOOL done = write(file, bytes, cut ? count / 2 : count, written, overlapped);
    SetLastError(ERROR_DISK_FULL);
    return done && !cut;
}

TEST(IniFile, LeavesTheOldFileWhenASaveFails)
{
    struct obstacle {
        vh::unique_file handle;
        std::optional<Patched> patch;
    };
    const auto full_disk = [](DWORD room) {
        return [room](const std::wstring&, obstacle& way) {
            disk_room = room;
            way.patch.emplace("WriteFile", WriteToFullDisk);
        };
    };
    Table<const char*, std::function<void(const std::wstring&, obstacle&)>, uint32_t, DWORD> cases = {
        {"another has it open",
         [](const std::wstring& path, obstacle& way) {
             way.handle.reset(
                 CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
         },
         0, 0},
        {"it is read-only",
         [](const std::wstring& path, obstacle&) { SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY); }, 0,
         ERROR_ACCESS_DENIED},
        {"the disk is full from the start", full_disk(0), 0, ERROR_DISK_FULL},
        {"the disk is full behind a mark", full_disk(5), inifile_set_encoding, ERROR_DISK_FULL}};
    for (const auto& [what, put, flags, error] : cases) {
        Loaded file("[a]\nx=1\n");
        const std::string old = BytesOf(file.path);
        file.document.set_string(L"a", L"x", L"2");
        {
            obstacle way;
            put(file.path, way);
            EXPECT_FALSE(file.document.save(flags, CP_UTF8, true)) << what;
        }
        const DWORD told = file.document.get_last_error();
        EXPECT_TRUE(error ? told == error : told != 0) << what << told;
        EXPECT_EQ(file.document.get_error_path().view(), file.path) << what;
        EXPECT_TRUE(file.document.is_dirty()) << what;
        EXPECT_EQ(BytesOf(file.path), old) << what;
        EXPECT_EQ(file.folder.Entries(), 1) << what << ": the half-made file stays";
        SetFileAttributesW(file.path.c_str(), FILE_ATTRIBUTE_NORMAL);
        EXPECT_FALSE(file.document.save(inifile_set_encoding, 54321, false)) << "no such code page";
        EXPECT_EQ(BytesOf(file.path), old);
        EXPECT_TRUE(file.document.save(inifile_set_encoding, 0, false)) << what;
        EXPECT_EQ(BytesOf(file.path), "[a]\r\nx=2\r\n");
        EXPECT_EQ(file.document.get_last_error(), 0u);
    }
}

std::wstring closed_folder;

HANDLE WINAPI CreateOutside(LPCWSTR name, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security, DWORD disposition,
                            DWORD flags, HANDLE pattern)
{
    if (disposition != CREATE_NEW || closed_folder.empty() || !std::wstring_view(name).starts_with(closed_folder))
        return OfSystem<decltype(CreateFileW)>("CreateFileW")(name, access, share, security, disposition, flags,
                                                              pattern);
    SetLastError(ERROR_ACCESS_DENIED);
    return INVALID_HANDLE_VALUE;
}

// What others see of the file stays: its attributes, its other names, and the file that they have open.
TEST(IniFile, SavesIntoTheFileThatOthersKnow)
{
    using Prepare = std::function<vh::unique_file(const std::wstring&, const std::wstring&)>;
    Table<const char*, DWORD, Prepare> cases = {
        {"hidden", FILE_ATTRIBUTE_HIDDEN, [](auto&, auto&) { return vh::unique_file(); }},
        {"two names", 0,
         [](auto& path, auto& other) {
             EXPECT_TRUE(CreateHardLinkW(other.c_str(), path.c_str(), nullptr));
             return vh::unique_file();
         }},
        {"a reader that shares no deletion", 0,
         [](auto& path, auto&) {
             constexpr DWORD shared = FILE_SHARE_READ | FILE_SHARE_WRITE;
             return vh::unique_file(
                 CreateFileW(path.c_str(), GENERIC_READ, shared, nullptr, OPEN_EXISTING, 0, nullptr));
         }},
        {"a folder that takes no new file", FILE_ATTRIBUTE_HIDDEN, [](auto& path, auto&) {
             closed_folder = path.substr(0, path.rfind(L'\\'));
             return vh::unique_file();
         }}};
    const Patched outside("CreateFileW", CreateOutside);
    for (const auto& [what, attributes, prepare] : cases) {
        SCOPED_TRACE(what);
        closed_folder.clear();
        Loaded file("[a]\nx=1\nlong=a value that goes\n");
        SetFileAttributesW(file.path.c_str(), attributes ? attributes : DWORD{FILE_ATTRIBUTE_NORMAL});
        const std::wstring other = file.folder / L"other.ini";
        const vh::unique_file reader = prepare(file.path, other);
        const auto names = file.folder.Entries();
        file.document.remove_entry(L"a", L"long");
        EXPECT_EQ(file.Saved(), "[a]\r\nx=1\r\n");
        EXPECT_EQ(GetFileAttributesW(file.path.c_str()) & FILE_ATTRIBUTE_HIDDEN, attributes);
        EXPECT_EQ(file.folder.Entries(), names) << "nothing else stays";
        EXPECT_TRUE(!std::filesystem::exists(other) || BytesOf(other) == BytesOf(file.path));
        char start[4] = "";
        DWORD count = 0;
        EXPECT_TRUE(!reader || ReadFile(reader.get(), start, 3, &count, nullptr));
        EXPECT_STREQ(start, reader ? "[a]" : "");
        // The third write is the one into the file itself: it changes half of it, and the content comes back.
        if (attributes == 0) {
            const std::string before = BytesOf(file.path);
            file.document.set_string(L"a", L"more", std::wstring(100, L'm'));
            const Patched cut("WriteFile", CutThirdWrite);
            writes = 0;
            EXPECT_FALSE(file.document.save(0, 0, false));
            EXPECT_EQ(writes, 4);
            EXPECT_EQ(BytesOf(file.path), before);
            EXPECT_EQ(file.folder.Entries(), names);
        }
    }
}

// An exchange that fails when the old file has gone already.
TEST(IniFile, KeepsTheNewContentWhenTheOldIsLost)
{
    const Patched replace(
        "ReplaceFileW",
        +[](LPCWSTR old, LPCWSTR, LPCWSTR, DWORD, void*, void*) WINAPI -> BOOL { return DeleteFileW(old), FALSE; });
    Loaded file("[a]\nx=1\n");
    EXPECT_EQ(file.Saved(), "[a]\r\nx=1\r\n");
    const Patched move(
        "MoveFileExW", +[](LPCWSTR, LPCWSTR, DWORD) WINAPI -> BOOL { return FALSE; });
    EXPECT_FALSE(file.document.save(0, 0, false));
    ASSERT_EQ(file.folder.Entries(), 1);
    EXPECT_EQ(BytesOf(std::filesystem::directory_iterator(file.folder.path())->path()), "[a]\r\nx=1\r\n");
}

TEST(IniFile, TakesTextsOfItsOwn)
{
    Loaded file("[a long section name]\nkey of some length=value of some length\n");
    inifilex& document = file.document;
    const auto value = [&] { return document.find_value(L"a long section name", L"key of some length")->view(); };
    document.set_string(L"a long section name", L"key of some length", value().substr(9));
    EXPECT_EQ(value(), L"some length");
    for (int i = 0; i < 50; ++i)
        document.set_string(L"s" + std::to_wstring(i), value(), value());
    EXPECT_EQ(document.get_string(L"s49", L"some length", L""), L"some length");
    EXPECT_EQ(value(), L"some length");
    EXPECT_TRUE(document.rename_section(document.begin()->first, document.begin()->first.view().substr(2)));
    EXPECT_TRUE(document.has_section(L"long section name"));
    EXPECT_FALSE(document.has_section(L"a long section name"));
    document.rename_sections(std::next(document.begin())->first.view().substr(0, 1), L"t");
    EXPECT_TRUE(document.has_section(L"t0") && document.has_section(L"t49"));
    document.remove_sections(std::next(document.begin())->first.view().substr(0, 1));
    EXPECT_EQ(document.size(), 1u);
    // A path that is a section's name, which moves when the sections are sorted.
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(file.folder.path());
    document.section(L"n.ini");
    document.section(L"0");
    EXPECT_TRUE(document.save_as(document.key_at(1), inifile_sort, 0, false));
    EXPECT_EQ(document.get_path().view(), L"n.ini");
    std::filesystem::current_path(before);
}

TEST(IniFile, MakesItsFolderAgainButNotInPlaceOfAFile)
{
    Loaded file("[a]\nx=1\n");
    const std::wstring target = file.folder / L"sub\\t.ini";
    ASSERT_TRUE(file.document.save_as(target, 0, 0, false));
    std::filesystem::remove_all(file.folder / L"sub");
    EXPECT_TRUE(file.document.save(0, 0, false));
    EXPECT_EQ(BytesOf(target), "[a]\r\nx=1\r\n");
    std::filesystem::remove_all(file.folder / L"sub");
    file.folder.Write(L"sub", "a file now");
    EXPECT_FALSE(file.document.save(0, 0, false));
    EXPECT_NE(file.document.get_last_error(), 0u);
    EXPECT_EQ(file.document.get_error_path().view(), target);
    EXPECT_EQ(BytesOf(file.folder / L"sub"), "a file now");
}

TEST(IniFile, SavesUnderTheLongestPaths)
{
    constexpr std::size_t longest = MAX_PATH - 1;
    // The longest folder that the system makes, with a name of one unit, and a long name in a short folder.
    constexpr std::size_t longest_folder = MAX_PATH - 13;
    const Loaded file("[a]\nx=1\n");
    inifilex document = file.document;
    const std::wstring root = file.folder / L"", deep = root + std::wstring(longest_folder - root.size(), L'd');
    for (const std::wstring& path : {deep + L"\\i", root + std::wstring(longest - root.size(), L'n')}) {
        ASSERT_TRUE(document.save_as(path, 0, 0, false)) << document.get_last_error();
        ASSERT_TRUE(document.save_as(path, 0, 0, false)) << document.get_last_error();
        EXPECT_EQ(BytesOf(path), "[a]\r\nx=1\r\n");
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(std::filesystem::path(path).parent_path()), {}),
                  path.starts_with(deep) ? 1 : 3);
    }
    EXPECT_FALSE(document.save_as(root + std::wstring(300, L'n'), 0, 0, false)) << "no system takes this name";
    EXPECT_NE(document.get_last_error(), 0u);
    EXPECT_EQ(file.folder.Entries(), 3);
}

} // namespace
