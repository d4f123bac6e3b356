// The frame around every spooler call: failures on demand, the log, one call at a time across processes, and
// refusals turned into what the caller gets.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "tools/standins/spooler/Places.h"

namespace kzp::standins::spooler {

// Thrown by what a call does: it fails with this Win32 code.
struct Refusal {
    DWORD code;
};

inline void Require(bool holds, DWORD code) {
    if (!holds)
        throw Refusal{code};
}
inline void Check(LSTATUS code) {
    Require(code == ERROR_SUCCESS, static_cast<DWORD>(code));
}

// Performs the call `function`, unless a test wants it to fail; answers its Win32 code.
DWORD Answer(const wchar_t* function, const std::function<void()>& body);

// For a call that changes something: the log holds what was asked for, `subject` (may be null) with it, also
// when the call is to fail.
DWORD AnswerChange(const wchar_t* function, const wchar_t* subject, const std::function<void()>& body);

// For the calls that answer TRUE, or FALSE with the last error set.
inline BOOL Succeeded(DWORD code) {
    if (code != ERROR_SUCCESS)
        SetLastError(code);
    return code == ERROR_SUCCESS;
}

inline bool IsEmpty(const wchar_t* text) {
    return !text || !*text;
}

// The caller's record, which must be of the level that the call takes.
template <class Info>
const Info& RecordOf(const BYTE* data, bool rightLevel) {
    Require(rightLevel, ERROR_INVALID_LEVEL);
    Require(data, ERROR_INVALID_PARAMETER);
    return *reinterpret_cast<const Info*>(data);
}

// A text of that record for the log; null when there is none.
template <class Info>
const wchar_t* TextIn(const BYTE* data, bool rightLevel, LPWSTR Info::* text) {
    return data && rightLevel ? reinterpret_cast<const Info*>(data)->*text : nullptr;
}

}  // namespace kzp::standins::spooler
