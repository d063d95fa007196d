// INI documents: load, look-up and removal against a vector with an ordered map on both levels.
#include <algorithm>
#include <map>
#include <memory>
#include <random>

#include "../files/ini_encoding.h"
#include "../files/ini_file.h"
#include "../scriptdata/unique.h"
#include "../tests/support/temp_folder.h"
#include "areas.h"

namespace bench {

namespace {

constexpr long keys_of_section = 20;

std::wstring SectionName(long i) { return (i % 10 ? L"Section " : L"Other ") + std::to_wstring(100000 + i); }
std::wstring KeyName(long i) { return L"Key of entry " + std::to_wstring(100 + i); }

// About 50 bytes for each entry.
std::string ContentOf(long sections)
{
    std::string content;
    const auto add = [&](const std::wstring& text) { content.append(text.begin(), text.end()); };
    for (long s = 0; s < sections; ++s) {
        add(L"[" + SectionName(s) + L"]\r\n");
        for (long k = 0; k < keys_of_section; ++k)
            add(KeyName(k) + L"=the value of an entry, " + std::to_wstring(1000000 + s) + L"\r\n");
    }
    return content;
}

// The plain program: names by an ordered map, elements in a vector.
template <class Element, class Less>
struct bare_list {
    std::vector<std::pair<std::wstring, Element>> items;
    std::map<std::wstring, std::size_t, Less> index;

    Element* Find(std::wstring_view name)
    {
        const auto found = index.find(name);
        return found == index.end() ? nullptr : &items[found->second].second;
    }
    std::pair<Element*, bool> Add(std::wstring_view name)
    {
        const auto [at, is_new] = index.emplace(name, items.size());
        if (is_new)
            items.emplace_back(name, Element());
        return {&items[at->second].second, is_new};
    }
};

template <class Less>
using bare_section = bare_list<std::wstring, Less>;
template <class Less>
using bare_document = bare_list<bare_section<Less>, Less>;

template <class Less>
void ParseBare(std::wstring_view text, bare_document<Less>& document)
{
    bare_section<Less>* current = nullptr;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find_first_of(L"\r\n", at), text.size());
        const std::wstring_view line = text.substr(at, end - at);
        at = end + 1;
        if (line.empty() || line[0] == L';')
            continue;
        if (line[0] == L'[') {
            current = document.Add(line.substr(1, line.find(L']') - 1)).first;
            continue;
        }
        const std::size_t separator = line.find(L'=');
        if (const auto [value, is_new] = current->Add(line.substr(0, separator)); is_new)
            *value = line.substr(separator + 1);
    }
}

template <class Less>
void LoadBare(const std::wstring& path, bare_document<Less>& document)
{
    const vh::unique_file file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                           FILE_ATTRIBUTE_NORMAL, nullptr));
    std::string bytes(GetFileSize(file.get(), nullptr), '\0');
    DWORD read = 0;
    ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);
    ParseBare(vh::DecodeText(bytes, CP_ACP), document);
}

// Each run fills a document that is new; it ends outside of what is timed.
template <class Document, class Fill>
work Loading(Fill fill, long sections)
{
    const auto document = std::make_shared<std::unique_ptr<Document>>();
    work made{[=](long) { fill(**document); }};
    made.before = [document] { *document = std::make_unique<Document>(); };
    made.after = [document] { document->reset(); };
    made.units = sections * keys_of_section;
    return made;
}

work LoadingDocument(const std::wstring& path, long sections)
{
    return Loading<inifilex>([path](inifilex& document) { document.load(path, L"=", false); }, sections);
}

template <class Less>
work LoadingBare(const std::wstring& path, long sections)
{
    return Loading<bare_document<Less>>([path](auto& document) { LoadBare<Less>(path, document); }, sections);
}

struct question {
    std::wstring section;
    std::wstring key;
};

// In an order that no cache foresees.
std::vector<question> QuestionsOn(long sections)
{
    std::mt19937 random(5);
    std::vector<question> questions(20000);
    for (question& one : questions) {
        one.section = SectionName(static_cast<long>(random() % static_cast<unsigned long>(sections)));
        one.key = KeyName(static_cast<long>(random() % keys_of_section));
    }
    return questions;
}

template <class Ask>
work Asking(std::vector<question> questions, Ask ask)
{
    return {[questions = std::move(questions), ask](long count) {
        for (std::size_t at = 0; count > 0; --count, at = at + 1 == questions.size() ? 0 : at + 1)
            Keep(ask(questions[at]));
    }};
}

template <class Less>
work AskingBare(const std::wstring& path, const std::vector<question>& questions)
{
    const auto document = std::make_shared<bare_document<Less>>();
    LoadBare(path, *document);
    return Asking(questions, [document](const question& one) {
        auto* section = document->Find(one.section);
        const std::wstring* value = section ? section->Find(one.key) : nullptr;
        return std::wstring(value ? *value : std::wstring()).size();
    });
}

// A document of sections with one key, every tenth under the prefix that is removed.
work Removing(long sections)
{
    inifilex full;
    for (long s = 0; s < sections; ++s)
        full.set_string(SectionName(s), L"key", L"a value");
    const auto document = std::make_shared<inifilex>();
    work made{[document](long) { document->remove_sections(L"Other"); }};
    made.before = [document, full = std::move(full)] { *document = full; };
    made.units = sections;
    return made;
}

// One pass over a bare vector, which has no index to keep.
work RemovingBare(long sections)
{
    using list = std::vector<std::pair<std::wstring, std::vector<std::pair<std::wstring, std::wstring>>>>;
    list full;
    for (long s = 0; s < sections; ++s)
        full.push_back({SectionName(s), {{L"key", L"a value"}}});
    const auto items = std::make_shared<list>();
    work made{
        [items](long) { std::erase_if(*items, [](const auto& item) { return item.first.starts_with(L"Other"); }); }};
    made.before = [items, full = std::move(full)] { *items = full; };
    made.units = sections;
    return made;
}

} // namespace

void IniFiles(suite& s)
{
    const vh::test::TempFolder folder;
    const long many = s.quick() ? 1000 : 10000;
    const std::wstring large = folder.Write(L"large.ini", ContentOf(many));
    const std::wstring small = folder.Write(L"small.ini", ContentOf(many / 10));
    s.Compare("load, 200000 entries, to a map without case", 1.3, LoadingDocument(large, many),
              LoadingBare<vh::text_less_i>(large, many));
    s.Compare("load, to a map that knows case", 1.3, LoadingDocument(large, many),
              LoadingBare<vh::text_less>(large, many));
    s.Growth("load, 10 N to N, per entry", LoadingDocument(large, many), LoadingDocument(small, many / 10));

    const auto document = std::make_shared<inifilex>();
    document->load(large, L"=", false);
    const std::vector<question> questions = QuestionsOn(many);
    const work ask = Asking(
        questions, [document](const question& one) { return document->get_string(one.section, one.key, L"").size(); });
    s.Compare("get, to two maps without case", 1.0, ask, AskingBare<vh::text_less_i>(large, questions));
    s.Compare("get, to two maps that know case", 1.0, ask, AskingBare<vh::text_less>(large, questions));

    s.Compare("1000 of 10000 sections removed, to one pass", 2.0, Removing(10000), RemovingBare(10000));
    s.Compare("the bare pass, 10 N to N, per section", {}, RemovingBare(10000), RemovingBare(1000));
    s.Growth("removal by prefix, 10 N to N, per section", Removing(10000), Removing(1000));
}

} // namespace bench
