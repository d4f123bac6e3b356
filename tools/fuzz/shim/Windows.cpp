#include <windows.h>

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <string>

// The C library's own functions take wide characters for four bytes.
extern "C" {

size_t wcsnlen(const wchar_t* text, size_t most) {
    size_t length = 0;
    while (length < most && text[length])
        ++length;
    return length;
}

size_t wcslen(const wchar_t* text) {
    return wcsnlen(text, SIZE_MAX);
}

wchar_t* wmemcpy(wchar_t* to, const wchar_t* from, size_t count) {
    return static_cast<wchar_t*>(std::memcpy(to, from, count * sizeof(wchar_t)));
}

wchar_t* wmemmove(wchar_t* to, const wchar_t* from, size_t count) {
    return static_cast<wchar_t*>(std::memmove(to, from, count * sizeof(wchar_t)));
}

wchar_t* wmemset(wchar_t* to, wchar_t character, size_t count) {
    return std::fill_n(to, count, character), to;
}

int wmemcmp(const wchar_t* left, const wchar_t* right, size_t count) {
    for (; count > 0; --count, ++left, ++right) {
        if (*left != *right)
            return *left < *right ? -1 : 1;
    }
    return 0;
}

wchar_t* wmemchr(const wchar_t* text, wchar_t wanted, size_t count) {
    const wchar_t* const end = text + count;
    const wchar_t* const found = std::find(text, end, wanted);
    return found == end ? nullptr : const_cast<wchar_t*>(found);
}

wchar_t* wcsrchr(const wchar_t* text, wchar_t wanted) {
    for (size_t at = wcslen(text) + 1; at > 0; --at) {
        if (text[at - 1] == wanted)
            return const_cast<wchar_t*>(text + at - 1);
    }
    return nullptr;
}
}

// Code page 1252 for what it shares with Latin-1, "?" for the rest.
int WideCharToMultiByte(UINT, DWORD, PCWSTR text, int, char* bytes, int room, const char*, BOOL*) {
    int written = 0;
    do {
        if (written == room)
            return 0;
        bytes[written++] = static_cast<char>(*text < 0x100 ? *text : '?');
    } while (*text++);
    return written;
}

// Only ever "%u".
int wsprintfW(PWSTR text, PCWSTR, unsigned value) {
    const std::string digits = std::to_string(value);
    *std::copy(digits.begin(), digits.end(), text) = L'\0';
    return static_cast<int>(digits.size());
}
