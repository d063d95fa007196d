#include "ini_file.h"

#include "../scriptdata/format.h"
#include "../scriptdata/number_text.h"

namespace {

constexpr std::size_t max_name = 4096;

bool BeginsWith(const stringxi& name, std::wstring_view prefix)
{
    return vh::SameName(name.view().substr(0, prefix.size()), prefix);
}

template <class... Arguments>
stringx Formatted(std::wstring_view format, Arguments... arguments)
{
    wchar_t made[max_name];
    vh::FormatText(made, max_name, stringx(format).c_str(), arguments...);
    return made;
}

} // namespace

void inifilex::assign(text path, text separator)
{
    stringx behind_keys(separator);
    m_path = path;
    m_separator = std::move(behind_keys);
}

const stringx* inifilex::find_value(text section, text key) const
{
    const inifilesectionx* found = base::find(section);
    const inifileentryx* entry = found ? found->find(key) : nullptr;
    return entry ? &entry->value : nullptr;
}

void inifilex::set_section(text name, const inifilesectionx& section)
{
    // Copies, in case they are of this document, whose sections may move when one is created.
    const stringx target(name);
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const inifilesectionx given = section;
    this->section(target);
    for (const auto& [key, entry] : given)
        set_string(target, key, entry.value);
}

void inifilex::merge_file(const inifilex& other, text prefix, text format)
{
    const stringx prefix_text(prefix);
    const stringx format_text(format);
    if (&other == this) {
        // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the walk would meet what it adds.
        const inifilex copy = other;
        merge_file(copy, prefix_text, format_text);
        return;
    }
    for (const auto& [name, section] : other)
        set_section(Formatted(format_text, prefix_text.c_str(), name.c_str()), section);
}

inifilesectionx& inifilex::section(text name) { return at(insert(name)); }

bool inifilex::move_entry(text section, text key, text behind)
{
    inifilesectionx* found = base::find(section);
    if (!found)
        return false;
    m_dirty = true;
    const uint32_t position = found->position_of(key);
    const uint32_t other = found->position_of(behind);
    if (position == vh::map_i::none || other == vh::map_i::none)
        return false;
    found->move_behind(position, other);
    return true;
}

stringx inifilex::get_string(text section, text key, text fallback) const
{
    const stringx* value = find_value(section, key);
    return value ? *value : stringx(fallback);
}

void inifilex::set_string(text section, text key, text value)
{
    inifilesectionx* owner = base::find(section);
    inifileentryx* entry = owner ? owner->find(key) : nullptr;
    if (entry) {
        entry->value = value;
    } else {
        // Copies, as texts of this document may move when something is created.
        const stringx new_key(key);
        inifileentryx made{stringx(value)};
        inifilesectionx& target = this->section(section);
        target.insert(new_key, std::move(made));
    }
    m_dirty = true;
}

int32_t inifilex::get_number(text section, text key, int32_t fallback) const
{
    const stringx* value = find_value(section, key);
    if (!value || value->empty())
        return fallback;
    return vh::NumberOfText(value->c_str());
}

void inifilex::set_number(text section, text key, int32_t value) { set_string(section, key, std::to_wstring(value)); }

bool inifilex::get_boolean(text section, text key, bool fallback) const
{
    const stringx* value = find_value(section, key);
    if (!value || value->empty())
        return fallback;
    for (const wchar_t* truth : {L"Yes", L"Y", L"1", L"True"})
        if (vh::SameName(*value, truth))
            return true;
    return false;
}

void inifilex::set_boolean(text section, text key, bool value) { set_string(section, key, value ? L"Yes" : L"No"); }

bool inifilex::has_section(text name) const { return contains(name); }

bool inifilex::has_entry(text section, text key) const { return find_value(section, key) != nullptr; }

void inifilex::get_entry_names(text section, names& keys) const
{
    if (const inifilesectionx* found = base::find(section))
        for (const auto& [key, entry] : *found)
            keys.emplace_back(key.view());
}

void inifilex::get_section_names(names& sections) const { find_sections(sections, {}); }

uint32_t inifilex::find_sections(names& sections, text prefix) const
{
    for (const auto& [name, section] : *this)
        if (BeginsWith(name, prefix))
            sections.emplace_back(name.view());
    return static_cast<uint32_t>(sections.size());
}

void inifilex::get_numbered_values(text section, names& values, text format) const
{
    const inifilesectionx* found = base::find(section);
    if (!found)
        return;
    // A format without a number would find the same key for ever; no section has more values than entries.
    for (uint32_t i = 0; i <= found->size(); ++i) {
        const inifileentryx* entry = found->find(Formatted(format, static_cast<int>(i)));
        if (entry)
            values.push_back(entry->value);
        else if (i != 0)
            return;
    }
}

bool inifilex::rename_section(text name, text new_name)
{
    if (vh::SameName(name, new_name))
        return true;
    const uint32_t position = position_of(name);
    if (position == vh::map_i::none || contains(new_name))
        return false;
    rename_at(position, new_name);
    m_dirty = true;
    return true;
}

bool inifilex::rename_entry(text section, text key, text new_key)
{
    if (vh::SameName(key, new_key))
        return true;
    inifilesectionx* found = base::find(section);
    const uint32_t position = found ? found->position_of(key) : vh::map_i::none;
    if (position == vh::map_i::none || found->contains(new_key))
        return false;
    found->rename_at(position, new_key);
    m_dirty = true;
    return true;
}

void inifilex::rename_sections(text prefix, text replacement)
{
    // A copy, as a name that is given may be one that changes.
    const stringx begin(replacement);
    const std::size_t replaced = prefix.size();
    names found;
    find_sections(found, prefix);
    for (const stringx& name : found)
        rename_section(name, vh::Concat(begin, name.view().substr(replaced)));
}

bool inifilex::remove_section(text name)
{
    const uint32_t position = position_of(name);
    if (position == vh::map_i::none)
        return false;
    erase_at(position);
    m_dirty = true;
    return true;
}

bool inifilex::remove_entry(text section, text key)
{
    inifilesectionx* found = base::find(section);
    const uint32_t position = found ? found->position_of(key) : vh::map_i::none;
    if (position == vh::map_i::none)
        return false;
    found->erase_at(position);
    m_dirty = true;
    return true;
}

bool inifilex::clear_section(text name)
{
    inifilesectionx* found = base::find(name);
    if (!found)
        return false;
    found->clear();
    m_dirty = true;
    return true;
}

void inifilex::clear() { base::clear(); }

void inifilex::remove_sections(text prefix)
{
    // A copy, as names move while others go.
    const stringx begin(prefix);
    if (erase_if([&](const stringxi& name) { return BeginsWith(name, begin); }))
        m_dirty = true;
}

void inifilex::sort()
{
    sort_sections();
    sort_all_entries();
}

void inifilex::sort_sections() { base::sort(); }

void inifilex::sort_all_entries()
{
    for (uint32_t i = 0; i < size(); ++i)
        sort_section_entries(at(i));
}

void inifilex::sort_section_entries(inifilesectionx& section) { section.sort(); }

void inifilex::sort_entries_of(text name) { sort_section_entries(section(name)); }
