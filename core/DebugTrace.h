// The only diagnostic output, and the guards at every entry of the DLL: exceptions stay inside, and the
// host's floating-point modes outside.
#pragma once

#include <windows.h>

#include <new>

#include "support/FloatingPoint.h"
#include "support/SystemExceptions.h"

namespace kzp {

// Formats at most 260 UTF-16 characters (wide printf: %s takes a wide text) and hands them to
// OutputDebugStringW. Answers true when the text fitted, false when it was cut or when `format` is null.
bool DebugTrace(const wchar_t* format, ...);

// Reports an exception that was stopped in `operation`; `file` is the source file without its extension.
void TraceException(const wchar_t* operation, const wchar_t* file, int line);

// Runs the body of an operation that the driver calls. No exception crosses the COM boundary: running out of
// memory becomes E_OUTOFMEMORY, anything else E_FAIL, and both are traced.
template <class Body>
HRESULT GuardOperation(const wchar_t* operation, const wchar_t* file, int line, Body&& body) noexcept {
    try {
        const PlainFloatingPoint modes;
        return body();
    } catch (const std::bad_alloc&) {
        TraceException(operation, file, line);
        return E_OUTOFMEMORY;
    } catch (...) {
        TraceException(operation, file, line);
        return E_FAIL;
    }
}

// The same for a body that other code's faults may end as well: a system exception also becomes E_FAIL,
// traced.
template <class Body>
HRESULT GuardForeignFaults(const wchar_t* operation, const wchar_t* file, int line, Body&& body) noexcept {
    // Also here, for a system exception leaves out the one inside.
    const PlainFloatingPoint modes;
    HRESULT result = E_FAIL;
    const auto guarded = [&] { result = GuardOperation(operation, file, line, body); };
    if (ReturnsNormally(guarded))
        return result;
    TraceException(operation, file, line);
    return E_FAIL;
}

// Runs the body of a callback that Windows enters (a dialog procedure, an enumeration); `fallback` is
// answered when an exception had to be stopped, for Windows would carry it into code that knows nothing of
// it.
template <class Result, class Body>
Result GuardCallback(const wchar_t* operation, const wchar_t* file, int line, Result fallback,
                     Body&& body) noexcept {
    try {
        const PlainFloatingPoint modes;
        return body();
    } catch (...) {
        TraceException(operation, file, line);
        return fallback;
    }
}

}  // namespace kzp
