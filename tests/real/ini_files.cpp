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
#include <algorithm>
#include <cstdlib>
#include <cwctype>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "../../files/ini_file.h"
#include "../support/temp_folder.h"

using vh::test::BytesOf;

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

// Two readers agree on lines only where nothing needs trimming, and no line has a second "]".
bool IsPlain(const std::string& bytes)
{
    return std::ranges::none_of(LinesOf(bytes), [](const std::string& line) {
        const std::size_t close = line.starts_with("[") ? line.find(']') : line.npos;
        return line.starts_with(" ") || line.starts_with("\t") ||
               (close != line.npos && line.find(']', close + 1) != line.npos);
    });
}

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

// What is saved comes back as it is.
void CheckSaves(inifilex& document, const std::wstring& path)
{
    ASSERT_TRUE(document.save_as(path, 0, 0, false));
    const std::string saved = BytesOf(path);
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
    int count = 0;
    int compared = 0;
    std::ifstream names(list);
    for (std::string name; std::getline(names, name);) {
        SCOPED_TRACE(name);
        std::string bytes = BytesOf(name);
        for (std::size_t at = 0; at < bytes.size(); ++at)
            if (bytes[at] == '#' && (at == 0 || bytes[at - 1] == '\n' || bytes[at - 1] == '\r'))
                bytes[at] = ';';
        const std::wstring path = folder.Write(L"t" + std::to_wstring(++count) + L".ini", bytes);
        inifilex document;
        if (!document.load(path, L"=", false) || document.empty())
            continue;
        if (IsPlain(bytes)) {
            CompareWithProfile(document, path);
            ++compared;
        }
        CheckSaves(document, folder / L"saved.ini");
        if (HasFatalFailure())
            return;
    }
    std::printf("%d files, %d of them compared with the profile functions\n", count, compared);
    EXPECT_GE(compared, 200);
}

} // namespace
