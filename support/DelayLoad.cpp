// What happens when a DLL that is loaded on first use, or a function of it, cannot be had: the call answers
// 0. For the functions that the plug-in loads this way that is a refusal, or a success that hands out
// nothing. Left alone the run-time would end the printing program with an exception of its own.
#include <windows.h>

#include <delayimp.h>

#include "core/Module.h"

namespace kzp {

namespace {

INT_PTR WINAPI AnswerNothing() {
    return 0;
}

// A module is asked for first; ours stands in, and lacks the function, which is asked for next.
FARPROC WINAPI OnDelayLoadFailure(unsigned notification, PDelayLoadInfo) {
    switch (notification) {
        case dliFailLoadLib:
            return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(g_hInstance));
        case dliFailGetProc:
            return reinterpret_cast<FARPROC>(AnswerNothing);
        default:
            return nullptr;
    }
}

}  // namespace

}  // namespace kzp

extern "C" {
PfnDliHook __pfnDliFailureHook2 =
    kzp::OnDelayLoadFailure;  // NOLINT(bugprone-reserved-identifier): the run-time's name
}
