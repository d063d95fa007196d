// Media that scripts build: finding, order and selection, against a plain model.
#include <map>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "../../exports/vhrt/components.h"
#include "../support/bare_context.h"

using vh::test::BareContext;
using vh::test::ListText;

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

TEST(AScriptMedia, SelectsAsAPlainModelDoes)
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

TEST(AScriptMedia, KeepsManySiblingsInOrderAndFindsEachByItsExactName)
{
    BareContext context;
    std::wstring expected;
    for (int i = 0; i < 500; ++i) {
        const std::wstring path = L"Top\\Item " + std::to_wstring(i * 7919 % 500);
        ASSERT_EQ(_ComponentAddItem(context, media, path.c_str(), i, 1), 0);
        expected += (i ? L"|" : L"") + path;
    }
    const ListHandle list = _ListCreate(context, ListTypeString);
    ASSERT_EQ(_ComponentListItems(context, media, L"Top", list), 0);
    EXPECT_EQ(ListText(context, list), expected);
    int32_t size = 0;
    for (int i = 0; i < 500; ++i) {
        const std::wstring path = L"Top\\Item " + std::to_wstring(i * 7919 % 500);
        ASSERT_EQ(_ComponentGetItemSize(context, media, path.c_str(), &size), 0);
        EXPECT_EQ(size, i);
    }
    EXPECT_EQ(_ComponentGetItemSize(context, media, L"Top\\item 1", &size), -105);
    EXPECT_EQ(_ComponentTotalSize(context, media, L"", 1, 1, 0), 499 * 500 / 2);
}

TEST(AScriptMedia, NamesItemsByTheirLastComponentUntilTheyGetADisplayName)
{
    constexpr int32_t description = 0, display_name = 15;
    BareContext context;
    wchar_t text[64];
    int32_t number = 0;
    const auto get = [&](const wchar_t* item, int32_t attribute) {
        EXPECT_EQ(_ComponentGetData(context, media, item, attribute, &number, text, 64), 0);
        return std::wstring(text);
    };
    ASSERT_EQ(_ComponentAddItem(context, media, L"Program\\Help files", 1, 1), 0);
    EXPECT_EQ(get(L"Program\\Help files", display_name), L"Help files");
    EXPECT_EQ(get(L"Program", description), L"");
    ASSERT_EQ(_ComponentSetData(context, media, L"Program", description, 0, L"All of it"), 0);
    EXPECT_EQ(get(L"Program", display_name), L"Program");
    ASSERT_EQ(_ComponentSetData(context, media, L"Program", display_name, 0, L"The program"), 0);
    EXPECT_EQ(get(L"Program", display_name), L"The program");
    EXPECT_EQ(get(L"Program", description), L"All of it");
}
