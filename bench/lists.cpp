// Lists: look-up by handle, append, next, find and growth.
#include <algorithm>
#include <cstring>
#include <list>
#include <memory>
#include <random>

#include "../scriptdata/bstr.h"
#include "areas.h"
#include "counting.h"
#include "lists.h"

namespace bench {

namespace {

constexpr long many = 1000000;
constexpr wchar_t twenty[] = L"twenty units of text";
constexpr int32_t vector_type = 1;

// Counts every live list once a round, in an order that no cache foresees.
work CountAll(std::shared_ptr<lists_api> api, std::vector<ListHandle> handles)
{
    return {[api, handles = std::move(handles)](long units) {
        int64_t sum = 0;
        for (std::size_t at = 0; units > 0; --units, at = at + 1 == handles.size() ? 0 : at + 1)
            sum += api->count(api->context, handles[at]);
        Keep(sum);
    }};
}

std::vector<ListHandle> MakeLists(const lists_api& api, std::size_t count)
{
    std::vector<ListHandle> handles(count);
    for (ListHandle& handle : handles)
        handle = api.create(api.context, ListTypeNumber);
    std::ranges::shuffle(handles, std::mt19937(1));
    return handles;
}

// Appends to a list that is new in every round.
work AppendCold(std::shared_ptr<filled_list> list, long units)
{
    work made{[list](long count) { list->Append(count); }};
    made.before = [list] { list->Create(); };
    made.after = [list] { list->Destroy(); };
    made.units = units;
    return made;
}

// The same on one that was as full before.
work AppendWarm(std::shared_ptr<filled_list> list, long units)
{
    list->Create();
    list->Append(units);
    work made{[list](long count) { list->Append(count); }};
    made.before = [list] { list->Clear(); };
    made.units = units;
    return made;
}

template <class T, class Value>
work AppendBare(Value value, long units)
{
    auto bare = std::make_shared<std::list<T>>();
    work made{[bare, value](long count) {
        for (; count > 0; --count)
            bare->emplace_back(value);
    }};
    made.before = [bare] { bare->clear(); };
    made.after = made.before;
    made.units = units;
    return made;
}

// Only the blocks that texts of 20 units stand in: what a text can't cost less than.
work KeepBstrs(long units)
{
    const auto kept = std::make_shared<std::vector<vh::bstr>>(static_cast<std::size_t>(units));
    work made{[kept](long count) {
        for (auto at = kept->begin(); count > 0; --count, ++at) {
            constexpr UINT room = 24;
            at->attach(SysAllocStringLen(nullptr, room));
            std::memcpy(at->get(), twenty, sizeof(twenty));
        }
    }};
    made.before = [kept] {
        for (vh::bstr& text : *kept)
            text.attach(nullptr);
    };
    made.after = made.before;
    made.units = units;
    return made;
}

work NextWalk(std::shared_ptr<filled_list> list, long units)
{
    list->Create();
    list->Append(units);
    work made{[list](long count) { list->Next(count - 1); }};
    made.before = [list] { list->First(); };
    made.units = units;
    return made;
}

work EmptyCalls()
{
    using Empty = int64_t(ObjectContext*, ListHandle, int32_t*);
    return {[call = Floor().Get<Empty>("EmptyCall")](long count) {
        int32_t value = 0;
        for (; count > 0; --count)
            Keep(call(nullptr, 1, &value));
    }};
}

// One search over the whole list, to a last element that none before it equals.
work FindLast(std::shared_ptr<filled_list> list, long units)
{
    list->Create();
    list->Append(units - 1);
    list->AppendLast();
    work made{[list](long) { list->FindLast(); }};
    made.before = [list] { list->First(); };
    made.units = units;
    return made;
}

work Sweep(std::shared_ptr<filled_list> list, long units, void (filled_list::*sweep)(long))
{
    list->Create();
    list->Append(units);
    work made{[=](long count) { (list.get()->*sweep)(count); }};
    made.before = [list] { list->First(); };
    made.units = units;
    return made;
}

// Deletes the elements of a full list one by one.
work DeleteOneByOne(std::shared_ptr<filled_list> list, long units)
{
    work made{[list](long count) { list->Delete(count); }};
    made.before = [list, units] {
        list->Create();
        list->Append(units);
    };
    made.after = [list] { list->Destroy(); };
    made.units = units;
    return made;
}

std::shared_ptr<filled_list> Numbers(const module& side, int32_t type = ListTypeNumber)
{
    return std::make_shared<filled_list>(side, type, nullptr);
}
std::shared_ptr<filled_list> Texts(const module& side)
{
    return std::make_shared<filled_list>(side, ListTypeString, twenty);
}

} // namespace

void Handles(suite& s)
{
    struct {
        long lists;
        std::optional<double> goal;
    } cases[] = {{1, 1.3}, {100, {}}, {10000, 0.4}};
    for (const auto& [lists, goal] : cases) {
        auto library = std::make_shared<lists_api>(Library());
        auto floor = std::make_shared<lists_api>(Floor());
        s.Compare("_ListCount, " + std::to_string(lists) + " lists, to a map", goal,
                  CountAll(library, MakeLists(*library, static_cast<std::size_t>(lists))),
                  CountAll(floor, MakeLists(*floor, static_cast<std::size_t>(lists))));
    }
}

void NumberLists(suite& s)
{
    const long n = s.quick() ? many / 10 : many;
    s.Compare("append, cold, to a bare std::list", 0.5, AppendCold(Numbers(Library()), n), AppendBare<int32_t>(5, n));
    s.Compare("append, warm, to an exported vector", 1.5, AppendWarm(Numbers(Library()), n),
              AppendWarm(Numbers(Floor(), vector_type), n));
    s.Compare("next, to empty calls", 2.5, NextWalk(Numbers(Library()), n), EmptyCalls());
    s.Compare("find, to a std::list", 1.1, FindLast(Numbers(Library()), n), FindLast(Numbers(Floor()), n));

    const auto list = Numbers(Library());
    list->Create();
    const call_counter blocks(Library().handle(), "malloc");
    list->Append(many);
    s.AtMost("blocks taken for 10^6 numbers", 1000, blocks.calls());
}

void TextLists(suite& s)
{
    const long n = s.quick() ? many / 100 : many / 10;
    s.Compare("append, 20 units, to list<wstring>", 0.8, AppendCold(Texts(Library()), n),
              AppendBare<std::wstring>(twenty, n));
    s.Compare("the same, to bare BSTRs", {}, AppendCold(Texts(Library()), n), KeepBstrs(n));
    s.Compare("next, to an exported list<wstring>", 1.2, NextWalk(Texts(Library()), n), NextWalk(Texts(Floor()), n));
    s.Compare("find, to an exported list<wstring>", 1.1, FindLast(Texts(Library()), n), FindLast(Texts(Floor()), n));

    const auto list = Texts(Library());
    list->Create();
    list->Append(1);
    const call_counter texts(Library().handle(), "SysAllocStringLen");
    list->Append(1000);
    s.Count("BSTRs taken for 1000 texts", 1000, texts.calls());
}

void ListGrowth(suite& s)
{
    for (const long n : {1000L, 10000L, 30000L}) {
        const std::string size = ", n = " + std::to_string(n) + ", to next";
        s.Compare("_ListSetIndex sweep" + size, 3.0, Sweep(Numbers(Library()), n, &filled_list::SetEachIndex),
                  NextWalk(Numbers(Library()), n));
        s.Compare("next and _ListGetIndex" + size, 3.0, Sweep(Numbers(Library()), n, &filled_list::AskEachIndex),
                  NextWalk(Numbers(Library()), n));
    }
    constexpr long small = 50000;
    struct {
        const char* name;
        std::function<work(long)> make;
    } cases[] = {
        {"append", [](long n) { return AppendCold(Numbers(Library()), n); }},
        {"next", [](long n) { return NextWalk(Numbers(Library()), n); }},
        {"delete", [](long n) { return DeleteOneByOne(Numbers(Library()), n); }},
        {"append a text", [](long n) { return AppendCold(Texts(Library()), n / 5); }},
    };
    for (const auto& [name, make] : cases)
        s.Growth(std::string(name) + ", 10 N to N, per element", make(10 * small), make(small));

    const auto api = std::make_shared<lists_api>(Library());
    const auto count_of = [&](long n) {
        filled_list list(Library(), ListTypeNumber, nullptr);
        const ListHandle handle = api->create(api->context, ListTypeNumber);
        for (long i = 0; i < n; ++i)
            api->add_item(api->context, handle, 5, ListAddAfter);
        return CountAll(api, {handle});
    };
    s.Growth("_ListCount, 10 N to N elements", count_of(10 * small), count_of(small));
}

} // namespace bench
