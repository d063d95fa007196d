// Probes for virtual machines: their order, and that none of them brings the process down.
#include <atomic>
#include <thread>

#include "../../exports/vhrt/facts.h"
#include "../../system/virtual_machine.h"
#include "../support/test.h"

namespace {

std::string probes_run;
int answering_probe;

template <int Number>
bool Probe()
{
    probes_run += std::to_string(Number);
    return Number == answering_probe;
}

TEST(VirtualMachine, IsTheFirstProbeThatAnswersAndAskedOnce)
{
    const virtual_machine_probe probes[] = {{11, Probe<1>}, {12, Probe<2>}, {13, Probe<3>}};
    for (const auto& [answering, run] : std::map<int, std::string>{{1, "1"}, {2, "12"}, {3, "123"}, {0, "123"}}) {
        probes_run.clear();
        answering_probe = answering;
        virtual_machine machine(probes);
        const int32_t number = answering ? 10 + answering : 0;
        EXPECT_EACH(number, machine.type(), machine.type());
        EXPECT_EQ(probes_run, run);
    }
}

// The faults of probes, those that their handler let through, and how many handlers stand.
std::vector<DWORD> faults;
int faults_let_through, handlers;

LONG CALLBACK SeeFirst(EXCEPTION_POINTERS* fault)
{
    faults.push_back(fault->ExceptionRecord->ExceptionCode);
    return EXCEPTION_CONTINUE_SEARCH;
}

LONG CALLBACK SeeLast(EXCEPTION_POINTERS*)
{
    ++faults_let_through;
    return EXCEPTION_CONTINUE_SEARCH;
}

// These take the places of the system's functions, with a witness in front of the probe's handler.
decltype(AddVectoredExceptionHandler)* add_handler;
decltype(RemoveVectoredExceptionHandler)* remove_handler;
void* witness;

void* WINAPI Add(ULONG first, PVECTORED_EXCEPTION_HANDLER handler)
{
    ++handlers;
    void* const added = add_handler(first, handler);
    witness = add_handler(1, SeeFirst);
    return added;
}

ULONG WINAPI Remove(void* handler)
{
    --handlers;
    remove_handler(witness);
    return remove_handler(handler);
}

void* WINAPI Refuse(ULONG, PVECTORED_EXCEPTION_HANDLER) { return nullptr; }

TEST(VirtualMachine, ProbesTakeTheirOwnFaultsAndLeaveNoHandler)
{
    add_handler = OfSystem<decltype(AddVectoredExceptionHandler)>("AddVectoredExceptionHandler");
    remove_handler = OfSystem<decltype(RemoveVectoredExceptionHandler)>("RemoveVectoredExceptionHandler");
    const Patched add("AddVectoredExceptionHandler", Add), remove("RemoveVectoredExceptionHandler", Remove);
    void* const last = add_handler(0, SeeLast);
    handlers = 0;
    faults_let_through = 0;

    const auto probes = VirtualMachineProbes();
    ASSERT_EQ(probes.size(), 4u);
    const DWORD expected[] = {EXCEPTION_PRIV_INSTRUCTION, 0, EXCEPTION_ILLEGAL_INSTRUCTION, 0};
    int32_t first = 0;
    for (std::size_t at = 0; at < probes.size(); ++at) {
        EXPECT_EQ(probes[at].number, static_cast<int32_t>(at) + 1);
        faults.clear();
        const bool answer = probes[at].answers();
        EXPECT_EQ(handlers, 0);
        // A probe that got no answer has faulted, once and in its own way.
        const bool faulted = expected[at] != 0 && !answer;
        EXPECT_EQ(faults, faulted ? std::vector{expected[at]} : std::vector<DWORD>()) << at;
        if (answer && first == 0)
            first = probes[at].number;
    }
    remove_handler(last);
    EXPECT_EQ(faults_let_through, 0);
    EXPECT_FALSE(probes[3].answers());
    EXPECT_EQ(_GetVirtualMachineType(), first);
    EXPECT_EQ(_IsVirtualMachine(), first != 0);
}

TEST(VirtualMachine, ProbesThatCanFaultAreNotTriedWithoutAHandler)
{
    const Patched refuse("AddVectoredExceptionHandler", Refuse);
    EXPECT_FALSE(VirtualMachineProbes()[0].answers() || VirtualMachineProbes()[2].answers());
}

TEST(VirtualMachine, ProbesRunOnSeveralThreadsAtOnce)
{
    std::atomic<int> ended = 0;
    std::vector<std::thread> threads;
    for (int each = 0; each < 4; ++each)
        threads.emplace_back([&] {
            for (int i = 0; i < 200; ++i)
                for (const auto& probe : VirtualMachineProbes())
                    probe.answers();
            ++ended;
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(ended, 4);
}

} // namespace
