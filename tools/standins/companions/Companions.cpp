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

UniqueKernelHandle StartCompanion(const std::wstring& path, const wchar_t* does) {
    std::wstring command = L"\"" + path + L"\"" + (does ? std::wstring(L" ") + does : std::wstring());
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(path.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &process))
        return UniqueKernelHandle();
    CloseHandle(process.hThread);
    return UniqueKernelHandle(process.hProcess);
}

bool WaitReady(const std::wstring& name, DWORD milliseconds) {
    const UniqueKernelHandle ready(CreateEventW(nullptr, TRUE, FALSE, (kReadyEvent + name).c_str()));
    return ready && WaitForSingleObject(ready.Get(), milliseconds) == WAIT_OBJECT_0;
}

std::vector<std::wstring> Starts(const std::wstring& path) {
    std::vector<std::wstring> starts;
    const UniqueFile file(CreateFileW((path + kStartsSuffix).c_str(), GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0,
                                      nullptr));
    if (!file)
        return starts;
    std::wstring text(GetFileSize(file.Get(), nullptr) / sizeof(wchar_t), L'\0');
    DWORD got = 0;
    if (!ReadFile(file.Get(), text.data(), static_cast<DWORD>(text.size() * sizeof(wchar_t)), &got, nullptr))
        return starts;
    for (size_t start = 0, end; (end = text.find(L'\n', start)) != std::wstring::npos; start = end + 1)
        starts.push_back(text.substr(start, end - start));
    return starts;
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
