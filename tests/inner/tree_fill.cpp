// How a media fills a tree view through its seam.
#include "../../media/media_error.h"
#include "../../media/script_media.h"
#include "../support/test.h"

namespace {

// Notes each node as "depth label state children".
class NotedTree final : public vh::tree_fill {
public:
    vh::tree_item Insert(vh::tree_item parent, const vh::tree_node& node) override
    {
        const int depth = parent ? m_depths[static_cast<size_t>(parent - 1)] + 1 : 0;
        m_depths.push_back(depth);
        text += std::wstring(static_cast<size_t>(depth < 10 ? depth : 10), L'.') + std::wstring(node.label) +
                (node.selected ? L"+" : L"-") + std::to_wstring(node.visible_children) + L" ";
        return refuse ? 0 : static_cast<vh::tree_item>(m_depths.size());
    }
    void EnsureVisible(vh::tree_item item) override { shown.push_back(item); }
    ISetupBasicFeatureStateEvents* Events() override { return nullptr; }
    void KeepCookie(vh::tree_item item, int32_t) override { subscribed.push_back(item); }

    std::wstring text;
    std::vector<vh::tree_item> shown;
    std::vector<vh::tree_item> subscribed;
    bool refuse = false;

private:
    std::vector<int> m_depths;
};

TEST(TreeFill, ShowsVisibleItemsToTheDepthAskedFor)
{
    CVHScriptMedia media;
    for (const auto& [item, selected] :
         {std::pair(L"a", true), {L"a\\hidden", true}, {L"a\\b", false}, {L"a\\b\\c", false}, {L"d", false}})
        media.AddItem(item, 1, selected);
    media.SetData(L"a\\hidden", vh::attribute_visible, 0, L"", nullptr);
    media.SetData(L"d", vh::attribute_display_name, 0, L"The last", nullptr);
    Table<int32_t, const wchar_t*> cases = {{0, L""},
                                            {1, L"-2 "},
                                            {2, L"-2 .a+1 .The last-0 "},
                                            {3, L"-2 .a+1 ..b-1 .The last-0 "},
                                            {9, L"-2 .a+1 ..b-1 ...c-0 .The last-0 "}};
    for (const auto& [depth, text] : cases) {
        NotedTree tree;
        EXPECT_EQ(media.AddTreeItem(tree, L"", 0, depth), 0);
        EXPECT_EQ(tree.text, text) << depth;
        const auto nodes = std::ranges::count_if(tree.text, [](wchar_t c) { return c == L'+' || c == L'-'; });
        EXPECT_EQ(std::ssize(tree.subscribed), nodes - (depth != 0)) << "all but the top, which has no item";
        EXPECT_EQ(tree.shown.size(), depth < 2 ? 0u : depth == 2 ? 1u : depth == 3 ? 2u : 3u);
    }
    NotedTree hidden;
    EXPECT_GIVES(media.AddTreeItem(hidden, L"a\\hidden", 0, 1), 0, hidden.text, L"");
    EXPECT_EQ(media.AddTreeItem(hidden, L"none", 0, 1), vh::media_no_item);
    EXPECT_EQ(CVHRTMediaError::ErrorMedia().AddTreeItem(hidden, L"", 0, 1), vh::media_no_media);
    NotedTree refusing;
    refusing.refuse = true;
    EXPECT_EQ(media.AddTreeItem(refusing, L"", 0, 2), 0);
    EXPECT_EQ(refusing.text, L"-2 a+1 b-1 c-0 The last-0 ") << "a level that could not be shown costs none";
}

TEST(TreeFill, GoesToAnyDepth)
{
    CVHScriptMedia media;
    std::wstring path = L"a";
    for (int i = 1; i < 3000; ++i)
        path += L"\\a";
    media.AddItem(path, 1, true);
    NotedTree tree;
    EXPECT_EQ(media.AddTreeItem(tree, L"", 0, -1), 0);
    EXPECT_EQ(tree.shown.size(), 3000u) << "each node above the last, the root's included";
}

} // namespace
