// Bounded texts in fixed buffers, for the paths and file names that Windows hands out in MAX_PATH characters.
#pragma once

#include <cwchar>
#include <string_view>

namespace kzp {

// Appends at most `count` characters of `text` to what `buffer` (of `capacity` characters) holds, cut to fit;
// the result is always terminated. An unterminated buffer is cut to its capacity.
inline void AppendBounded(wchar_t* buffer, size_t capacity, std::wstring_view text,
                          size_t count = std::wstring_view::npos) {
    size_t length = wcsnlen(buffer, capacity - 1);
    for (const wchar_t character : text.substr(0, count)) {
        if (length == capacity - 1)
            break;
        buffer[length++] = character;
    }
    buffer[length] = L'\0';
}

// Cuts `path` just after its last backslash. Answers false, and leaves `path` alone, when it has none.
inline bool CutAfterLastBackslash(wchar_t* path) {
    wchar_t* const slash = std::wcsrchr(path, L'\\');
    if (!slash)
        return false;
    slash[1] = L'\0';
    return true;
}

}  // namespace kzp
