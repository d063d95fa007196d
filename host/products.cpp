#include "products.h"

#include "console.h"
#include "engine/machine_folder.h"

namespace host {

namespace {

using vh::engine::InstalledProduct;

std::vector<InstalledProduct> AllProducts(const std::wstring& data_folder)
{
    std::vector<InstalledProduct> products;
    for (const std::wstring& folder : DataFolders(data_folder))
        for (InstalledProduct& product : vh::engine::InstalledProducts(folder))
            products.push_back(std::move(product));
    return products;
}

} // namespace

std::vector<std::wstring> DataFolders(const std::wstring& data_folder)
{
    if (!data_folder.empty())
        return {data_folder};
    return {vh::engine::DefaultDataDir(false), vh::engine::DefaultDataDir(true)};
}

std::optional<InstalledProduct> FindProduct(const std::wstring& guid, const std::wstring& data_folder)
{
    for (const InstalledProduct& product : AllProducts(data_folder))
        if (vh::engine::SameText(product.guid, guid)) {
            vh::engine::RequireTrusted(product.logFile, vh::engine::DefaultDataDir(true));
            return product;
        }
    return std::nullopt;
}

ExitCode CodeOf(const vh::engine::engine_error& error)
{
    return dynamic_cast<const vh::engine::untrusted_error*>(&error) ? exit_rights : exit_setup;
}

namespace {

// A log that was cut to nothing, or that tells of a run only which never came to its end, knows no name.
std::wstring NameOf(const InstalledProduct& product)
{
    if (!product.name.empty())
        return product.name + L" " + product.version;
    return product.unfinished ? L"a first installation" : L"its log is empty or damaged; --uninstall takes it away";
}

} // namespace

ExitCode ListProducts(const std::wstring& data_folder)
{
    const auto products = AllProducts(data_folder);
    for (const InstalledProduct& product : products)
        Say(product.guid + L"  " + NameOf(product) + (product.forMachine ? L"  for all users" : L"") +
            (product.target.empty() ? L"" : L"  in " + product.target) +
            (product.unfinished ? L"  (unfinished: the next run undoes it)" : L""));
    Say(std::to_wstring(products.size()) + (products.size() == 1 ? L" product" : L" products") + L" installed");
    return exit_done;
}

} // namespace host
