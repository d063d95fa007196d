// Selection in media that scripts build, against a plain model.
#include <map>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "../../exports/vhrt/components.h"
#include "../support/bare_context.h"

using vh::test::BareContext;

namespace {

constexpr const wchar_t* media = L"Script";

// Selection by path, with every ancestor looked at anew.
class Model {
public:
    bool Add(const std::wstring& path, bool selected)
    {
        if (m_selected.contains(path))
            return false;
        for (std::size_t slash = path.find(L'\\'); slash != path.npos; slash = path.find(L'\\', slash + 1))
            m_selected.try_emplace(path.substr(0, slash), false);
        m_selected[path] = selected;
        FollowChildren(path, selected);
        return true;
    }
    bool Select(const std::wstring& path, bool selected)
    {
        if (!m_selected.contains(path))
            return false;
        for (auto& [other, state] : m_selected)
            if (other == path || other.starts_with(path + L"\\"))
                state = selected;
        FollowChildren(path, selected);
        return true;
    }
    const std::map<std::wstring, bool>& all() const { return m_selected; }

private:
    void FollowChildren(const std::wstring& path, bool selected)
    {
        const std::size_t slash = path.find(L'\\');
        if (slash == path.npos)
            return;
        const std::wstring top = path.substr(0, slash);
        bool any = false;
        for (const auto& [other, state] : m_selected)
            any = any || (state && other.starts_with(top + L"\\") && other.find(L'\\', slash + 1) == other.npos);
        if (any == selected)
            m_selected[top] = selected;
    }

    std::map<std::wstring, bool> m_selected;
};

std::wstring RandomPath(std::mt19937& random)
{
    std::wstring path(1, static_cast<wchar_t>(L'A' + random() % 3));
    for (auto depth = random() % 3; depth > 0; --depth)
        path += std::wstring(L"\\") + static_cast<wchar_t>(L'a' + random() % 3);
    return path;
}

} // namespace

TEST(ScriptMedia, SelectsAsAPlainModelDoes)
{
    for (unsigned seed = 1; seed <= 50; ++seed) {
        std::mt19937 random(seed);
        BareContext context;
        Model model;
        for (int step = 0; step < 60; ++step) {
            const std::wstring path = RandomPath(random);
            const bool selected = random() % 2 != 0;
            if (random() % 2) {
                const bool added = model.Add(path, selected);
                // On a media that is there already the code comes unmapped.
                const auto exists = static_cast<int32_t>(0x8004F066);
                ASSERT_EQ(_ComponentAddItem(context, media, path.c_str(), 1, selected), added ? 0 : exists);
            } else {
                const bool known = model.Select(path, selected);
                const int32_t missing = model.all().empty() ? -132 : -105;
                ASSERT_EQ(_ComponentSelectItem(context, media, path.c_str(), selected), known ? 0 : missing);
            }
            for (const auto& [item, state] : model.all())
                ASSERT_EQ(_ComponentIsItemSelected(context, media, item.c_str()), state ? 1 : 0)
                    << "seed " << seed << ", step " << step;
        }
    }
}
