#include "skin_check.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <numeric>
#include <optional>
#include <set>

#include "pictures/option_text.h"
#include "skin/skin_container.h"
#include "skin/skin_picture.h"
#include "skin/skin_profile.h"

namespace tools {

namespace {

using vh::skin_form;
using vh::skin_profile;

constexpr vh::skin_pair page_size{460, 305};
constexpr const char* digits = "0123456789";
constexpr std::size_t longest_section = 99;
constexpr std::size_t room_for_sections = 3072;
struct KeyOrder {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const
    {
        const auto upper = [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; };
        return std::ranges::lexicographical_compare(a, b, {}, upper, upper);
    }
};
// The keys that the library asks for, with the forms of their values.
using AskedKeys = std::map<std::string, skin_form, KeyOrder>;

// With `widest` as if each list were as long as it can be.
AskedKeys KeysOf(const vh::skin_reader& read, const std::string& section, bool widest)
{
    AskedKeys keys;
    const vh::skin_reader recording = [&](std::string_view name, std::string_view key, skin_form form) {
        keys.emplace(key, form);
        return widest && form == skin_form::count ? std::to_string(vh::most_skin_entries) : read(name, key, form);
    };
    const vh::skin_button_text none;
    const vh::skin_section_kind kind = vh::KindOfSkinSection(section);
    if (kind == vh::skin_section_kind::header)
        vh::ReadSkinVersion(recording);
    else
        vh::ReadSkinSection(recording, section, {}, kind == vh::skin_section_kind::dialog ? &none : nullptr);
    return keys;
}

// Letters to change, add, drop or exchange with their neighbour, whatever their case.
std::size_t Distance(std::string_view a, std::string_view b)
{
    const auto same = [](char x, char y) { return skin_profile::Same({&x, 1}, {&y, 1}); };
    std::vector<std::size_t> before(b.size() + 1);
    std::vector<std::size_t> above(b.size() + 1);
    std::iota(above.begin(), above.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::vector<std::size_t> row(b.size() + 1, i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            row[j] = std::min({above[j] + 1, row[j - 1] + 1, above[j - 1] + !same(a[i - 1], b[j - 1])});
            if (i > 1 && j > 1 && same(a[i - 1], b[j - 2]) && same(a[i - 2], b[j - 1]))
                row[j] = std::min(row[j], before[j - 2] + 1);
        }
        before = std::exchange(above, std::move(row));
    }
    return above.back();
}

template <class Names>
std::string NearMiss(std::string_view text, const Names& names)
{
    std::string_view nearest;
    std::size_t least = std::min<std::size_t>(3, text.size() / 2 + 1);
    for (const std::string_view name : names)
        if (const std::size_t steps = Distance(text, name); steps < least) {
            least = steps;
            nearest = name;
        }
    return nearest.empty() ? std::string() : "; is " + ShownName(nearest) + " meant?";
}

std::optional<int> WholeNumber(std::string_view text, int least, int most)
{
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == text.npos)
        return {};
    text = text.substr(first, text.find_last_not_of(" \t") - first + 1);
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < least || number > most)
        return {};
    return number;
}

bool AreNumbers(std::string_view text, int count, int least, int most)
{
    while (count-- > 0) {
        const std::size_t comma = text.find(',');
        if ((comma == text.npos) != (count == 0) || !WholeNumber(text.substr(0, comma), least, most))
            return false;
        text.remove_prefix(count ? comma + 1 : 0);
    }
    return true;
}

class SkinCheck {
public:
    explicit SkinCheck(const SkinSource& skin)
        : m_skin(skin), m_text(TextOf(skin)), m_profile(m_text), m_read(m_profile.reader())
    {
    }

    std::vector<std::string> Run();

private:
    using Section = skin_profile::section;
    using Entry = skin_profile::entry;

