#include "tests/support/ProgramCopy.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <string>

#include "tools/driverhost/Text.h"

namespace kzp::test {

namespace {

constexpr wchar_t kOwner[] = L"KZP_TEST_COPY_OF";

}  // namespace

ProgramCopy::ProgramCopy() {
    wchar_t program[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    std::wstring command = driverhost::Format(L"\"%ls\" --gtest_brief=1 --gtest_filter=%hs.%hs", program,
                                              test.test_suite_name(), test.name());
    SetEnvironmentVariableW(kOwner, std::to_wstring(GetCurrentProcessId()).c_str());
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION child = {};
    // Wine fails to start one process in many hundreds.
    BOOL started = FALSE;
    for (int attempt = 0; attempt < 3 && !started; ++attempt)
        started = CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                                 &startup, &child);
    EXPECT_TRUE(started) << GetLastError();
    SetEnvironmentVariableW(kOwner, nullptr);
    m_process.Reset(child.hProcess);
    const UniqueKernelHandle thread(child.hThread);
}

DWORD ProgramCopy::Wait(DWORD milliseconds) const {
    WaitForSingleObject(m_process.Get(), milliseconds);
    DWORD status = 1;
    GetExitCodeProcess(m_process.Get(), &status);
    return status;
}

DWORD ProgramCopy::Owner() {
    wchar_t owner[16] = {};
    return GetEnvironmentVariableW(kOwner, owner, 16) ? std::wcstoul(owner, nullptr, 10) : 0;
}

}  // namespace kzp::test
