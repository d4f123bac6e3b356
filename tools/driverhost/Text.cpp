#include "tools/driverhost/Text.h"

#include <cstdarg>
#include <cstdio>
#include <iomanip>
#include <sstream>

namespace driverhost {

std::wstring Format(const wchar_t* format, ...) {
    va_list arguments, again;
    va_start(arguments, format);
    va_copy(again, arguments);
    std::wstring text(static_cast<size_t>(_vscwprintf(format, again)), L'\0');
    _vsnwprintf(text.data(), text.size(), format, arguments);
    va_end(again);
    va_end(arguments);
    return text;
}

std::string Utf8(std::wstring_view text) {
    const int length = static_cast<int>(text.size());
    const int bytes = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string out(static_cast<size_t>(bytes), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, out.data(), bytes, nullptr, nullptr);
    return out;
}

std::wstring FromUtf8(std::string_view text) {
    const int bytes = static_cast<int>(text.size());
    std::wstring out(text.size(), L'\0');  // never fewer bytes than characters
    out.resize(static_cast<size_t>(
        MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, out.data(), static_cast<int>(out.size()))));
    return out;
}

HostError LastError(const std::wstring& what) {
    const DWORD code = GetLastError();
    wchar_t message[256] = {};
    FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK,
                   nullptr, code, 0, message, 256, nullptr);
    return HostError{Format(L"%ls: error %lu: %ls", what.c_str(), code, message)};
}

std::vector<std::wstring> Words(const std::wstring& line) {
    constexpr wchar_t kNoEscape = L'\x1B';  // backslashes stand for themselves
    std::wistringstream rest(line);
    std::vector<std::wstring> words;
    while (!(rest >> std::ws).eof()) {
        if (!(rest >> std::quoted(words.emplace_back(), L'"', kNoEscape)))
            throw HostError{L"a quotation mark is not closed: " + line};
    }
    return words;
}

void Say(const std::wstring& line) {
    const std::string bytes = Utf8(line) + "\n";
    std::fwrite(bytes.data(), 1, bytes.size(), stdout);
    std::fflush(stdout);
}

}  // namespace driverhost