    static std::string_view TextOf(const SkinSource& skin)
    {
        const SkinEntry* text = skin.Text();
        return text ? std::string_view(reinterpret_cast<const char*>(text->bytes.data()), text->bytes.size())
                    : std::string_view();
    }
    void Find(std::size_t line, const std::string& text) { m_found.emplace(line, text); }
    void Find(const Section& section, std::size_t line, const std::string& key, const std::string& text)
    {
        Find(line, "[" + section.name + "] " + (key.empty() ? "" : key + ": ") + text);
    }
    static const Entry* Search(const Section& section, std::string_view key)
    {
        const auto found =
            std::ranges::find_if(section.entries, [&](const Entry& one) { return skin_profile::Same(one.key, key); });
        return found == section.entries.end() ? nullptr : &*found;
    }

    void CheckName(const Section& section);
    void CheckSection(const Section& section);
    void CheckKey(const Section& section, const Entry& entry, const AskedKeys& asked);
    void CheckValue(const Section& section, const Entry& entry, skin_form form);
    void CheckOptions(const Section& section, const Entry& entry);
    void CheckPicture(const Section& section, const Entry& entry);
    void CheckCount(const Section& section, const Entry& count, const AskedKeys& asked);
    void CheckPlaces(const Section& section);
    void CheckEntries();
    // Of a section of that kind, were its lists as long as they can be.
    const AskedKeys& AllKeys(const Section& section);

    const SkinSource& m_skin;
    std::string_view m_text;
    skin_profile m_profile;
    vh::skin_reader m_read;
    // By line of the text; what concerns no line stands behind all.
    std::multimap<std::size_t, std::string> m_found;
    static constexpr std::size_t no_line = SIZE_MAX;
    std::set<std::string> m_used;
    std::map<vh::skin_section_kind, AskedKeys> m_all_keys;
};

void SkinCheck::CheckName(const Section& section)
{
    const std::string& name = section.name;
    const auto find = [&](const std::string& text) { Find(section, section.line, {}, text); };
    const std::size_t dash = name.rfind('-');
    const std::string_view front = std::string_view(name).substr(0, dash);
    const bool of_all = vh::KindOfSkinSection(name) == vh::skin_section_kind::all_of_language;
    if (name.empty())
        find("no dialog has an empty name");
    else if (name.size() > longest_section)
        find("no dialog's name is longer than " + std::to_string(longest_section) + " characters");
    else if (vh::KindOfSkinSection(name) == vh::skin_section_kind::header && name != "SKINS")
        find("names that begin with \"ALL\" are no dialogs'" +
             NearMiss(name, std::array<std::string_view, 2>{"ALL", "SKINS"}));
    else if (front != "ALL" && skin_profile::Same(front, "ALL"))
        find("names count case; is \"ALL\" meant?");
    else if (dash != name.npos) {
        const std::string_view language = std::string_view(name).substr(dash + 1);
        const bool hex = !language.empty() && language.find_first_not_of("0123456789abcdefABCDEF") == language.npos;
        const bool right = language.size() == 4 && language.find_first_not_of("0123456789abcdef") == language.npos;
        // Letters alone may be a part of the dialog's name.
        if (!right && (of_all || (hex && language.find_first_of(digits) != language.npos)))
            find("a language is four lower-case hexadecimal digits, like \"-0407\"");
    }
}

void SkinCheck::CheckSection(const Section& section)
{
    CheckName(section);
    if (vh::KindOfSkinSection(section.name) == vh::skin_section_kind::header && section.name != "SKINS")
        return;
    const AskedKeys asked = KeysOf(m_read, section.name, false);
    for (const Entry& entry : section.entries) {
        const Entry* first = Search(section, entry.key);
        if (first != &entry)
            Find(section, entry.line, entry.key, "line " + std::to_string(first->line) + " has the key already");
        else
            CheckKey(section, entry, asked);
    }
    for (const Entry& entry : section.entries)
        if (const auto found = asked.find(entry.key); found != asked.end() && found->second == skin_form::count)
            CheckCount(section, entry, asked);
    if (section.name != "SKINS")
        CheckPlaces(section);
}

