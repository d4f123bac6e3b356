// Windows' own libraries that are looked up by name when they are needed.
#pragma once

#include <windows.h>

#include "support/UniqueHandle.h"

namespace kzp {

// Loads the library from the system's folder, never from the program's or the current folder or PATH, where
// anybody could have put one of its name; so it does with what the library needs. A full path names the
// library itself. Empty when it is not there.
inline UniqueModule LoadSystemLibrary(const wchar_t* nameOrPath) {
    return UniqueModule(LoadLibraryExW(nameOrPath, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32));
}

// A function that the library exports, by name or by MAKEINTRESOURCE of its ordinal, or null, also for an
// empty library.
template <class Function>
Function FindFunction(const UniqueModule& library, const char* name) {
    if (!library)
        return nullptr;
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library.Get(), name)));
}

}  // namespace kzp
