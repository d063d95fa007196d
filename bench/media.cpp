// Media: items by path, a walk over all features, and media that scripts build.
#include <algorithm>
#include <memory>
#include <random>

#include "areas.h"
#include "modules.h"
#include "null_engine.h"

namespace bench {

namespace {

constexpr const wchar_t* data = L"DATA";

// An engine of its own for each side, and a context on it.
struct product {
    product(const module& side, long parents, long children)
        : host(vh::make_object<null_host>(parents, children)), services(vh::make_object<null_services>()),
          context(side, host.get(), services.get())
    {
    }

    vh::com_ptr<null_host> host;
    vh::com_ptr<null_services> services;
    bench::context context;
};

// Asks for every item in an order that no cache foresees.
work AskAll(const module& side, long items)
{
    const auto made = std::make_shared<product>(side, items / 100, 99);
    std::vector<std::wstring> paths = made->host->paths();
    std::ranges::shuffle(paths, std::mt19937(1));
    const auto ask = BENCH_GET(side, _ComponentIsItemSelected);
    for (const std::wstring& path : paths)
        ask(made->context, data, path.c_str());
    return {[made, ask, paths = std::move(paths)](long count) {
        int32_t sum = 0;
        for (std::size_t at = 0; count > 0; --count, at = at + 1 == paths.size() ? 0 : at + 1)
            sum += ask(made->context, data, paths[at].c_str());
        Keep(sum);
    }};
}

void CountLookUps(suite& s)
{
    const product made(Library(), 10, 10);
    const auto ask = BENCH_GET(Library(), _ComponentIsItemSelected);
    const auto all = [&] {
        null_features::named_calls = 0;
        for (const std::wstring& path : made.host->paths())
            ask(made.context, data, path.c_str());
        return null_features::named_calls;
    };
    s.Count("engine's Item by name, 110 paths, first time", 110, all());
    s.Count("the same, second time", 0, all());
}

// What a script does to show the features: the children of every parent, and name, state and size of each.
work WalkLibrary(std::shared_ptr<product> made)
{
    return {[made](long count) {
        const auto create = BENCH_GET(Library(), _ListCreate);
        const auto destroy = BENCH_GET(Library(), _ListDestroy);
        const auto items_of = BENCH_GET(Library(), _ComponentListItems);
        const auto first = BENCH_GET(Library(), _ListGetFirstString);
        const auto next = BENCH_GET(Library(), _ListGetNextString);
        const auto get = BENCH_GET(Library(), _ComponentGetData);
        const auto selected = BENCH_GET(Library(), _ComponentIsItemSelected);
        const auto size_of = BENCH_GET(Library(), _ComponentGetItemSize);
        constexpr int32_t display_name = 15;
        const auto each = [&](const wchar_t* parent, auto&& visit) {
            ListHandle list = create(made->context, ListTypeString);
            items_of(made->context, data, parent, list);
            wchar_t path[512];
            for (auto code = first(made->context, list, path, 512); code == 0;
                 code = next(made->context, list, path, 512)) {
                wchar_t text[256];
                int32_t number = 0;
                get(made->context, data, path, display_name, &number, text, 256);
                size_of(made->context, data, path, &number);
                Keep(selected(made->context, data, path) + number);
                Keep(text[0]);
                visit(path);
            }
            destroy(made->context, &list);
        };
        for (; count > 0; --count)
            each(L"", [&](const wchar_t* parent) { each(parent, [](const wchar_t*) {}); });
    }};
}

// The engine calls that such a walk can't do without.
work WalkEngine(std::shared_ptr<product> made)
{
    const auto each = [](ISetupFeatures* collection, auto&& visit) {
        long children = 0;
        collection->Count(&children);
        for (long index = 1; index <= children; ++index) {
            VARIANT place;
            place.vt = VT_I4;
            place.lVal = index;
            vh::com_ptr<ISetupFeature> feature;
            collection->Item(place, feature.put());
            vh::bstr name, text;
            feature->GetName(name.put());
            feature->GetDisplayName(text.put());
            short selected = 0;
            unsigned long low = 0, high = 0;
            feature->GetSelected(&selected);
            feature->GetSize(VARIANT_FALSE, &low, &high);
            Keep(selected + low);
            Keep(text.get());
            visit(feature.get());
        }
    };
    return {[made, each](long count) {
        for (; count > 0; --count)
            each(&made->host->features(), [&](ISetupFeature* feature) {
                vh::com_ptr<ISetupFeatures> below;
                feature->GetChildren(below.put());
                each(below.get(), [](ISetupFeature*) {});
            });
    }};
}

struct script_api {
    explicit script_api(const module& side)
        : context(side), add(BENCH_GET(side, _ComponentAddItem)), total(BENCH_GET(side, _ComponentTotalSize))
    {
    }

