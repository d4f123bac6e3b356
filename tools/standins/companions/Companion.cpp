// Stands for any of the companion programs: shows a window or does not, and waits to be ended.
#include <windows.h>

#include <string>

#include "support/UniqueHandle.h"
#include "tools/standins/companions/CompanionNames.h"

using namespace kzp::standins;

namespace {

std::wstring OwnPath() {
    wchar_t path[MAX_PATH];
    return std::wstring(path, GetModuleFileNameW(nullptr, path, MAX_PATH));
}

std::wstring Instruction(const std::wstring& path) {
    wchar_t word[32];
    GetPrivateProfileStringW(kInstructionSection, kInstructionKey, kShowsWindow, word, 32,
                             (path + kInstructionSuffix).c_str());
    return word;
}

// Not activated: the program under test keeps the focus, as with the companions that it starts.
bool ShowMainWindow(const std::wstring& title) {
    const HWND window = CreateWindowExW(WS_EX_NOACTIVATE, L"STATIC", title.c_str(), WS_OVERLAPPEDWINDOW, 10,
                                        10, 240, 120, nullptr, nullptr, nullptr, nullptr);
    ShowWindow(window, SW_SHOWNOACTIVATE);
    return window;
}

// Serves the window until `quit` is set, or until nothing has happened for a companion's life.
void WaitForEnd(HANDLE quit) {
    while (MsgWaitForMultipleObjects(1, &quit, FALSE, kCompanionLifeMs, QS_ALLINPUT) == WAIT_OBJECT_0 + 1) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageW(&message);
    }
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t*, int) {
    const std::wstring path = OwnPath();
    const std::wstring name = path.substr(path.find_last_of(L'\\') + 1);
    const kzp::UniqueKernelHandle alive(CreateEventW(nullptr, TRUE, TRUE, kAliveEvent));
    const kzp::UniqueKernelHandle quit(CreateEventW(nullptr, TRUE, FALSE, kQuitEvent));
    const kzp::UniqueKernelHandle ready(CreateEventW(nullptr, TRUE, FALSE, (kReadyEvent + name).c_str()));

    const std::wstring instruction = Instruction(path);
    if (instruction == kShowsWindow && !ShowMainWindow(name))
        return 1;
    SetEvent(ready.Get());
    WaitForEnd(quit.Get());
    return 0;
}
