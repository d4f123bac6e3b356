// The driver's own pages, and the events of the first one that the plug-in's callback hears.
#include "tools/driverhost/HostSheet.h"

namespace driverhost {

namespace {

// An empty dialog of a sheet's usual size, in the layout that PSP_DLGINDIRECT takes.
struct alignas(4) EmptyTemplate {
    DLGTEMPLATE head = {.style = DS_SHELLFONT | WS_CHILD | WS_CAPTION, .cx = 252, .cy = 218};
    WORD menu = 0, windowClass = 0, title = 0;
    WORD points = 8;
    wchar_t font[13] = L"MS Shell Dlg";
};
constexpr EmptyTemplate kTemplate;

LRESULT OnNotify(HostSheet& sheet, HWND page, const NMHDR& header) {
    switch (header.code) {
        case static_cast<UINT>(PSN_SETACTIVE):
            sheet.TellCallback(CPSUICB_REASON_SETACTIVE, page);
            return 0;
        case static_cast<UINT>(PSN_KILLACTIVE):
            sheet.TellCallback(CPSUICB_REASON_KILLACTIVE, page);
            return FALSE;
        case static_cast<UINT>(PSN_APPLY):
            return sheet.Apply(page) ? PSNRET_NOERROR : PSNRET_INVALID_NOCHANGEPAGE;
        default:
            return 0;
    }
}

INT_PTR CALLBACK DriverPageProc(HWND page, UINT message, WPARAM, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        const LPARAM sheet = reinterpret_cast<const PROPSHEETPAGEW*>(lParam)->lParam;
        SetWindowLongPtrW(page, DWLP_USER, sheet);
        RECT place = {7, 7, 245, 211};
        MapDialogRect(page, &place);
        CreateItemList(reinterpret_cast<HostSheet*>(sheet)->Session(), page, place);
        return TRUE;
    }
    const auto* const header = reinterpret_cast<const NMHDR*>(lParam);
    if (message != WM_NOTIFY || header->hwndFrom != GetParent(page))
        return FALSE;
    auto& sheet = *reinterpret_cast<HostSheet*>(GetWindowLongPtrW(page, DWLP_USER));
    SetWindowLongPtrW(page, DWLP_MSGRESULT, OnNotify(sheet, page, *header));
    return TRUE;
}

INT_PTR CALLBACK EmptyPageProc(HWND, UINT message, WPARAM, LPARAM) {
    return message == WM_INITDIALOG;
}

}  // namespace

PROPSHEETPAGEW DriverPage(HostSheet& sheet, bool isFeatures) {
    return {.dwSize = sizeof(PROPSHEETPAGEW),
            .dwFlags = PSP_DLGINDIRECT | PSP_USETITLE,
            .hInstance = GetModuleHandleW(nullptr),
            .pResource = reinterpret_cast<LPCDLGTEMPLATEW>(&kTemplate),
            .pszTitle = isFeatures ? L"Printer Features" : L"Layout",
            .pfnDlgProc = isFeatures ? DriverPageProc : EmptyPageProc,
            .lParam = reinterpret_cast<LPARAM>(&sheet)};
}

}  // namespace driverhost
