// The test programs' entry: no crash dialogs, and a test that hangs ends the program, which says so.
#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <cstdio>

namespace {

constexpr ULONGLONG kLimitMilliseconds = 80'000;
std::atomic<ULONGLONG> g_testStarted;

class TestStarts : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override { g_testStarted = GetTickCount64(); }
};

DWORD WINAPI Watchdog(void* started) {
    SetEvent(started);
    while (GetTickCount64() - g_testStarted < kLimitMilliseconds)
        Sleep(500);
    std::fputs("The test hangs; its program is ended.\n", stderr);
    std::fflush(stderr);
    TerminateProcess(GetCurrentProcess(), 99);
    return 0;
}

}  // namespace

int main(int count, char** arguments) {
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    testing::InitGoogleTest(&count, arguments);
    testing::UnitTest::GetInstance()->listeners().Append(new TestStarts);
    g_testStarted = GetTickCount64();
    if (!IsDebuggerPresent()) {
        // A thread's start allocates: tests that count blocks come behind it.
        const HANDLE started = CreateEventW(nullptr, TRUE, FALSE, nullptr);
        CloseHandle(CreateThread(nullptr, 0, Watchdog, started, 0, nullptr));
        WaitForSingleObject(started, INFINITE);
        CloseHandle(started);
    }
    return RUN_ALL_TESTS();
}
