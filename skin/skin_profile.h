// The text of a skin in memory, read as the system's profile functions read a file. Platform-free.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "skin_text.h"

namespace vh {

class skin_profile {
public:
    struct entry {
        std::string key;
        std::string value;
        // Counted from 1.
        std::size_t line;
    };
    struct section {
        std::string name;
        std::size_t line;
        std::vector<entry> entries;
    };

    // Names of sections and keys don't count case.
    static bool Same(std::string_view a, std::string_view b)
    {
        const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
        if (a.size() != b.size())
            return false;
        for (std::size_t i = 0; i < a.size(); ++i)
            if (lower(a[i]) != lower(b[i]))
                return false;
        return true;
    }

    explicit skin_profile(std::string_view text)
    {
        for (std::size_t line = 1; !text.empty(); ++line) {
            const std::size_t end = text.find_first_of("\r\n");
            Take(Trimmed(text.substr(0, end)), line);
            if (end == std::string_view::npos)
                return;
            text.remove_prefix(text.substr(end).starts_with("\r\n") ? end + 2 : end + 1);
        }
    }

    const std::vector<section>& sections() const { return m_sections; }
    // Lines before the first section, which nobody reads.
    const std::vector<std::size_t>& lost_lines() const { return m_lost_lines; }
    std::vector<std::string> names() const
    {
        std::vector<std::string> all;
        for (const section& one : m_sections)
            if (!one.name.empty())
                all.push_back(one.name);
        return all;
    }
    // The first entry of the first section of that name; neither counts case.
    skin_reader reader() const
    {
        return [this](std::string_view name, std::string_view key, skin_form form) -> std::string {
            for (const section& one : m_sections) {
                if (!Same(one.name, name))
                    continue;
                for (const entry& found : one.entries)
                    if (Same(found.key, key))
                        return found.value.substr(0, RoomFor(form) - 1);
                return {};
            }
            return {};
        };
    }

private:
    static std::string_view Trimmed(std::string_view text)
    {
        const std::size_t first = text.find_first_not_of(" \t");
        if (first == std::string_view::npos)
            return {};
        return text.substr(first, text.find_last_not_of(" \t") - first + 1);
    }
    void Take(std::string_view line, std::size_t number)
    {
        if (line.empty() || line.front() == ';')
            return;
        if (const std::size_t end = line.find(']'); line.front() == '[' && end != std::string_view::npos) {
            m_sections.push_back({std::string(Trimmed(line.substr(1, end - 1))), number, {}});
            return;
        }
        if (m_sections.empty()) {
            m_lost_lines.push_back(number);
            return;
        }
        const std::size_t equals = line.find('=');
        std::string_view value =
            equals == std::string_view::npos ? std::string_view() : Trimmed(line.substr(equals + 1));
        // One pair of quotes around a value is no part of it.
        if (value.size() > 1 && (value.front() == '"' || value.front() == '\'') && value.front() == value.back())
            value = value.substr(1, value.size() - 2);
        m_sections.back().entries.push_back({std::string(Trimmed(line.substr(0, equals))), std::string(value), number});
    }

    std::vector<section> m_sections;
    std::vector<std::size_t> m_lost_lines;
};

} // namespace vh
