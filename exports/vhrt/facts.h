/* Facts about the machine and the user. None of these takes the object context. */
#pragma once

#include "types.h"

/* Result: 386, 486 or 586; 0 for every other processor type, 64-bit ones included. */
VHRT_FUNCTION(int32_t) GetCPUType(void);

/* The native system's values, as SYSTEM_INFO names them. */
typedef struct VHRTProcessorInfo {
    int32_t architecture;
    int32_t processorCount;
    int32_t processorType;
    int32_t processorLevel;
    int32_t processorRevision;
} VHRTProcessorInfo;
VHRT_RECORD_SIZE(VHRTProcessorInfo, 20);

/* Result: 0; -1 for a null record. */
VHRT_FUNCTION(int32_t) _GetProcessorInfo(VHRTProcessorInfo* info);

/* Physical memory in bytes, shifted right by `shift`, in 32-bit halves. A limit that is not 0 caps its half; a
   low half above its limit also clears the high one. Result: 0. */
VHRT_FUNCTION(int32_t)
_GetGlobalMemorySize(uint32_t* high, uint32_t* low, int32_t shift, uint32_t highLimit, uint32_t lowLimit);

/* Printer and serial ports. Result: 0; -1 with both counts 0 when they can't be listed. */
VHRT_FUNCTION(int32_t) GetPorts(int32_t* printerPorts, int32_t* serialPorts);

/* Result: dots per inch of the main monitor. */
VHRT_FUNCTION(int32_t) _GetSystemDpi(void);

/* Result: 1 or 0: administrator, power user, member of the administrators also when only to deny. */
VHRT_FUNCTION(int32_t) IsNTAdmin(void);
VHRT_FUNCTION(int32_t) IsPowerUser(void);
VHRT_FUNCTION(int32_t) _IsInAdminGroup(void);

/* Result: 1 or 0: the system library is version 4.90; a 32-bit process on a 64-bit system; an ARM64 machine. */
VHRT_FUNCTION(int32_t) _IsWindowsME(void);
VHRT_FUNCTION(int32_t) _IsWow64(void);
VHRT_FUNCTION(int32_t) _IsArm64(void);

/* Flag 0 switches redirection of the system folder off, another puts it back as before; calls nest. Result: 0;
   -1 on failure and outside a 32-bit process on a 64-bit system. */
VHRT_FUNCTION(int32_t) _EnableWow64FsRedirection(int32_t on);

/* Result: 1 or 0; the kind of virtual machine, 0 for none. */
VHRT_FUNCTION(int32_t) _IsVirtualMachine(void);
VHRT_FUNCTION(int32_t) _GetVirtualMachineType(void);
