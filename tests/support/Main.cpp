// The test programs' entry: no crash dialogs, and a run that hangs ends itself and says so.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>

namespace {

constexpr DWORD kLimitMilliseconds = 80'000;

DWORD WINAPI Watchdog(void* started) {
    SetEvent(started);
    Sleep(kLimitMilliseconds);
    std::fputs("The test program hangs; it is ended.\n", stderr);
    std::fflush(stderr);
    TerminateProcess(GetCurrentProcess(), 99);
    return 0;
}

}  // namespace

int main(int count, char** arguments) {
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    testing::InitGoogleTest(&count, arguments);
    if (!IsDebuggerPresent()) {
        // A thread's start allocates: tests that count blocks come behind it.
        const HANDLE started = CreateEventW(nullptr, TRUE, FALSE, nullptr);
        CloseHandle(CreateThread(nullptr, 0, Watchdog, started, 0, nullptr));
        WaitForSingleObject(started, INFINITE);
        CloseHandle(started);
    }
    return RUN_ALL_TESTS();
}
