#include "tests/installer/InstallerRun.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "support/UniqueHandle.h"
#include "tests/support/Files.h"
#include "tests/support/ScratchRegistry.h"

namespace kzp::test {

namespace {

constexpr const wchar_t* kStandIns[] = {L"winspool.drv", L"printui.dll"};
constexpr wchar_t kOverridesKey[] = L"Software\\Wine\\AppDefaults\\msiexec.exe\\DllOverrides";
constexpr DWORD kLimitMilliseconds = 40'000;

std::wstring InSystemFolder(const std::wstring& name) {
    wchar_t folder[MAX_PATH] = {};
    GetSystemDirectoryW(folder, MAX_PATH);
    return std::wstring(folder) + L"\\" + name;
}

std::wstring Saved(const std::wstring& name) {
    return InSystemFolder(name) + L".platform";
}

void RestorePlatform() {
    for (const wchar_t* const name : kStandIns) {
        if (!FileExists(Saved(name)))
            continue;
        EXPECT_TRUE(MoveFileExW(Saved(name).c_str(), InSystemFolder(name).c_str(), MOVEFILE_REPLACE_EXISTING))
            << GetLastError();
    }
    RegDeleteTreeW(HKEY_CURRENT_USER, kOverridesKey);
}

// The log is in the machine's code page; what is looked for is plain ASCII.
void ReadLog(const std::wstring& path, InstallerRun& run) {
    std::ifstream file{std::filesystem::path(path), std::ios::binary};
    for (std::string bytes; std::getline(file, bytes);) {
        const std::wstring line(bytes.begin(), bytes.end() - (bytes.ends_with('\r') ? 1 : 0));
        const size_t start = std::min(line.find(L"INFO: "), line.find(L"ERROR: "));
        if (start != std::wstring::npos)
            run.lines.push_back(line.substr(start));
        for (const wchar_t* const action : {L"RemoveLeftovers", L"UndoInstall", L"Install", L"Uninstall"}) {
            if (line.starts_with(L"Action start ") && line.ends_with(L": " + std::wstring(action) + L"."))
                run.started += (run.started.empty() ? L"" : L" ") + std::wstring(action);
        }
    }
}

}  // namespace

StandInsInSystemFolder::StandInsInSystemFolder() {
    RestorePlatform();
    for (const wchar_t* const name : kStandIns) {
        EXPECT_TRUE(MoveFileW(InSystemFolder(name).c_str(), Saved(name).c_str())) << GetLastError();
        EXPECT_TRUE(CopyFileW(BesideExe(name).c_str(), InSystemFolder(name).c_str(), FALSE))
            << GetLastError();
        const std::wstring module = std::wstring(name) == L"printui.dll" ? L"printui" : name;
        WriteText(HKEY_CURRENT_USER, kOverridesKey, module.c_str(), L"native,builtin");
    }
}

StandInsInSystemFolder::~StandInsInSystemFolder() {
    RestorePlatform();
}

InstallerRun RunInstaller(const std::wstring& arguments) {
    const TemporaryFolder folder;
    const std::wstring log = folder.File(L"installer.log");
    std::wstring command =
        L"\"" + InSystemFolder(L"msiexec.exe") + L"\" " + arguments + L" /qn /l*v \"" + log + L"\"";
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &process)) {
        ADD_FAILURE() << "msiexec does not start: " << GetLastError();
        return {};
    }
    const UniqueKernelHandle thread(process.hThread);
    const UniqueKernelHandle owned(process.hProcess);
    if (WaitForSingleObject(owned.Get(), kLimitMilliseconds) != WAIT_OBJECT_0) {
        ADD_FAILURE() << "msiexec hangs";
        TerminateProcess(owned.Get(), 99);
        WaitForSingleObject(owned.Get(), INFINITE);
    }
    InstallerRun run;
    GetExitCodeProcess(owned.Get(), &run.exitCode);
    ReadLog(log, run);
    return run;
}

}  // namespace kzp::test
