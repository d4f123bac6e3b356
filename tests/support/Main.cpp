// The test programs' entry: no crash dialogs, and a test that hangs ends the program, which says so.
#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <cstdio>

#include "tests/support/Watchdog.h"

namespace {

constexpr ULONGLONG kLimitMilliseconds = 80'000;
std::atomic<ULONGLONG> g_begun;

class TestStarts : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override { kzp::test::RestartWatchdog(); }
};

DWORD WINAPI Watchdog(void* started) {
    SetEvent(started);
    while (GetTickCount64() - g_begun < kLimitMilliseconds)
        Sleep(500);
    if (kzp::test::atHang)
        kzp::test::atHang();
    std::fputs("The test hangs; its program is ended.\n", stderr);
    std::fflush(stderr);
    TerminateProcess(GetCurrentProcess(), 99);
    return 0;
}

}  // namespace

void kzp::test::RestartWatchdog() {
    g_begun = GetTickCount64();
}

int main(int count, char** arguments) {
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    testing::InitGoogleTest(&count, arguments);
    testing::UnitTest::GetInstance()->listeners().Append(new TestStarts);
    kzp::test::RestartWatchdog();
    if (!IsDebuggerPresent()) {
        // A thread's start allocates: tests that count blocks come behind it.
        const HANDLE started = CreateEventW(nullptr, TRUE, FALSE, nullptr);
        CloseHandle(CreateThread(nullptr, 0, Watchdog, started, 0, nullptr));
        WaitForSingleObject(started, INFINITE);
        CloseHandle(started);
    }
    return RUN_ALL_TESTS();
}
