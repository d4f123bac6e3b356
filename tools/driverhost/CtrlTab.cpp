#include "tools/driverhost/CtrlTab.h"

#include <commctrl.h>

namespace driverhost {

namespace {

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

LRESULT CALLBACK Hook(int code, WPARAM wParam, LPARAM lParam) {
    auto* const message = reinterpret_cast<MSG*>(lParam);
    if (code == HC_ACTION && wParam == PM_REMOVE && message->message == WM_KEYDOWN &&
        message->wParam == VK_TAB && GetKeyState(VK_CONTROL) < 0) {
        const HWND sheet = GetAncestor(message->hwnd, GA_ROOT);
        if (const HWND tabs = FindWindowExW(sheet, nullptr, WC_TABCONTROLW, nullptr)) {
            message->message = WM_NULL;
            SwitchTab(sheet, tabs, GetKeyState(VK_SHIFT) < 0 ? -1 : 1);
        }
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

}  // namespace

bool RunsUnderWine() {
    return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

CtrlTabHook::CtrlTabHook()
    : m_hook(RunsUnderWine() ? SetWindowsHookExW(WH_GETMESSAGE, Hook, nullptr, GetCurrentThreadId())
                             : nullptr) {}

CtrlTabHook::~CtrlTabHook() {
    if (m_hook)
        UnhookWindowsHookEx(m_hook);
}

}  // namespace driverhost
