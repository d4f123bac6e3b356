#include "tools/standins/companions/Companions.h"

namespace kzp::standins {

namespace {

std::wstring OwnFolder() {
    wchar_t path[MAX_PATH];
    const std::wstring full(path, GetModuleFileNameW(nullptr, path, MAX_PATH));
    return full.substr(0, full.find_last_of(L'\\'));
}

bool IsAnyAlive() {
    return static_cast<bool>(UniqueKernelHandle(OpenEventW(SYNCHRONIZE, FALSE, kAliveEvent)));
}

}  // namespace

std::wstring PlaceCompanion(const std::wstring& folder, const std::wstring& name, const wchar_t* does) {
    std::wstring path = folder + L"\\" + name;
    if (!CopyFileW((OwnFolder() + L"\\" + kCompanionFile).c_str(), path.c_str(), FALSE) ||
        !WritePrivateProfileStringW(kInstructionSection, kInstructionKey, does,
                                    (path + kInstructionSuffix).c_str()))
        return {};
    return path;
}

UniqueKernelHandle StartCompanion(const std::wstring& path) {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(path.c_str(), nullptr, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &process))
        return UniqueKernelHandle();
    CloseHandle(process.hThread);
    return UniqueKernelHandle(process.hProcess);
}

bool WaitReady(const std::wstring& name, DWORD milliseconds) {
    const UniqueKernelHandle ready(CreateEventW(nullptr, TRUE, FALSE, (kReadyEvent + name).c_str()));
    return ready && WaitForSingleObject(ready.Get(), milliseconds) == WAIT_OBJECT_0;
}

bool QuitAll(DWORD milliseconds) {
    const UniqueKernelHandle quit(CreateEventW(nullptr, TRUE, FALSE, kQuitEvent));
    const ULONGLONG end = GetTickCount64() + milliseconds;
    SetEvent(quit.Get());
    // The event goes with the last handle, so that companions started later are not ended by it.
    while (IsAnyAlive() && GetTickCount64() < end)
        Sleep(10);
    return !IsAnyAlive();
}

}  // namespace kzp::standins
