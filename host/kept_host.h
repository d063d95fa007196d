// The host that stays on the machine, once for all products of a data folder: it removes and changes what is installed
// when the setups themselves are gone.
#pragma once

#include <string>

#include "engine/engine.h"

namespace host {

// The program, and the libraries that it needs beside itself.
inline constexpr const wchar_t* kept_program = L"vhhost.exe";
inline constexpr const wchar_t* kept_libraries[] = {L"VHRT.dll", L"vhres.dll", L"vhuser.dll", L"vhskin.dll"};

// Puts program and libraries from that folder into the data folder, unless a newer version is there. Throws
// std::runtime_error, which names the file and the reason.
void KeepHost(const std::wstring& data_folder, const std::wstring& from);

// Takes it away when no product and no running setup of the data folder needs it; the folder goes too when it is empty.
// When this program runs from there, a copy of it does so once this process has ended.
void SweepHost(const std::wstring& data_folder);
// What that copy does; `process` is the number of the one to wait for.
void SweepAfter(const std::wstring& data_folder, unsigned long process);

// How the kept host is called for a product; `data_folder` is repeated in them when `told`.
vh::engine::ProgramEntry EntryFor(const std::wstring& data_folder, bool told, const std::wstring& guid);

} // namespace host
