#include "harness.h"

#include <algorithm>
#include <cstdio>

#include <windows.h>

namespace bench {

namespace {

constexpr int warm_ups = 2;
constexpr double slack = 1.10;
constexpr double control_low = 0.95;
constexpr double control_high = 1.05;

double Now()
{
    LARGE_INTEGER ticks, per_second;
    QueryPerformanceCounter(&ticks);
    QueryPerformanceFrequency(&per_second);
    return static_cast<double>(ticks.QuadPart) * 1e9 / static_cast<double>(per_second.QuadPart);
}

// Nanoseconds of one run, without its hooks.
double Time(const work& side, long units)
{
    if (side.before)
        side.before();
    const double start = Now();
    side.run(units);
    const double took = Now() - start;
    if (side.after)
        side.after();
    return took;
}

struct plan {
    long units;
    double once_ns;
};

// So much of the work that one run lasts long enough to be timed; a fixed amount stays as it is.
plan PlanFor(const work& side, double wanted_ns)
{
    plan made{side.units ? side.units : 1, Time(side, side.units ? side.units : 1)};
    while (!side.units && made.once_ns < wanted_ns) {
        const double factor = std::clamp(wanted_ns * 1.1 / std::max(made.once_ns, 1.0), 1.2, 1000.0);
        made.units = static_cast<long>(static_cast<double>(made.units) * factor) + 1;
        made.once_ns = Time(side, made.units);
    }
    return made;
}

} // namespace

quartiles QuartilesOf(std::vector<double> values)
{
    std::ranges::sort(values);
    const auto at = [&](double share) {
        const double place = share * static_cast<double>(values.size() - 1);
        const auto below = static_cast<std::size_t>(place);
        const std::size_t above = std::min(below + 1, values.size() - 1);
        return values[below] + (values[above] - values[below]) * (place - static_cast<double>(below));
    };
    return {at(0.25), at(0.5), at(0.75)};
}

std::vector<double> suite::rounds::PerRound(bool as_ratio) const
{
    std::vector<double> values(subject.size());
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = as_ratio ? subject[i] / baseline[i] : subject[i] - baseline[i];
    return values;
}

// A round is made of short slices of all sides in turn, so that what disturbs the machine disturbs all alike.
std::vector<std::vector<double>> suite::Alternate(std::span<const work> sides) const
{
    const double round_ns = m_quick ? 3e6 : 30e6;
    const bool once = sides.front().rounds; // a run of each is a round
    const int count = once ? sides.front().rounds : m_quick ? 5 : 21;
    constexpr int slices_wanted = 10;
    std::vector<plan> plans;
    double shortest = round_ns;
    for (const work& side : sides) {
        plans.push_back(once ? plan{side.units, round_ns} : PlanFor(side, round_ns / slices_wanted));
        shortest = std::min(shortest, std::max(plans.back().once_ns, 100.0));
    }
    const int slices = once ? 1 : static_cast<int>(round_ns / shortest) + 1;
    std::vector<std::vector<double>> measured(sides.size());
    for (int round = once ? 0 : -warm_ups; round < count; ++round) {
        std::vector<double> total(sides.size());
        for (int slice = 0; slice < slices; ++slice)
            for (std::size_t turn = 0; turn < sides.size(); ++turn) {
                const bool backwards = (round + warm_ups + slice) % 2;
                const std::size_t side = backwards ? sides.size() - 1 - turn : turn;
                total[side] += Time(sides[side], plans[side].units);
            }
        for (std::size_t side = 0; round >= 0 && side < sides.size(); ++side)
            measured[side].push_back(total[side] / (static_cast<double>(plans[side].units) * slices));
    }
    return measured;
}

suite::rounds suite::Alternate(const work& subject, const work& baseline) const
{
    const work sides[] = {subject, baseline};
    auto measured = Alternate(sides);
    return {std::move(measured[0]), std::move(measured[1])};
}

void suite::Area(std::string name)
{
    m_area = std::move(name);
    m_controlled = false;
    m_void = false;
    std::printf("\n%s\n", m_area.c_str());
}

// One bad control may be a neighbour on the machine; of three in a row none was good.
bool suite::Control(const work& baseline)
{
    quartiles ratio;
    for (int attempt = 0; attempt < 3; ++attempt) {
        ratio = QuartilesOf(Alternate(baseline, baseline).PerRound(true));
        if (m_quick || (ratio.median >= control_low && ratio.median <= control_high))
            break;
    }
    const bool good = m_quick || (ratio.median >= control_low && ratio.median <= control_high);
    std::printf("  %-46s %7.3f  %6.3f..%-6.3f          %s\n", "control: baseline against itself", ratio.median,
                ratio.low, ratio.high, good ? "" : "VOID");
    return good;
}

void suite::Compare(const std::string& name, std::optional<double> goal, const work& subject, const work& baseline)
{
    const work sides[] = {subject, baseline};
    const row rows[] = {{name, goal, 0, 1}};
    Compare(sides, rows);
}

void suite::Compare(std::span<const work> sides, std::span<const row> rows)
{
    if (!m_controlled) {
        m_controlled = true;
        m_void = !Control(sides[rows.front().baseline]);
    }
    const auto measured = Alternate(sides);
    for (const row& r : rows) {
        const rounds both{measured[r.subject], measured[r.baseline]};
        Report(r.name, "", QuartilesOf(both.PerRound(true)), r.goal, both);
    }
}

void suite::Extra(const std::string& name, double limit, const work& subject, const work& baseline)
{
    const rounds measured = Alternate(subject, baseline);
    Report(name, " ns", QuartilesOf(measured.PerRound(false)), limit, measured);
}

void suite::Report(const std::string& name, const std::string& unit, const quartiles& value, std::optional<double> goal,
                   const rounds& measured)
{
    const char* word = "";
    char limit[32] = "";
    if (goal) {
        std::snprintf(limit, sizeof(limit), "<= %.3g%s", *goal, unit.c_str());
        const bool met = value.median <= *goal;
        word = m_void ? "void" : met ? "met" : value.median <= *goal * slack ? "missed, within slack" : "MISSED";
        ++(m_void ? m_voided : met ? m_met : m_missed);
        if (!m_void && value.median > *goal * slack)
            ++m_failed;
    }
    std::printf("  %-46s %7.3f  %6.3f..%-6.3f %-9s %-20s %.4g / %.4g ns\n", name.c_str(), value.median, value.low,
                value.high, limit, word, QuartilesOf(measured.subject).median, QuartilesOf(measured.baseline).median);
    std::fflush(stdout);
}

void suite::CountRow(const std::string& name, long counted, const std::string& goal, bool met)
{
    ++(met ? m_met : m_missed);
    if (!met)
        ++m_failed;
    std::printf("  %-46s %7ld  %16s%-9s %s\n", name.c_str(), counted, "", goal.c_str(), met ? "met" : "MISSED");
    std::fflush(stdout);
}

void suite::Count(const std::string& name, long expected, long counted)
{
    CountRow(name, counted, "= " + std::to_string(expected), counted == expected);
}

void suite::AtMost(const std::string& name, long limit, long counted)
{
    CountRow(name, counted, "<= " + std::to_string(limit), counted >= 0 && counted <= limit);
}

void suite::Leave(const std::string& name, const std::string& why)
{
    std::printf("  %-46s %s\n", name.c_str(), why.c_str());
    std::fflush(stdout);
}

int suite::Finish() const
{
    std::printf("\n%d goals met, %d missed (%d beyond the slack of 10 %%), %d void%s\n", m_met, m_missed, m_failed,
                m_voided, m_quick ? "; a quick run gates nothing" : "");
    if (m_quick)
        return 0;
    return m_failed ? 1 : m_voided ? 2 : 0;
}

} // namespace bench
