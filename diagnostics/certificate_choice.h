// How a person names the certificate to sign with: "*STORE*LOCATION:SUBJECT?HASH", or the path of a PFX file.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vh {

struct certificate_choice {
    // Of a PFX file; then the rest says nothing.
    std::wstring path;
    std::wstring store = L"MY";
    std::wstring location = L"User";
    // A subject text, or the digits of a thumbprint.
    std::wstring certificate;
    bool thumbprint = false;
    // 1 SHA-1, 2 SHA-256, 3 both, 0 not said.
    int hash = 0;
};

inline certificate_choice ReadCertificateChoice(std::wstring_view text)
{
    constexpr std::pair<std::wstring_view, int> hashes[] = {{L"sha1", 1}, {L"sha256", 2}, {L"sha2", 2}, {L"dual", 3}};
    certificate_choice choice;
    if (!text.starts_with(L'*')) {
        choice.path = text;
        return choice;
    }
    text.remove_prefix(1);
    // What stands before a sign that may be missing.
    const auto cut = [&text](wchar_t sign, std::wstring& part) {
        if (const std::size_t at = text.find(sign); at != text.npos) {
            part = text.substr(0, at);
            text.remove_prefix(at + 1);
        }
    };
    cut(L'*', choice.store);
    cut(L':', choice.location);
    if (const std::size_t at = text.find(L'?'); at != text.npos) {
        for (const auto& [name, number] : hashes)
            if (text.substr(at + 1) == name)
                choice.hash = number;
        text = text.substr(0, at);
    }
    choice.thumbprint = text.starts_with(L'|');
    choice.certificate = text.substr(choice.thumbprint ? 1 : 0);
    return choice;
}

// The bytes of hexadecimal digits, blanks between them passed over. Nothing for other text.
inline std::optional<std::vector<unsigned char>> ReadThumbprint(std::wstring_view text)
{
    std::vector<unsigned char> bytes;
    bool half = false;
    for (const wchar_t unit : text) {
        if (unit == L' ')
            continue;
        constexpr std::wstring_view digits = L"0123456789abcdef";
        const std::size_t digit = digits.find(unit >= L'A' && unit <= L'F' ? wchar_t(unit - L'A' + L'a') : unit);
        if (digit == digits.npos)
            return std::nullopt;
        if (half)
            bytes.back() = static_cast<unsigned char>(bytes.back() << 4 | static_cast<int>(digit));
        else
            bytes.push_back(static_cast<unsigned char>(digit));
        half = !half;
    }
    if (half || bytes.empty())
        return std::nullopt;
    return bytes;
}

} // namespace vh