void SkinCheck::CheckKey(const Section& section, const Entry& entry, const AskedKeys& asked)
{
    if (const auto found = asked.find(entry.key); found != asked.end()) {
        CheckValue(section, entry, found->second);
        return;
    }
    const std::size_t digit = std::min(entry.key.find_first_of(digits), entry.key.size());
    const AskedKeys& all = AllKeys(section);
    if (all.contains(entry.key)) {
        const std::string list = entry.key.substr(0, digit) + "S";
        const Entry* count = Search(section, list);
        Find(section, entry.line, entry.key,
             count ? "is not among the " + count->value + " that " + list + " counts" : "there is no " + list);
        return;
    }
    // Those with the same number, or without one.
    std::vector<std::string_view> keys;
    const auto number = [](std::string_view key) {
        const std::size_t first = std::min(key.find_first_of(digits), key.size());
        return key.substr(first, key.find_first_not_of(digits, first) - first);
    };
    for (const auto& [key, form] : all)
        if (number(key).empty() || number(key) == number(entry.key))
            keys.push_back(key);
    Find(section, entry.line, entry.key, "nobody reads this key" + NearMiss(entry.key, keys));
}

const AskedKeys& SkinCheck::AllKeys(const Section& section)
{
    const auto [place, is_new] = m_all_keys.try_emplace(vh::KindOfSkinSection(section.name));
    if (is_new)
        place->second = KeysOf(m_read, section.name, true);
    return place->second;
}

void SkinCheck::CheckValue(const Section& section, const Entry& entry, skin_form form)
{
    const auto find = [&](const std::string& text) { Find(section, entry.line, entry.key, text); };
    if (entry.value.empty())
        return find("has no value");
    if (entry.value.size() >= vh::RoomFor(form))
        return find("is cut to " + std::to_string(vh::RoomFor(form) - 1) + " characters");
    switch (form) {
    case skin_form::number:
        if (!WholeNumber(entry.value, 1, 65535))
            find("must be a number from 1 to 65535");
        break;
    case skin_form::count:
        if (!WholeNumber(entry.value, 0, vh::most_skin_entries))
            find("must be a number from 0 to " + std::to_string(vh::most_skin_entries));
        break;
    case skin_form::color:
        if (!AreNumbers(entry.value, 3, 0, 255))
            find("must be a color like \"240,240,255\"");
        break;
    case skin_form::pair:
        if (!AreNumbers(entry.value, 2, INT16_MIN, INT16_MAX))
            find("must be two numbers like \"10,20\"");
        break;
    case skin_form::options:
        CheckOptions(section, entry);
        break;
    case skin_form::file:
        CheckPicture(section, entry);
        break;
    }
}

void SkinCheck::CheckOptions(const Section& section, const Entry& entry)
{
    std::vector<std::string_view> names;
    for (const vh::option_token& token : vh::option_tokens)
        names.push_back(token.name);
    for (std::string_view rest = entry.value;;) {
        const std::size_t comma = rest.find(',');
        const std::string_view token = rest.substr(0, comma);
        if (std::ranges::find(names, token) == names.end())
            Find(section, entry.line, entry.key, ShownName(token) + " is no option" + NearMiss(token, names));
        if (comma == rest.npos)
            return;
        rest.remove_prefix(comma + 1);
    }
}

void SkinCheck::CheckPicture(const Section& section, const Entry& entry)
{
    const auto find = [&](const std::string& text) { Find(section, entry.line, entry.key, text); };
    if (!m_used.insert(entry.value).second)
        return;
    const SkinEntry* picture = m_skin.Find(entry.value);
    if (!picture) {
        std::vector<std::string_view> names;
        for (const SkinEntry& one : m_skin.entries)
            if (!vh::IsSkinText(one.name))
                names.push_back(one.name);
        return find("there is no picture " + ShownName(entry.value) + NearMiss(entry.value, names));
    }
    SetupImage image;
    if (vh::KindOfSkinPicture(entry.value) == vh::skin_picture_kind::none)
        find(ShownName(entry.value) + " is neither .gif nor .bmp");
    else if (!vh::LoadSkinPicture(image, entry.value, picture->bytes))
        find(ShownName(entry.value) + " can't be read as a picture");
}

