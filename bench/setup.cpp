// Whole installations by the embedded engine, against a bare program that makes the same files and log.
#include <algorithm>

#include "../tests/support/temp_folder.h"
#include "areas.h"
#include "setup_product.h"

namespace bench {

namespace {

constexpr int rounds = 3;

work Installed(const product& p)
{
    return {[&p](long) { p.Run(); }, [&p] { p.Clear(); }, {}, p.files(), rounds};
}

work Copied(const product& p, const std::string& log)
{
    return {[&p, &log](long) { p.InstallBare(log); }, [&p] { p.Clear(); }, {}, p.files(), rounds};
}

std::string Named(shape of) { return std::to_string(of.files) + " files of " + std::to_string(of.size >> 10) + " KB"; }

// The product is installed by the host, and stays as it is.
void NothingToDo(suite& s, const product& p)
{
    s.Compare("a run with nothing to do, to a walk", 1.5, {[&](long) { p.Run(); }, {}, {}, p.files(), 2 * rounds + 1},
              {[&](long) { p.Walk(); }, {}, {}, p.files(), 2 * rounds + 1});
}

// A unit is a megabyte.
void Large(suite& s, const vh::test::TempFolder& folder, long size)
{
    const product one(folder / L"one", {1, static_cast<std::size_t>(size) << 20});
    one.Run();
    const std::string log = one.Log();
    work installed = Installed(one);
    work copied = Copied(one, log);
    installed.units = copied.units = size;
    const long part = std::max(size / 8, 1L);
    const work hashed{[](long count) { HashBare(static_cast<std::size_t>(count) << 20); }, {}, {}, part, rounds};
    const work sides[] = {installed, copied, hashed};
    const row rows[] = {{"one file of " + std::to_string(size) + " MB", 1.1, 0, 1},
                        {"SHA-256 alone, to the bare copy", {}, 2, 1},
                        {"the run, to SHA-256 alone", {}, 0, 2}};
    s.Compare(sides, rows);
    one.Clear();
}

} // namespace

void Setups(suite& s)
{
    const vh::test::TempFolder folder;
    const std::size_t less = s.quick() ? 10 : 1;
    const shape few_shape{static_cast<long>(2000 / less), 4096};
    const shape many_shape{static_cast<long>(20000 / less), 1024};
    const product few(folder / L"few", few_shape);
    const product many(folder / L"many", many_shape);
    few.RunHost();
    const std::string few_log = few.Log();
    const auto memory = many.RunHost();
    const std::string many_log = many.Log();
    s.AtMost("MB of vhhost's own, " + Named(many_shape), 40, static_cast<long>(memory.of_its_own >> 20));
    s.Leave("its working set, libraries included", std::to_string(memory.working >> 20) + " MB");
    NothingToDo(s, many);
    const work sides[] = {Installed(few), Copied(few, few_log), Installed(many), Copied(many, many_log)};
    const row rows[] = {{Named(few_shape), 1.3, 0, 1},
                        {Named(many_shape), 1.3, 2, 3},
                        {"the latter to the former, for each file", 1.2, 2, 0}};
    s.Compare(sides, rows);
    few.Clear();
    many.Clear();
    Large(s, folder, s.quick() ? 16 : 1024);
}

} // namespace bench
