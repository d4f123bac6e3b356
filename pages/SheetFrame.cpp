#include "pages/SheetFrame.h"

#include <commctrl.h>

#include "resources/resource.h"
#include "settings/SheetState.h"

namespace kzp {

void PressCtrlTab(int times) {
    for (int press = 0; press < times; ++press) {
        keybd_event(VK_CONTROL, 0, 0, 0);
        keybd_event(VK_TAB, 0, 0, 0);
        keybd_event(VK_CONTROL, 0, KEYEVENTF_KEYUP, 0);
        keybd_event(VK_TAB, 0, KEYEVENTF_KEYUP, 0);
    }
}

void VisitAllTabs(HWND sheet) {
    const HWND tabs = FindWindowExW(sheet, nullptr, WC_TABCONTROLW, nullptr);
    g_sheet.SheetTabControl = tabs;
    PressCtrlTab(static_cast<int>(SendMessageW(tabs, TCM_GETITEMCOUNT, 0, 0)));
}

void EnableApply(HWND sheet) {
    EnableWindow(GetDlgItem(sheet, IDC_SHEET_APPLY), TRUE);
}

}  // namespace kzp
