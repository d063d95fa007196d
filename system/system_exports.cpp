// Exported functions on the user's rights, the kind of system, and the machine below it.
#include "../exports/vhrt/facts.h"
#include "fs_redirection.h"
#include "operating_system.h"
#include "user_rights.h"
#include "virtual_machine.h"

namespace {

vh::fs_redirection redirection;
vh::virtual_machine machine(vh::VirtualMachineProbes());

// Itanium systems are not asked.
bool CanBeProbed()
{
    SYSTEM_INFO system;
    GetNativeSystemInfo(&system);
    return system.wProcessorArchitecture != PROCESSOR_ARCHITECTURE_IA64;
}

} // namespace

int32_t IsNTAdmin() { return vh::IsInLocalGroup(vh::local_group::administrators, vh::membership::granted); }

int32_t IsPowerUser() { return vh::IsInLocalGroup(vh::local_group::power_users, vh::membership::granted); }

int32_t _IsInAdminGroup() { return vh::IsInLocalGroup(vh::local_group::administrators, vh::membership::any); }

int32_t _IsWindowsME() { return vh::IsWindowsMe(); }

int32_t _IsWow64() { return vh::IsWow64(); }

int32_t _EnableWow64FsRedirection(int32_t on)
{
    if (!vh::IsWow64())
        return -1;
    return (on ? redirection.enable() : redirection.disable()) ? 0 : -1;
}

int32_t _IsVirtualMachine() { return _GetVirtualMachineType() != 0; }

int32_t _GetVirtualMachineType() { return CanBeProbed() ? machine.type() : 0; }
