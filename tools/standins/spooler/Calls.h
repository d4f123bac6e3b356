// The frame around every spooler call: failures on demand, the log, one call at a time across processes, and
// Win32 codes turned into what the caller gets.
#pragma once

#include <windows.h>

#include <new>
#include <string>

#include "tools/standins/common/Journal.h"
#include "tools/standins/spooler/Places.h"

namespace kzp::standins::spooler {

// The code with which a test wants this call of `function` to fail; ERROR_SUCCESS for none.
DWORD DemandedFailure(const wchar_t* function);

// Notes "<function> <subject>" when the log is open.
void LogCall(const wchar_t* function, const wchar_t* subject);

// Runs `body`, which answers a Win32 code, as the call `function`; `note` runs before, also when the call is
// to fail: the log holds what was asked for.
template <class Note, class Body>
DWORD AnswerNoted(const wchar_t* function, Note note, Body body) {
    try {
        const MachineLock lock(kLockName);
        note();
        const DWORD demanded = DemandedFailure(function);
        return demanded != ERROR_SUCCESS ? demanded : static_cast<DWORD>(body());
    } catch (const std::bad_alloc&) {
        return ERROR_NOT_ENOUGH_MEMORY;
    }
}

template <class Body>
DWORD Answer(const wchar_t* function, Body body) {
    return AnswerNoted(function, [] {}, body);
}

// For a call that changes something; `subject` (may be null) is the argument to be logged.
template <class Body>
DWORD AnswerChange(const wchar_t* function, const wchar_t* subject, Body body) {
    return AnswerNoted(function, [&] { LogCall(function, subject); }, body);
}

// For the calls that answer TRUE, or FALSE with the last error set.
inline BOOL Succeeded(DWORD code) {
    if (code != ERROR_SUCCESS)
        SetLastError(code);
    return code == ERROR_SUCCESS;
}

inline bool IsEmpty(const wchar_t* text) {
    return !text || !*text;
}

}  // namespace kzp::standins::spooler
