// Reads arbitrary bytes as a registration script; one that is taken is written out and read again.
#include "../system/registration_script.h"
#include "fuzz.h"

namespace {

void Write(const vh::script_key& key, std::string& text)
{
    text += "{\r\n";
    for (const auto& [name, data] : key.values)
        text.append("val '").append(name).append("' = s '").append(data).append("'\r\n");
    for (const vh::script_key& child : key.children) {
        text.append(child.no_remove ? "NoRemove " : child.force_remove ? "ForceRemove " : "");
        text.append("'").append(child.name).append("'\r\n");
        Write(child, text);
        text += "\r\n";
    }
    text += "}";
}

} // namespace

void Fuzz(const std::uint8_t* data, std::size_t size)
{
    const std::vector<char> exact(data, data + size);
    vh::RegistrationScript script;
    vh::script_fault fault;
    if (!script.Parse({exact.data(), exact.size()}, fault)) {
        Require(fault.reason && fault.line >= 1 && fault.column >= 1 && fault.column <= size + 1);
        Require(script.root == vh::script_key());
        return;
    }
    // A name with a quote in it can't be written.
    std::string text = "HKCR\r\n";
    Write(script.root, text);
    script.replacements["x"] = "y";
    Require(script.Replaced(text).size() + 3 >= text.size());
    if (std::count(exact.begin(), exact.end(), '\'') == 0) {
        vh::RegistrationScript again;
        Require(again.Parse(text, fault) && again.root == script.root);
    }
}
