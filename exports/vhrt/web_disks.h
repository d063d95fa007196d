/* Setup disks fetched over the web by a download agent, a window with the title "FetchOnDemand". */
#pragma once

#include "types.h"

/* Registers with the agent. Result: 1 ready; 0 without an agent. */
VHRT_FUNCTION(int32_t) _SetupInet(ObjectContext* context);

/* Ends the link with the agent. Result: 1; 0 for a null context. */
VHRT_FUNCTION(int32_t) _CleanupInet(ObjectContext* context);

/* Asks for the disk whose number ends the file's name, and waits for it. Result: 4 it is there; 3 it is not. */
VHRT_FUNCTION(int32_t) _InetGetNextDisk(ObjectContext* context, const wchar_t* file);

/* Tells the agent that the transfer is over. */
VHRT_FUNCTION(void) _InetEndofTransfer(ObjectContext* context);

/* Result: 0; -2 the agent reported a failure; -3 the agent went away. */
VHRT_FUNCTION(int32_t) _InetGetLastError(ObjectContext* context);
