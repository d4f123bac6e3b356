// Stands for any of the companion programs: says that it was started, shows a window or holds the signal
// mapping (or does neither), and waits to be ended.
#include <windows.h>

#include <optional>
#include <string>

#include "core/SignalMapping.h"
#include "support/UniqueHandle.h"
#include "tools/standins/companions/CompanionNames.h"

using namespace kzp::standins;

namespace {

std::wstring OwnPath() {
    wchar_t path[MAX_PATH];
    return std::wstring(path, GetModuleFileNameW(nullptr, path, MAX_PATH));
}

std::wstring FileName(const std::wstring& path) {
    return path.substr(path.find_last_of(L'\\') + 1);
}

void NoteStart(const std::wstring& path) {
    const kzp::UniqueFile file(CreateFileW((path + kStartsSuffix).c_str(), FILE_APPEND_DATA,
                                           FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS,
                                           FILE_ATTRIBUTE_NORMAL, nullptr));
    const std::wstring line = std::wstring(GetCommandLineW()) + L"\n";
    DWORD written = 0;
    if (file)
        WriteFile(file.Get(), line.data(), static_cast<DWORD>(line.size() * sizeof(wchar_t)), &written,
                  nullptr);
}

std::wstring Instruction(const std::wstring& path, const std::wstring& arguments) {
    if (!arguments.empty())
        return arguments;
    wchar_t word[32];
    GetPrivateProfileStringW(kInstructionSection, kInstructionKey, kShowsWindow, word, 32,
                             (path + kInstructionSuffix).c_str());
    return word;
}

bool ShowMainWindow(HINSTANCE instance, const std::wstring& title) {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.hInstance = instance;
    windowClass.lpszClassName = L"KZP Stand-ins Companion";
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    RegisterClassW(&windowClass);
    // Not activated: the program under test keeps the focus, as with the companions that it starts.
    const HWND window =
        CreateWindowExW(WS_EX_NOACTIVATE, windowClass.lpszClassName, title.c_str(), WS_OVERLAPPEDWINDOW, 10,
                        10, 240, 120, nullptr, nullptr, instance, nullptr);
    if (!window)
        return false;
    ShowWindow(window, SW_SHOWNOACTIVATE);
    UpdateWindow(window);
    return true;
}

// Serves the window until `quit` is set or the time is over.
void WaitForEnd(HANDLE quit) {
    const ULONGLONG end = GetTickCount64() + kCompanionLifeMs;
    for (ULONGLONG now = GetTickCount64(); now < end; now = GetTickCount64()) {
        if (MsgWaitForMultipleObjects(1, &quit, FALSE, static_cast<DWORD>(end - now), QS_ALLINPUT) ==
            WAIT_OBJECT_0)
            return;
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, wchar_t* arguments, int) {
    const std::wstring path = OwnPath();
    const std::wstring name = FileName(path);
    const kzp::UniqueKernelHandle alive(CreateEventW(nullptr, TRUE, TRUE, kAliveEvent));
    const kzp::UniqueKernelHandle quit(CreateEventW(nullptr, TRUE, FALSE, kQuitEvent));
    const kzp::UniqueKernelHandle ready(CreateEventW(nullptr, TRUE, FALSE, (kReadyEvent + name).c_str()));
    NoteStart(path);

    const std::wstring instruction = Instruction(path, arguments);
    std::optional<kzp::SignalMapping> mapping;
    if (instruction == kHoldsMapping && !mapping.emplace(true, true).IsValid())
        return 1;
    if (instruction == kShowsWindow && !ShowMainWindow(instance, name))
        return 1;
    SetEvent(ready.Get());
    WaitForEnd(quit.Get());
    return 0;
}
