// Texts of the host: building them, saying them, and the error that ends a command.
#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace driverhost {

// printf with %ls for wide and %hs for ANSI texts.
std::wstring Format(const wchar_t* format, ...);

std::string Utf8(std::wstring_view text);
std::wstring FromUtf8(std::string_view text);

// Ends the running command; the text is for the person at the console.
struct HostError : std::runtime_error {
    explicit HostError(const std::wstring& message) : std::runtime_error(Utf8(message)), text(message) {}
    std::wstring text;
};

// "cannot load x.dll: error 126: Module not found.", of the calling thread's last error.
HostError LastError(const std::wstring& what);

// The words of a command line: separated by blanks, a word in double quotes keeps its blanks.
std::vector<std::wstring> Words(const std::wstring& line);

// Writes one line, in UTF-8, to the standard output at once.
void Say(const std::wstring& line);

}  // namespace driverhost
