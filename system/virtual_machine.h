// Which kind of virtual machine the process runs in, by probes of the processor.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace vh {

// A probe never brings the process down: a fault of the processor is an answer.
struct virtual_machine_probe {
    int32_t number;
    bool (*answers)();
};

// In the order in which they are asked.
std::span<const virtual_machine_probe> VirtualMachineProbes();

// The number of the first probe that answers, 0 for none; asked for once and kept.
class virtual_machine {
public:
    constexpr explicit virtual_machine(std::span<const virtual_machine_probe> probes) : m_probes(probes) {}

    int32_t type()
    {
        if (!m_type)
            m_type = Detect();
        return *m_type;
    }

private:
    int32_t Detect() const
    {
        for (const virtual_machine_probe& probe : m_probes)
            if (probe.answers())
                return probe.number;
        return 0;
    }

    std::span<const virtual_machine_probe> m_probes;
    std::optional<int32_t> m_type;
};

} // namespace vh