// Each number of the list has its first key; a rectangle's may be missing, since there is a color for it.
void SkinCheck::CheckCount(const Section& section, const Entry& count, const AskedKeys& asked)
{
    const std::string base = count.key.substr(0, count.key.size() - 1);
    const int last = WholeNumber(count.value, 0, vh::most_skin_entries).value_or(0);
    for (int i = 1; i <= last; ++i) {
        const std::string key = base + std::to_string(i);
        const auto form = asked.find(key);
        const bool any = form != asked.end() && form->second == skin_form::color;
        const auto belongs = [&](const Entry& one) {
            const std::string_view name = one.key;
            return name.size() > key.size() && skin_profile::Same(name.substr(0, key.size()), key) &&
                   (name[key.size()] < '0' || name[key.size()] > '9');
        };
        if (!Search(section, key) && !(any && std::ranges::any_of(section.entries, belongs)))
            Find(section, count.line, count.key, "counts " + std::to_string(last) + ", but there is no " + key);
    }
}

void SkinCheck::CheckPlaces(const Section& section)
{
    const vh::skin_button_text none;
    const bool own = vh::KindOfSkinSection(section.name) != vh::skin_section_kind::dialog;
    const vh::skin_section_text text = vh::ReadSkinSection(m_read, section.name, {}, own ? nullptr : &none);
    const auto find = [&](const char* list, std::size_t index, const char* part, const std::string& what) {
        const std::string key = list + std::to_string(index + 1) + part;
        const Entry* entry = Search(section, key);
        // One without its first key has been found already.
        if (const Entry* first = entry ? entry : Search(section, list + std::to_string(index + 1)))
            Find(section, first->line, key, what);
    };
    const auto outside = [](vh::skin_pair place) {
        return place.x < 0 || place.y < 0 || place.x > page_size.x || place.y > page_size.y;
    };
    const std::string page = "lies outside 0,0 to " + std::to_string(page_size.x) + "," + std::to_string(page_size.y);
    for (std::size_t i = 0; i < text.rects.size(); ++i) {
        const auto& [color, pos, area] = text.rects[i];
        if (outside(pos))
            find("RECT", i, "POS", page);
        if (outside(area))
            find("RECT", i, "AREA", page);
        if (area.x < pos.x || area.y < pos.y)
            find("RECT", i, "AREA", "the corners are swapped: POS is the top left, AREA the bottom right one");
        else if (area.x == pos.x || area.y == pos.y)
            find("RECT", i, "AREA", "the rectangle is empty");
    }
    for (std::size_t i = 0; i < text.images.size(); ++i)
        if (outside(text.images[i].pos))
            find("IMAGE", i, "POS", page);
    for (std::size_t i = 0; i < text.buttons.size(); ++i)
        if (text.buttons[i].pos && outside(*text.buttons[i].pos))
            find("BUTTON", i, "POS", page);
}

void SkinCheck::CheckEntries()
{
    for (const std::string& fault : m_skin.faults)
        Find(no_line, fault);
    for (const SkinEntry& entry : m_skin.entries)
        if (!vh::IsSkinText(entry.name) && !m_used.contains(entry.name))
            Find(no_line, ShownName(entry.name) + ": nobody uses this picture");
}

std::vector<std::string> SkinCheck::Run()
{
    const std::string name(vh::skin_text_name);
    if (m_text.starts_with("\xFF\xFE") || m_text.starts_with("\xFE\xFF") || m_text.starts_with("\xEF\xBB\xBF"))
        Find(1, "the text must be plain, without a mark of its encoding");
    for (const std::size_t line : m_profile.lost_lines())
        Find(line, "stands before the first section, and nobody reads it");
    std::size_t room = 1;
    const std::vector<Section>& sections = m_profile.sections();
    for (auto one = sections.begin(); one != sections.end(); ++one) {
        room += one->name.size() + 1;
        if (room > room_for_sections)
            Find(*one, one->line, {}, "all names together are too long; this section is lost");
        const auto first = std::find_if(
            sections.begin(), one, [&](const Section& other) { return skin_profile::Same(other.name, one->name); });
        if (first == one)
            CheckSection(*one);
        else
            Find(*one, one->line, {}, "line " + std::to_string(first->line) + " begins the section already");
    }
    CheckEntries();
    std::vector<std::string> lines;
    for (const auto& [line, text] : m_found)
        lines.push_back(line == no_line ? text : name + ":" + std::to_string(line) + ": " + text);
    return lines;
}

} // namespace

std::vector<std::string> CheckSkin(const SkinSource& skin) { return SkinCheck(skin).Run(); }

} // namespace tools
