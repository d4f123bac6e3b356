#include "tools/driverhost/KeyQueue.h"

#include <commctrl.h>

#include <atomic>

namespace driverhost {

namespace {

constexpr BYTE kMarkerKey = 0xE8;  // assigned to nothing

std::atomic<LONG> g_pressed = 0;
std::atomic<LONG> g_arrived = 0;
std::atomic<LONG> g_ctrlTabs = 0;

bool RunsUnderWine() {
    return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

void SwitchTab(HWND sheet, HWND tabs, int step) {
    const int count = static_cast<int>(SendMessageW(tabs, TCM_GETITEMCOUNT, 0, 0));
    if (count == 0)
        return;
    const int next = (static_cast<int>(SendMessageW(tabs, TCM_GETCURSEL, 0, 0)) + count + step) % count;
    const auto id = static_cast<UINT_PTR>(GetDlgCtrlID(tabs));
    NMHDR header = {tabs, id, static_cast<UINT>(TCN_SELCHANGING)};
    if (SendMessageW(sheet, WM_NOTIFY, id, reinterpret_cast<LPARAM>(&header)))
        return;
    SendMessageW(tabs, TCM_SETCURSEL, static_cast<WPARAM>(next), 0);
    header.code = static_cast<UINT>(TCN_SELCHANGE);
    SendMessageW(sheet, WM_NOTIFY, id, reinterpret_cast<LPARAM>(&header));
}

void OnCtrlTab(MSG& message) {
    ++g_ctrlTabs;
    const HWND sheet = GetAncestor(message.hwnd, GA_ROOT);
    const HWND tabs = RunsUnderWine() ? FindWindowExW(sheet, nullptr, WC_TABCONTROLW, nullptr) : nullptr;
    if (!tabs)
        return;
    message.message = WM_NULL;
    SwitchTab(sheet, tabs, GetKeyState(VK_SHIFT) < 0 ? -1 : 1);
}

// Nobody else hears of it.
void OnMarker(MSG& message) {
    if (message.message == WM_KEYUP || message.message == WM_SYSKEYUP)
        g_arrived = static_cast<LONG>(GetMessageExtraInfo());
    message.message = WM_NULL;
}

LRESULT CALLBACK Hook(int code, WPARAM wParam, LPARAM lParam) {
    auto& message = *reinterpret_cast<MSG*>(lParam);
    if (code == HC_ACTION && wParam == PM_REMOVE && message.message >= WM_KEYFIRST &&
        message.message <= WM_KEYLAST) {
        if (message.message == WM_KEYDOWN && message.wParam == VK_TAB && GetKeyState(VK_CONTROL) < 0)
            OnCtrlTab(message);
        else if (message.wParam == kMarkerKey && message.message != WM_CHAR)
            OnMarker(message);
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

}  // namespace

KeyQueue::KeyQueue() : m_hook(SetWindowsHookExW(WH_GETMESSAGE, Hook, nullptr, GetCurrentThreadId())) {}

KeyQueue::~KeyQueue() {
    UnhookWindowsHookEx(m_hook);
}

LONG KeyQueue::PressMarker() {
    const LONG number = ++g_pressed;
    keybd_event(kMarkerKey, 0, 0, static_cast<ULONG_PTR>(number));
    keybd_event(kMarkerKey, 0, KEYEVENTF_KEYUP, static_cast<ULONG_PTR>(number));
    return number;
}

LONG KeyQueue::LatestMarker() {
    return g_arrived;
}

LONG KeyQueue::CtrlTabs() {
    return g_ctrlTabs;
}

}  // namespace driverhost
