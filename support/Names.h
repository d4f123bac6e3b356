// Names that are the same in every language: of files, processes and fixed choices.
#pragma once

#include <windows.h>

#include <string_view>

namespace kzp {

// Order without regard to case, by the file system's own table: below, at or above 0. The functions of the
// run-time and of the shell follow a locale, and in one of them "I" is not the capital of "i".
inline int CompareNames(std::wstring_view left, std::wstring_view right) {
    return CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                static_cast<int>(right.size()), TRUE) -
           CSTR_EQUAL;
}

}  // namespace kzp
