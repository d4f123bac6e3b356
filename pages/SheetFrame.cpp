#include "pages/SheetFrame.h"

#include <commctrl.h>
#include <prsht.h>

#include "resources/resource.h"

namespace kzp {

SheetState* SheetOfPage(HWND page, UINT message, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        const auto* const own = reinterpret_cast<const PROPSHEETPAGEW*>(lParam);
        SheetUse sheet = SheetOfPageParam(own ? own->lParam : 0);
        SetWindowLongPtrW(page, DWLP_USER, reinterpret_cast<LONG_PTR>(sheet.Release()));
    } else if (message == WM_NCDESTROY) {
        const SheetUse closing(reinterpret_cast<SheetState*>(SetWindowLongPtrW(page, DWLP_USER, 0)));
        if (closing)
            LeaveToNextSheet(*closing.Get());
    }
    return reinterpret_cast<SheetState*>(GetWindowLongPtrW(page, DWLP_USER));
}

void PressCtrlTab(int times) {
    for (int press = 0; press < times; ++press) {
        keybd_event(VK_CONTROL, 0, 0, 0);
        keybd_event(VK_TAB, 0, 0, 0);
        keybd_event(VK_CONTROL, 0, KEYEVENTF_KEYUP, 0);
        keybd_event(VK_TAB, 0, KEYEVENTF_KEYUP, 0);
    }
}

void VisitAllTabs(SheetState& sheet, HWND frame) {
    const HWND tabs = FindWindowExW(frame, nullptr, WC_TABCONTROLW, nullptr);
    sheet.SheetTabControl = tabs;
    PressCtrlTab(static_cast<int>(SendMessageW(tabs, TCM_GETITEMCOUNT, 0, 0)));
}

void EnableApply(HWND frame) {
    EnableWindow(GetDlgItem(frame, IDC_SHEET_APPLY), TRUE);
}

}  // namespace kzp
