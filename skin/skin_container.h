// The file of a skin: entries with a name and bytes, scrambled as a whole. Platform-free.
#pragma once

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vh {

// Eight bytes: the pass phrase, and a number over it twice.
inline constexpr std::array<uint8_t, 8> skin_key = [] {
    constexpr std::string_view phrase = "OLD TIDE";
    constexpr uint32_t number = 0x5AC3961F;
    std::array<uint8_t, 8> key{};
    for (std::size_t i = 0; i < key.size(); ++i)
        key[i] = static_cast<uint8_t>(static_cast<uint8_t>(phrase[i]) ^ (number >> i % 4 * 8));
    return key;
}();

// In place; the two undo each other.
constexpr void DescrambleSkin(std::span<std::byte> bytes)
{
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto stored = static_cast<uint8_t>(bytes[i]);
        const auto turned = static_cast<uint8_t>(stored >> 4 | stored << 4);
        bytes[i] = static_cast<std::byte>(static_cast<uint8_t>(~(turned ^ skin_key[i % skin_key.size()])));
    }
}
constexpr void ScrambleSkin(std::span<std::byte> bytes)
{
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto keyed = static_cast<uint8_t>(~static_cast<uint8_t>(bytes[i]) ^ skin_key[i % skin_key.size()]);
        bytes[i] = static_cast<std::byte>(static_cast<uint8_t>(keyed >> 4 | keyed << 4));
    }
}

// The entry that holds the skin's text; its name counts without regard to case.
inline constexpr std::string_view skin_text_name = "skin.ini";
constexpr bool IsSkinText(std::string_view name)
{
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    std::size_t i = 0;
    while (i < name.size() && i < skin_text_name.size() && lower(name[i]) == skin_text_name[i])
        ++i;
    return i == skin_text_name.size() && i == name.size();
}

// Calls visit(name, bytes) for each entry of a descrambled file. False when the file ends inside an entry or a size is
// no number; what stands before has been visited.
template <class Visit>
bool ForEachSkinEntry(std::span<const std::byte> bytes, Visit&& visit)
{
    std::string_view rest(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const auto take = [&rest](std::string_view& text) {
        const std::size_t end = rest.find('\0');
        if (end == std::string_view::npos)
            return false;
        text = rest.substr(0, end);
        rest.remove_prefix(end + 1);
        return true;
    };
    while (!rest.empty()) {
        std::string_view name;
        std::string_view digits;
        std::size_t size = 0;
        if (!take(name) || !take(digits))
            return false;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), size);
        if (error != std::errc() || end != digits.data() + digits.size() || size > rest.size())
            return false;
        visit(name, bytes.last(rest.size()).first(size));
        rest.remove_prefix(size);
    }
    return true;
}

// Adds an entry to a file that is not scrambled yet.
inline void AddSkinEntry(std::vector<std::byte>& file, std::string_view name, std::span<const std::byte> bytes)
{
    const std::string head = std::string(name) + '\0' + std::to_string(bytes.size()) + '\0';
    const auto* first = reinterpret_cast<const std::byte*>(head.data());
    file.insert(file.end(), first, first + head.size());
    file.insert(file.end(), bytes.begin(), bytes.end());
}

} // namespace vh
