// Text between the host's three forms: UTF-16 inside, UTF-8 in files and on the console, numbers in messages.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace host {

std::string Utf8(std::wstring_view text);
// Bytes that are no UTF-8 become U+FFFD.
std::wstring Wide(std::string_view text);

// "0x8004F084"
std::wstring Hex(uint32_t code);
// "0x10", without zeros in front.
std::wstring ShortHex(uint32_t number);
// A result of the library as it is written: codes in hexadecimal, small numbers as they are.
std::wstring ResultText(int32_t result);
// The system's text for an error code without its line end, or the code when there is none.
std::wstring SystemText(uint32_t code);

// As one word of a command line, by the rules that programs take it apart with.
std::wstring Quoted(const std::wstring& word);

// The form of a full path that opens beyond 260 characters; short paths stay as they are.
std::wstring LongPath(const std::wstring& path);
// The absolute form of a path given by a person; "/x" is taken on the current drive.
std::wstring FullPath(const std::wstring& path);
std::wstring Join(const std::wstring& folder, std::wstring_view name);
// The full path of this program.
std::wstring ProgramFile();
// The folder of this program, without a backslash at its end.
std::wstring ProgramFolder();
// "vhhost", for example.
std::wstring ProgramName();

} // namespace host
