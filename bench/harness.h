// Alternating measurement of the library against a baseline in the same process.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace bench {

// One side of a comparison. `run` does the given number of units and is timed; the hooks around it are not.
struct work {
    std::function<void(long)> run;
    std::function<void()> before = {};
    std::function<void()> after = {};
    // Units of one run when the container's size matters; 0 lets the harness choose.
    long units = 0;
    // Rounds, for work that takes many seconds and that no trial precedes; 0 lets the harness choose.
    int rounds = 0;
};

// A row about two of several works, by their places.
struct row {
    std::string name;
    std::optional<double> goal;
    std::size_t subject;
    std::size_t baseline;
};

// What one side cost in one round, per unit and in nanoseconds.
struct quartiles {
    double low = 0;
    double median = 0;
    double high = 0;
};
quartiles QuartilesOf(std::vector<double> values);

enum class verdict { met, missed, no_goal, voided };

class suite {
public:
    explicit suite(bool quick) : m_quick(quick) {}

    // Opens an area: its first comparison is preceded by a control of the baseline against itself.
    void Area(std::string name);

    // Gates the median of the per-round ratios of time per unit; without a goal it only reports.
    void Compare(const std::string& name, std::optional<double> goal, const work& subject, const work& baseline);
    // The same for works that take turns in the same rounds.
    void Compare(std::span<const work> sides, std::span<const row> rows);
    // Gates what the subject costs above the baseline, in nanoseconds per unit.
    void Extra(const std::string& name, double limit, const work& subject, const work& baseline);
    // Gates the growth from N to 10 N units at t(10 N) / t(N) <= 12: 1.2 per unit.
    void Growth(const std::string& name, const work& large, const work& small) { Compare(name, 1.2, large, small); }
    // Counts are free of noise and have to be exact, or at most the limit.
    void Count(const std::string& name, long expected, long counted);
    void AtMost(const std::string& name, long limit, long counted);
    // A row that says why its case is not measured.
    void Leave(const std::string& name, const std::string& why);

    bool quick() const { return m_quick; }
    // Prints the closing line. 0; 1 when a gate failed beyond the slack; 2 when a control voided its area.
    int Finish() const;

private:
    struct rounds {
        std::vector<double> subject;
        std::vector<double> baseline;
        std::vector<double> PerRound(bool as_ratio) const;
    };
    // Of each side what a unit cost in each round.
    std::vector<std::vector<double>> Alternate(std::span<const work> sides) const;
    rounds Alternate(const work& subject, const work& baseline) const;
    bool Control(const work& baseline);
    void Report(const std::string& name, const std::string& unit, const quartiles& value, std::optional<double> goal,
                const rounds& measured);
    void CountRow(const std::string& name, long counted, const std::string& goal, bool met);

    bool m_quick;
    bool m_controlled = false;
    bool m_void = false;
    std::string m_area;
    int m_met = 0;
    int m_missed = 0;
    int m_failed = 0;
    int m_voided = 0;
};

// Keeps a result alive that nothing reads.
template <class T>
inline void Keep(const T& value)
{
    asm volatile("" : : "r,m"(value) : "memory");
}

} // namespace bench
