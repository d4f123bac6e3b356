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
std::wstring FromAnsi(PCSTR text);

// Ends the running command; the text is for the person at the console.
struct HostError : std::runtime_error {
    explicit HostError(const std::wstring& message) : std::runtime_error(Utf8(message)), text(message) {}
    std::wstring text;
};

// "error 5: Access denied."
std::wstring Win32Error(DWORD code);

// The words of a command line: separated by blanks, a word in double quotes keeps its blanks.
std::vector<std::wstring> Words(std::wstring_view line);

// A whole number with an optional sign; HostError names `what` when it is none.
LONG Number(const std::wstring& text, const wchar_t* what);

// Writes one line, in UTF-8, to the standard output at once.
void Say(const std::wstring& line);

}  // namespace driverhost
