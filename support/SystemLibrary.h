// Windows' own libraries that are looked up by name when they are needed.
#pragma once

#include <windows.h>

#include "support/UniqueHandle.h"

namespace kzp {

// Loads the library from the program's own folder or the system's, never from the current folder or PATH,
// where anybody could have put one of its name. Empty when it is in neither.
inline UniqueModule LoadSystemLibrary(const wchar_t* name) {
    return UniqueModule(
        LoadLibraryExW(name, nullptr, LOAD_LIBRARY_SEARCH_APPLICATION_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32));
}

// A function that the library exports, or null, also for an empty library.
template <class Function>
Function FindFunction(const UniqueModule& library, const char* name) {
    if (!library)
        return nullptr;
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library.Get(), name)));
}

}  // namespace kzp
