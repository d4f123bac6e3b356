#include "tools/driverhost/Text.h"

#include <cstdarg>
#include <cstdio>
#include <cwchar>

namespace driverhost {

std::wstring Format(const wchar_t* format, ...) {
    std::wstring text(256, L'\0');
    for (;;) {
        va_list arguments;
        va_start(arguments, format);
        const int length = _vsnwprintf(text.data(), text.size(), format, arguments);
        va_end(arguments);
        if (length >= 0 && static_cast<size_t>(length) <= text.size()) {
            text.resize(static_cast<size_t>(length));
            return text;
        }
        text.resize(text.size() * 2);
    }
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
    const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, nullptr, 0);
    std::wstring out(static_cast<size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, out.data(), length);
    return out;
}

std::wstring FromAnsi(PCSTR text) {
    return text ? Format(L"%hs", text) : std::wstring();
}

std::wstring Win32Error(DWORD code) {
    wchar_t message[256] = {};
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK, nullptr,
        code, 0, message, 256, nullptr);
    std::wstring text(message, length);
    while (!text.empty() && text.back() <= L' ')
        text.pop_back();
    return text.empty() ? Format(L"error %lu", code) : Format(L"error %lu: %ls", code, text.c_str());
}

std::vector<std::wstring> Words(std::wstring_view line) {
    std::vector<std::wstring> words;
    bool quoted = false;
    bool inWord = false;
    for (const wchar_t character : line) {
        if (character == L'"') {
            quoted = !quoted;
            if (!inWord)
                words.emplace_back();
            inWord = true;
        } else if (!quoted && (character == L' ' || character == L'\t' || character == L'\r')) {
            inWord = false;
        } else {
            if (!inWord)
                words.emplace_back();
            inWord = true;
            words.back() += character;
        }
    }
    if (quoted)
        throw HostError{Format(L"a quotation mark is not closed: %ls", std::wstring(line).c_str())};
    return words;
}

LONG Number(const std::wstring& text, const wchar_t* what) {
    wchar_t* end = nullptr;
    const LONG value = std::wcstol(text.c_str(), &end, 10);
    if (text.empty() || *end != L'\0')
        throw HostError{Format(L"%ls must be a number, not \"%ls\"", what, text.c_str())};
    return value;
}

void Say(const std::wstring& line) {
    const std::string bytes = Utf8(line) + "\n";
    std::fwrite(bytes.data(), 1, bytes.size(), stdout);
    std::fflush(stdout);
}

}  // namespace driverhost
