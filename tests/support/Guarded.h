// Running code that is expected to raise a processor exception.
#pragma once

#include <windows.h>

#include <csetjmp>

namespace kzp::test {

// What happened: the exception that ended the run, or 0, and the breakpoints that were passed.
struct Guarded {
    DWORD code = 0;
    int breakpoints = 0;
    bool passBreakpoints = false;
    jmp_buf start = {};

    static inline thread_local Guarded* running = nullptr;
};

inline LONG CALLBACK GuardFilter(EXCEPTION_POINTERS* exception) {
    const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
    constexpr DWORD kError = 0x80000000;
    constexpr DWORD kApplication = 0x20000000;  // C++ exceptions carry it
    Guarded* const run = Guarded::running;
    if (!run || !(record.ExceptionCode & kError) || (record.ExceptionCode & kApplication))
        return EXCEPTION_CONTINUE_SEARCH;
    if (record.ExceptionCode == EXCEPTION_BREAKPOINT && run->passBreakpoints) {
        ++run->breakpoints;
        exception->ContextRecord->Rip = reinterpret_cast<DWORD64>(record.ExceptionAddress) + 1;
        return EXCEPTION_CONTINUE_EXECUTION;
    }
    run->code = record.ExceptionCode;
    std::longjmp(run->start, 1);
}

// Calls `body`, going on behind each breakpoint when `passBreakpoints` says so, as a debugger does. After an
// exception the destructors of what `body` had called have not run.
template <class Body>
Guarded RunGuarded(Body&& body, bool passBreakpoints = false) {
    Guarded run = {.passBreakpoints = passBreakpoints};
    Guarded::running = &run;
    void* const handler = AddVectoredExceptionHandler(1, GuardFilter);
    if (!_setjmp(run.start, nullptr))  // no frame: longjmp must not unwind through the exception
        body();
    RemoveVectoredExceptionHandler(handler);
    Guarded::running = nullptr;
    return run;
}

}  // namespace kzp::test
