// An INI document in memory: sections and entries in the order of the file, names compared without regard to case.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "vector_map.h"

class inifileentryx {
public:
    stringx value;
};

class inifilesectionx : public vh::vector_map_i<inifileentryx, stringxi> {
public:
    inifilesectionx() = default;
    inifilesectionx(const inifilesectionx&) = default;
    inifilesectionx(inifilesectionx&&) = default;
    inifilesectionx& operator=(const inifilesectionx&) = default;
    inifilesectionx& operator=(inifilesectionx&&) = default;
    virtual ~inifilesectionx() = default;
};

// Flags of a save.
enum inifile_flags : uint32_t {
    inifile_sort = 1,
    // A document without sections is not written.
    inifile_skip_empty = 2,
    // Code page and mark come from the arguments.
    inifile_set_encoding = 4,
};

// The order of the operations is fixed. "Created" means that what is missing comes into being; nothing else adds
// sections or entries.
class inifilex final : public vh::vector_map_i<inifilesectionx, stringxi> {
public:
    using text = std::wstring_view;
    using names = std::vector<stringx>;

    static constexpr uint32_t no_code_page = UINT32_MAX;

    // Stores both and touches no content.
    virtual void assign(text path, text separator);
    // Replaces the content. A bad line ends the load: what came before stays, and the answer is false.
    virtual bool load(text path, text separator, bool keep_bare_keys);
    virtual bool save(uint32_t flags, uint32_t code_page, bool mark);
    // A save that fails leaves the file as it was.
    virtual bool save_as(text path, uint32_t flags, uint32_t code_page, bool mark);
    virtual void set_separator(text separator) { m_separator = separator; }
    virtual stringx get_separator() const { return m_separator; }
    virtual stringx get_path() const { return m_path; }
    // Created: each entry of the section is set in the named one.
    virtual void set_section(text name, const inifilesectionx& section);
    // Each section of the other document under a name that the format makes of prefix and section name.
    virtual void merge_file(const inifilex& other, text prefix, text format);
    // Created.
    virtual inifilesectionx& section(text name);
    // False when section or key is missing.
    virtual bool move_entry(text section, text key, text behind);
    virtual stringx get_string(text section, text key, text fallback) const;
    // Created, as with all that set a value.
    virtual void set_string(text section, text key, text value);
    // Decimal, or hexadecimal behind "0x".
    virtual int32_t get_number(text section, text key, int32_t fallback) const;
    virtual void set_number(text section, text key, int32_t value);
    // True for "Yes", "Y", "1" and "True"; every other text is false.
    virtual bool get_boolean(text section, text key, bool fallback) const;
    virtual void set_boolean(text section, text key, bool value);
    virtual bool is_dirty() const { return m_dirty; }
    virtual void set_dirty(bool dirty) { m_dirty = dirty; }
    virtual bool has_section(text name) const;
    virtual bool has_entry(text section, text key) const;
    // Names and keys are appended in their order.
    virtual void get_entry_names(text section, names& keys) const;
    virtual void get_section_names(names& sections) const;
    // Gives the count of the list.
    virtual uint32_t find_sections(names& sections, text prefix) const;
    // The values of the keys that the format makes of 0 or 1, 2 and so on, up to the first one missing.
    virtual void get_numbered_values(text section, names& values, text format) const;
    // True when the names are equal; false when the new one exists or the old one does not.
    virtual bool rename_section(text name, text new_name);
    virtual bool rename_entry(text section, text key, text new_key);
    virtual void rename_sections(text prefix, text replacement);
    virtual bool remove_section(text name);
    virtual bool remove_entry(text section, text key);
    // The section itself stays.
    virtual bool clear_section(text name);
    virtual void clear();
    virtual void remove_sections(text prefix);
    virtual void sort();
    virtual void sort_sections();
    virtual void sort_all_entries();
    virtual void sort_section_entries(inifilesectionx& section);
    // Created.
    virtual void sort_entries_of(text name);
    virtual void set_code_page(uint32_t code_page) { m_code_page = code_page; }
    virtual bool set_byte_order_mark(bool mark) { return m_byte_order_mark = mark; }
    // Of the last load or save: 0 or a system error; ERROR_INVALID_DATA for a bad line.
    virtual uint32_t get_last_error() const { return m_last_error; }
    virtual stringx get_error_path() const { return m_error_path; }

    // The value itself, without a copy; null when there is none. Valid until the next change.
    const stringx* find_value(text section, text key) const;

private:
    using base = vh::vector_map_i<inifilesectionx, stringxi>;

    std::wstring read_text();
    bool parse(text content);
    std::wstring made_text() const;

    stringx m_path;
    bool m_keep_bare_keys = false;
    bool m_dirty = false;
    stringx m_separator{L"="};
    bool m_saving = false;
    uint32_t m_code_page = no_code_page;
    bool m_byte_order_mark = false;
    uint32_t m_last_error = 0;
    stringx m_error_path;
};
