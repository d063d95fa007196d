// What can be wrong with a product beyond what a run refuses.
#include "../check.h"

#include <algorithm>
#include <set>

#include "../start_variables.h"
#include "product_reader.h"

namespace vh::engine {

namespace {

// Stands for what a pattern inside a name becomes, which nobody knows before the run.
constexpr wchar_t any_text = L'\x1';

// A text may hold "<" for other reasons: there, only what is written like a variable is taken for one.
bool LooksLikeVariable(std::wstring_view name)
{
    constexpr std::wstring_view letters = L"ABCDEFGHIJKLMNOPQRSTUVWXYZ_";
    return !name.empty() && letters.find(name.front()) != std::wstring_view::npos &&
           std::all_of(name.begin(), name.end(), [&](wchar_t c) {
               return letters.find(c) != std::wstring_view::npos || (c >= L'0' && c <= L'9');
           });
}

class PatternCheck {
public:
    explicit PatternCheck(const Product& product)
    {
        for (const StartVariable& variable : start_variables)
            m_variables.insert(variable.name);
        m_variables.insert(L"TARGETDIR");
        for (const auto& [name, value] : product.variables)
            m_variables.insert(Upper(name));
        for (const auto& [language, table] : product.strings)
            for (const auto& [id, text] : table)
                m_strings.insert(id);
    }

    void Look(const PatternUse& use, const JsonFile& json) const
    {
        std::wstring unknown;
        SubstituteText(use.text, [&](std::wstring_view name) -> std::optional<std::wstring> {
            if (Knows(Upper(name), use.kind))
                return std::wstring(1, any_text);
            if (use.kind == PatternKind::path || LooksLikeVariable(name))
                unknown.append(unknown.empty() ? L"<" : L", <").append(name).append(L">");
            return std::nullopt;
        });
        if (!unknown.empty())
            json.Fail(use.place, L"no variable" +
                                     std::wstring(use.kind == PatternKind::display ? L" and no string" : L"") + L": " +
                                     unknown + L"; what the script sets belongs into \"variables\" as well");
    }

private:
    bool Knows(const std::wstring& key, PatternKind kind) const
    {
        return m_variables.contains(key) || (kind == PatternKind::display && m_strings.contains(key)) ||
               key.find(any_text) != std::wstring::npos;
    }

    std::set<std::wstring> m_variables;
    std::set<std::wstring> m_strings;
};

// Whether a type selects the item, which selects those above it and below it as well.
bool IsReached(const Item& item, const std::set<const Item*>& listed)
{
    for (const Item* at = &item; at; at = at->parent)
        if (listed.contains(at))
            return true;
    bool below = false;
    ForEachItem(item, [&](const Item& each) { below = below || each.required || listed.contains(&each); });
    return below;
}

// Of features that belong together the topmost is named.
void LookForUnreached(const Item& parent, const std::set<const Item*>& listed, const JsonFile& json)
{
    for (const auto& child : parent.children) {
        if (child->pseudo)
            continue;
        if (IsReached(*child, listed))
            LookForUnreached(*child, listed, json);
        else
            json.Fail(child->place, L"no setup type selects the feature \"" + child->Path() + L"\"");
    }
}

void CheckReach(const Product& product, const JsonFile& json)
{
    std::set<const Item*> listed;
    for (const SetupType& type : product.setupTypes)
        for (const std::wstring& path : type.features)
            listed.insert(path == L"*" ? &product.data : product.Feature(path));
    if (!product.setupTypes.empty() && !listed.contains(&product.data))
        LookForUnreached(product.data, listed, json);
}

void Count(const Item& root, SetupCheck& check)
{
    ForEachItem(root, [&](const Item& item) {
        for (const FileGroup& group : item.groups)
            for (const ProductFile& file : group.files) {
                ++check.files;
                check.bytes += file.size;
            }
    });
}

} // namespace

std::wstring SetupFault::Text() const
{
    return file + (line ? L"(" + Number(line) + L"," + Number(column) + L")" : std::wstring()) + L": " + reason;
}

SetupCheck CheckSetup(const std::wstring& setupFolder)
{
    SetupCheck check;
    const std::wstring folder = FullPath(setupFolder);
    const JsonFile json(JoinPath(folder, L"product.json"), JsonFile::Faults::collected);
    std::vector<PatternUse> uses;
    const auto product = ReadProduct(json, &uses);
    const PatternCheck patterns(*product);
    for (const PatternUse& use : uses)
        patterns.Look(use, json);
    CheckReach(*product, json);
    for (JsonFault& fault : json.Found())
        check.faults.push_back({json.path(), fault.line, fault.column, fault.Text()});
    for (const std::wstring& script : product->scripts)
        check.scripts.push_back(JoinPath(folder, script));
    ForEachItem(std::as_const(product->data), [&](const Item& item) { check.features += item.parent && !item.pseudo; });
    Count(product->data, check);
    Count(product->support, check);
    return check;
}

} // namespace vh::engine
