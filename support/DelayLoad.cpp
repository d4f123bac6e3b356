// How the DLLs that are loaded on first use come in: from the system's folder alone, where the run-time's own
// way would search the program's and the current folder and PATH. When one, or a function of it, cannot be
// had, the call answers 0. For the functions that the plug-in loads this way that is a refusal, or a success
// that hands out nothing. Left alone the run-time would end the printing program with an exception of its
// own.
#include <windows.h>

#include <delayimp.h>

// The linker's name for the first byte of this DLL, which is also its handle.
extern "C" IMAGE_DOS_HEADER __ImageBase;  // NOLINT(bugprone-reserved-identifier)

namespace kzp {

namespace {

INT_PTR WINAPI AnswerNothing() {
    return 0;
}

// Our own module stands in for a missing one: it lacks the function too, which is asked for next. With no
// module at all the run-time would go on to its own search.
FARPROC LoadFromSystemFolder(const char* name) {
    const HMODULE library = LoadLibraryExA(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    return reinterpret_cast<FARPROC>(library ? static_cast<void*>(library) : &__ImageBase);
}

FARPROC WINAPI OnDelayLoad(unsigned notification, PDelayLoadInfo load) {
    switch (notification) {
        case dliNotePreLoadLibrary:
            return LoadFromSystemFolder(load->szDll);
        case dliFailGetProc:
            return reinterpret_cast<FARPROC>(AnswerNothing);
        default:
            return nullptr;
    }
}

}  // namespace

}  // namespace kzp

extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier): the run-time's names
PfnDliHook __pfnDliNotifyHook2 = kzp::OnDelayLoad;
PfnDliHook __pfnDliFailureHook2 = kzp::OnDelayLoad;
// NOLINTEND(bugprone-reserved-identifier)
}
