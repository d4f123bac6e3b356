// Running code that is expected to raise a processor exception.
#pragma once

#include <windows.h>

#include <csetjmp>

namespace kzp::test {

// What happened: the exception that ended the run, or 0, and the breakpoints that were passed.
struct Guarded {
    DWORD code = 0;
    int breakpoints = 0;
};

namespace details {

struct GuardFrame {
    Guarded result;
    bool passBreakpoints = false;
    jmp_buf start = {};
};

inline thread_local GuardFrame* g_guard = nullptr;

inline LONG CALLBACK GuardFilter(EXCEPTION_POINTERS* exception) {
    const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
    constexpr DWORD kError = 0x80000000;
    constexpr DWORD kApplication = 0x20000000;  // C++ exceptions carry it
    if (!g_guard || !(record.ExceptionCode & kError) || (record.ExceptionCode & kApplication))
        return EXCEPTION_CONTINUE_SEARCH;
    if (record.ExceptionCode == EXCEPTION_BREAKPOINT && g_guard->passBreakpoints) {
        ++g_guard->result.breakpoints;
        exception->ContextRecord->Rip = reinterpret_cast<DWORD64>(record.ExceptionAddress) + 1;
        return EXCEPTION_CONTINUE_EXECUTION;
    }
    g_guard->result.code = record.ExceptionCode;
    std::longjmp(g_guard->start, 1);
}

}  // namespace details

// Calls `body`, going on behind each breakpoint when `passBreakpoints` says so, as a debugger does. After an
// exception the destructors of what `body` had called have not run.
template <class Body>
Guarded RunGuarded(Body&& body, bool passBreakpoints = false) {
    details::GuardFrame frame;
    frame.passBreakpoints = passBreakpoints;
    details::g_guard = &frame;
    void* const handler = AddVectoredExceptionHandler(1, details::GuardFilter);
    if (!_setjmp(frame.start, nullptr))  // no frame: longjmp must not unwind through the exception
        body();
    RemoveVectoredExceptionHandler(handler);
    details::g_guard = nullptr;
    return frame.result;
}

}  // namespace kzp::test
