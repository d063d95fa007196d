// Servers and type libraries registered by their own entry points, and by registration scripts.
#pragma once

#include "../scriptdata/stringx.h"
#include "registration_script.h"

namespace vh {

// By the file's extension: .exe runs with /REGSERVER or /UNREGSERVER, for 5 s at most; .tlb is a type library; .dll and
// .ocx have an entry point. `per_user` has the file write into the user's own classes, which a program can't be made to
// do. False: the code is in last_file_failure().
bool RegisterModule(const stringx& path, bool registers, bool per_user);

// Writes what a script says below the classes of the machine or the user, or deletes its keys; %MODULEPATH% in its data
// is `module`, in narrow form. A key that holds keys of others stays. False: the code is in last_file_failure(), and
// what is wrong with the script's text in `fault`; then nothing is written.
bool RegisterFromScript(const stringx& script, const stringx& module, bool registers, bool per_user,
                        script_fault& fault);

} // namespace vh