    bench::context context;
    decltype(&_ComponentAddItem) add;
    decltype(&_ComponentTotalSize) total;
};

constexpr const wchar_t* script = L"Script";

// Items of two levels, 99 below each parent; or all siblings.
std::vector<std::wstring> ScriptPaths(long items, bool flat)
{
    std::vector<std::wstring> paths;
    for (long i = 0; i < items; ++i) {
        const std::wstring parent = L"Parent " + std::to_wstring(flat ? i : i / 100);
        paths.push_back(i % 100 == 0 || flat ? parent : parent + L"\\Item " + std::to_wstring(i % 100));
    }
    return paths;
}

// Adds all items to a media that is new in every round.
work AddAll(const module& side, long items, bool flat)
{
    const auto api = std::make_shared<std::unique_ptr<script_api>>();
    work made{[api, paths = ScriptPaths(items, flat)](long) {
        for (const std::wstring& path : paths)
            (*api)->add((*api)->context, script, path.c_str(), 1000, 1);
    }};
    made.before = [api, &side] { *api = std::make_unique<script_api>(side); };
    made.after = [api] { api->reset(); };
    made.units = items;
    return made;
}

work Total(const module& side, long items)
{
    const auto api = std::make_shared<script_api>(side);
    for (const std::wstring& path : ScriptPaths(items, false))
        api->add(api->context, script, path.c_str(), 1000, 1);
    work made{[api](long) { Keep(api->total(api->context, script, L"", 1, 1, 0)); }};
    made.units = items;
    return made;
}

} // namespace

void Media(suite& s)
{
    struct {
        long items;
        std::optional<double> goal;
    } cases[] = {{1000, {}}, {10000, 1.0}, {100000, {}}};
    for (const auto& [items, goal] : cases) {
        if (s.quick() && items > 10000)
            continue;
        s.Compare("a known path of " + std::to_string(items) + ", to a map", goal, AskAll(Library(), items),
                  AskAll(Floor(), items));
    }
    CountLookUps(s);
}

void Walk(suite& s)
{
    const auto made = std::make_shared<product>(Library(), 20, 20);
    const work library = WalkLibrary(made);
    const work engine = WalkEngine(made);
    s.Compare("20 x 20 features, to bare engine calls", 2.5, library, engine);
    const auto calls_of = [](const work& walk) {
        const long before = null_features::all_calls;
        walk.run(1);
        return null_features::all_calls - before;
    };
    s.AtMost("engine calls of a walk, as many as the bare ones", calls_of(engine), calls_of(library));
}

void ScriptMedia(suite& s)
{
    const long items = s.quick() ? 2000 : 20000;
    s.Compare("add an item, to a tree of maps", 1.2, AddAll(Library(), items, false), AddAll(Floor(), items, false));
    s.Compare("total of all, to a tree of maps", 1.2, Total(Library(), items), Total(Floor(), items));
    s.Growth("add to 10^5 siblings, to 10^4, per item", AddAll(Library(), 100000, true),
             AddAll(Library(), 10000, true));
}

} // namespace bench
