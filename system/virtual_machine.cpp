#include "virtual_machine.h"

#include <windows.h>

#if defined(__GNUC__) && defined(__x86_64__)
#include <cpuid.h>
#define VH_PROBES_X86 1
#endif

namespace vh {

namespace {

// Reserved.
bool NeverAnswers() { return false; }

#ifdef VH_PROBES_X86

// The one instruction of a probe that may fault, and where the probe goes on behind it. The probe itself writes both,
// with the same values on every thread.
struct fault_point {
    const void* instruction = nullptr;
    const void* behind = nullptr;
};
fault_point port_read;
fault_point illegal_bytes;

bool IsProcessorFault(DWORD code)
{
    return code == EXCEPTION_PRIV_INSTRUCTION || code == EXCEPTION_ILLEGAL_INSTRUCTION ||
           code == EXCEPTION_ACCESS_VIOLATION;
}

// Steps over the instruction and stays in its function, so no frame is unwound. Only a probe ever runs these
// instructions: the address tells whose fault it is.
LONG CALLBACK StepOver(EXCEPTION_POINTERS* fault)
{
    if (!IsProcessorFault(fault->ExceptionRecord->ExceptionCode))
        return EXCEPTION_CONTINUE_SEARCH;
    for (const fault_point* point : {&port_read, &illegal_bytes}) {
        if (point->instruction && fault->ExceptionRecord->ExceptionAddress == point->instruction) {
            fault->ContextRecord->Rip = reinterpret_cast<DWORD64>(point->behind);
            return EXCEPTION_CONTINUE_EXECUTION;
        }
    }
    return EXCEPTION_CONTINUE_SEARCH;
}

// In front of all other handlers while a probe runs.
class fault_guard {
public:
    fault_guard() : m_handler(AddVectoredExceptionHandler(1, StepOver)) {}
    fault_guard(const fault_guard&) = delete;
    fault_guard& operator=(const fault_guard&) = delete;
    ~fault_guard()
    {
        if (m_handler)
            RemoveVectoredExceptionHandler(m_handler);
    }
    explicit operator bool() const { return m_handler != nullptr; }

private:
    void* m_handler;
};

// Notes its own addresses, then runs the instruction between the labels 1 and 2.
#define VH_PROBE(instruction)                                                                                          \
    "leaq 1f(%%rip), %%rsi\n\tmovq %%rsi, %[at]\n\t"                                                                   \
    "leaq 2f(%%rip), %%rsi\n\tmovq %%rsi, %[behind]\n\t"                                                               \
    "xorl %%esi, %%esi\n1:\t" instruction "\n\tincl %%esi\n2:"

// The machine answers a read of its port with the magic number in the second register.
bool AnswersPort()
{
    constexpr uint32_t magic = 0x564D5868;
    const fault_guard guard;
    if (!guard)
        return false;
    uint32_t accumulator = magic;
    uint32_t second = 0;
    uint32_t command = 10;
    uint32_t port = 0x5658;
    uint32_t ran = 0;
    asm volatile(VH_PROBE("inl %%dx, %%eax")
                 : "+a"(accumulator), "+b"(second), "+c"(command), "+d"(port),
                   "=&S"(ran), [at] "=m"(port_read.instruction), [behind] "=m"(port_read.behind)
                 :
                 : "cc", "memory");
    return ran && second == magic;
}

bool AnswersCpuid()
{
    constexpr unsigned features_leaf = 1;
    constexpr unsigned hypervisor_bit = 1u << 31;
    unsigned a = 0, b = 0, c = 0, d = 0;
    return __get_cpuid(features_leaf, &a, &b, &c, &d) && (c & hypervisor_bit);
}

// The bytes are no instruction of a processor, but one of this machine.
bool AnswersIllegalBytes()
{
    const fault_guard guard;
    if (!guard)
        return false;
    uint32_t function = 1;
    uint32_t result = 0;
    uint32_t third = 0;
    uint32_t fourth = 0;
    uint32_t ran = 0;
    asm volatile(VH_PROBE(".byte 0x0F, 0x3F, 0x07, 0x0B")
                 : "+a"(function), "+b"(result), "+c"(third), "+d"(fourth),
                   "=&S"(ran), [at] "=m"(illegal_bytes.instruction), [behind] "=m"(illegal_bytes.behind)
                 :
                 : "cc", "memory");
    return ran != 0;
}

#undef VH_PROBE

#else

// Probes for other processors may take these places.
constexpr auto AnswersPort = NeverAnswers;
constexpr auto AnswersCpuid = NeverAnswers;
constexpr auto AnswersIllegalBytes = NeverAnswers;

#endif

constexpr virtual_machine_probe probes[] = {
    {1, AnswersPort},
    {2, AnswersCpuid},
    {3, AnswersIllegalBytes},
    {4, NeverAnswers},
};

} // namespace

std::span<const virtual_machine_probe> VirtualMachineProbes() { return probes; }

} // namespace vh
