// INI files of the machine, read by INI documents and by the system's private profile functions.
//
// Where these two readers differ, by rule:
// - A "#" comment is an entry for both; both read a copy in which ";" stands for it.
// - Profile functions drop blanks around lines, names and values; documents keep them.
// - Behind blanks, "[" still opens a section and ";" a comment for profile functions, for documents never.
// - A section's name ends at the last "]" of its line for profile functions, at the first for documents.
// - Of a section that comes again profile functions know the first part, documents all of it.
// - Profile functions list a key twice when the file has it twice; documents keep the first.
// - A file without sections, or with a "[" that is not closed, is read as far as it goes; documents refuse it.
#include <cwctype>

#include "../../files/ini_file.h"
#include "../support/test.h"

namespace {

using Entries = std::vector<std::pair<std::wstring, std::wstring>>;

std::wstring Trimmed(std::wstring_view text)
{
    while (!text.empty() && std::iswspace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && std::iswspace(text.back()))
        text.remove_suffix(1);
    return std::wstring(text);
}

bool Same(std::wstring_view a, std::wstring_view b)
{
    return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(), static_cast<int>(b.size()), TRUE) ==
           CSTR_EQUAL;
}

std::vector<std::string> LinesOf(const std::string& bytes)
{
    std::vector<std::string> lines(1);
    for (const char c : bytes) {
        if (c == '\r' || c == '\n')
            lines.emplace_back();
        else
            lines.back() += c;
    }
    return lines;
}

// What a save is to write for a file in which nothing comes twice; `wanted` is false when a load is to fail.
struct Rewriting {
    explicit Rewriting(const std::string& bytes)
    {
        for (const std::string& line : LinesOf(bytes)) {
            if (line.empty() || line[0] == ';')
                continue;
            if (line[0] == '[') {
                const std::size_t close = line.find(']');
                wanted = wanted && close != line.npos;
                text += (sections++ ? "\r\n" : "") + line.substr(0, close + 1) + "\r\n";
                // Two readers agree on lines only where nothing needs trimming.
                plain = plain && line.find(']', close + 1) == line.npos;
            } else {
                wanted = wanted && sections;
                ++entries;
                text += line + (line.find('=') == line.npos ? "=" : "") + "\r\n";
                plain = plain && !(line[0] == ' ' || line[0] == '\t');
            }
        }
    }

    std::string text;
    bool wanted = true, plain = true;
    std::size_t sections = 0, entries = 0;
};

// Texts that end in a NUL each, and all in one more.
std::vector<std::wstring> Split(const std::wstring& texts, DWORD size)
{
    std::vector<std::wstring> parts;
    for (std::size_t at = 0; at < size && texts[at];) {
        parts.emplace_back(texts.c_str() + at);
        at += parts.back().size() + 1;
    }
    return parts;
}

constexpr DWORD room = 1 << 20;

std::vector<std::wstring> ProfileSections(const std::wstring& path)
{
    std::wstring buffer(room, L'\0');
    return Split(buffer, GetPrivateProfileSectionNamesW(buffer.data(), room, path.c_str()));
}

Entries ProfileEntries(const std::wstring& path, const std::wstring& section)
{
    std::wstring buffer(room, L'\0');
    Entries entries;
    for (const std::wstring& line :
         Split(buffer, GetPrivateProfileSectionW(section.c_str(), buffer.data(), room, path.c_str()))) {
        const std::size_t at = std::min(line.find(L'='), line.size());
        const std::wstring key = Trimmed(line.substr(0, at));
        if (std::ranges::none_of(entries, [&](const auto& entry) { return Same(entry.first, key); }))
            entries.emplace_back(key, Trimmed(at < line.size() ? line.substr(at + 1) : L""));
    }
    return entries;
}

Entries DocumentEntries(const inifilesectionx& section)
{
    Entries entries;
    for (const auto& [key, entry] : section)
        if (const std::wstring name = Trimmed(key.view());
            std::ranges::none_of(entries, [&](const auto& one) { return Same(one.first, name); }))
            entries.emplace_back(name, Trimmed(entry.value.view()));
    return entries;
}

// Every section of the document as the profile functions see it in the same file.
void CompareWithProfile(const inifilex& document, const std::wstring& path)
{
    std::vector<std::wstring> names;
    std::map<std::wstring, int> parts;
    for (const std::wstring& name : ProfileSections(path))
        if (const auto known = std::ranges::find_if(names, [&](const auto& one) { return Same(one, name); });
            known != names.end())
            ++parts[*known];
        else
            names.push_back(name);
    std::erase(names, L"");
    std::vector<std::wstring> own;
    for (const auto& [name, section] : document)
        if (!name.empty())
            own.emplace_back(name.view());
    ASSERT_EQ(own, names);
    for (const std::wstring& name : names) {
        Entries wanted = DocumentEntries(*document.find(name));
        const Entries seen = ProfileEntries(path, name);
        ASSERT_LE(seen.size(), wanted.size()) << name;
        if (parts[name])
            wanted.resize(seen.size());
        ASSERT_EQ(wanted, seen) << name;
    }
}

std::size_t EntriesOf(const inifilex& document)
{
    std::size_t count = 0;
    for (const auto& [name, section] : document)
        count += section.size();
    return count;
}

void CheckSaves(inifilex& document, const Rewriting& rewriting, const std::wstring& path)
{
    ASSERT_TRUE(document.save_as(path, 0, 0, false));
    const std::string saved = BytesOf(path);
    if (document.size() == rewriting.sections && EntriesOf(document) == rewriting.entries) {
        ASSERT_EQ(saved, rewriting.text);
    }
    inifilex again;
    ASSERT_TRUE(again.load(path, L"=", false));
    ASSERT_EQ(again.size(), document.size());
    ASSERT_TRUE(again.save(0, 0, false));
    ASSERT_EQ(BytesOf(path), saved);
}

TEST(IniFilesOfTheMachine, AreReadAsTheSystemReadsThem)
{
    const char* list = std::getenv("VHRT_INI_FILES");
    ASSERT_TRUE(list) << "name the list of files in VHRT_INI_FILES";
    const vh::test::TempFolder folder;
    int read = 0, refused = 0, compared = 0, rewritten = 0;
    std::ifstream names(list);
    for (std::string name; std::getline(names, name);) {
        SCOPED_TRACE(name);
        std::string bytes = BytesOf(std::filesystem::path(name).wstring());
        for (std::size_t at = 0; at < bytes.size(); ++at)
            if (bytes[at] == '#' && (at == 0 || bytes[at - 1] == '\n' || bytes[at - 1] == '\r'))
                bytes[at] = ';';
        const Rewriting rewriting(bytes);
        const std::wstring path = folder.Write(L"t" + std::to_wstring(read + refused) + L".ini", bytes);
        inifilex document;
        const bool loaded = document.load(path, L"=", false);
        ASSERT_EQ(loaded, rewriting.wanted);
        refused += !loaded;
        read += loaded && rewriting.sections;
        if (!loaded || !rewriting.sections)
            continue;
        if (rewriting.plain) {
            CompareWithProfile(document, path);
            ++compared;
        }
        CheckSaves(document, rewriting, folder / L"saved.ini");
        rewritten += document.size() == rewriting.sections && EntriesOf(document) == rewriting.entries;
        if (HasFatalFailure())
            return;
    }
    std::printf(
        "%d files read, %d of them compared with the profile functions, %d saves compared by byte, %d refused\n", read,
        compared, rewritten, refused);
    EXPECT_GE(compared, 200);
    EXPECT_GE(rewritten, 200);
}

} // namespace
