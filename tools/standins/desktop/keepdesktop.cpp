// Holds the desktop open. Under Wine the desktop ends with its last client, and starting it again costs the
// next program half a second, and that program's output pipe goes to the desktop as well: whoever reads the
// pipe waits for the desktop's end. On Windows the desktop is simply there.
//
// Without arguments it starts itself as the keeper and returns when the keeper has its window. The keeper
// ends with the session.
#include <windows.h>

#include <string>

namespace {

constexpr wchar_t kReadyEvent[] = L"KZP Stand-ins Desktop Ready";
constexpr DWORD kStartMilliseconds = 120'000;

int Keep() {
    CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
    if (const HANDLE ready = OpenEventW(EVENT_MODIFY_STATE, FALSE, kReadyEvent)) {
        SetEvent(ready);
        CloseHandle(ready);
    }
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0)
        DispatchMessageW(&message);
    return 0;
}

int StartKeeper() {
    const HANDLE ready = CreateEventW(nullptr, TRUE, FALSE, kReadyEvent);
    wchar_t self[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    std::wstring command = L"\"" + std::wstring(self) + L"\" keep";
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(self, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process))
        return 1;
    return WaitForSingleObject(ready, kStartMilliseconds) == WAIT_OBJECT_0 ? 0 : 1;
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR arguments, int) {
    return *arguments ? Keep() : StartKeeper();
}
