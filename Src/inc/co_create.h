// Makes COM objects from files, past the registry.
#pragma once

#include <windows.h>

#include <objbase.h>

namespace vh {

// From a library: its DllGetClassObject is called with both identifiers. A path without a directory is looked
// for beside `beside`. The library stays until COM frees unused ones. A library that can't be loaded is reported
// to a debugger under the name "CoCreate".
HRESULT CoCreate(HMODULE beside, const wchar_t* library, REFCLSID object_class, REFIID id, void** object);

// The object that runs under "!{identifier}"; nothing is started.
HRESULT FindRunningObject(REFGUID id, IUnknown** object);

// From a program: starts it with the class and an instance identifier, and takes the object that it then
// registers under "!instance" in the running object table. Waits 30 s at most. A null instance makes a new one;
// a program that can't be started gives 0x80070002.
HRESULT CoCreateByProgram(const wchar_t* program, REFCLSID object_class, const GUID* instance, REFIID id,
                          void** object);

} // namespace vh
