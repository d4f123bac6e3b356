#include "tools/driverhost/DriverPage.h"

#include <commctrl.h>

#include <string>
#include <vector>

#include "tools/driverhost/HostSheet.h"
#include "tools/driverhost/Text.h"

namespace driverhost {

namespace {

// An empty dialog of a sheet's usual size, in the layout that PSP_DLGINDIRECT takes.
struct alignas(4) EmptyTemplate {
    WORD version = 1;
    WORD extended = 0xFFFF;
    DWORD helpId = 0;
    DWORD exStyle = 0;
    DWORD style = DS_SHELLFONT | WS_CHILD | WS_CAPTION;
    WORD controls = 0;
    short x = 0, y = 0, width = 252, height = 218;
    WORD menu = 0;
    WORD windowClass = 0;
    WORD title = 0;
    WORD points = 8;
    WORD weight = FW_NORMAL;
    BYTE italic = 0;
    BYTE charset = DEFAULT_CHARSET;
    wchar_t font[13] = L"MS Shell Dlg";
};
constexpr EmptyTemplate kTemplate;

HostSheet& SheetOf(HWND page) {
    return *reinterpret_cast<HostSheet*>(GetWindowLongPtrW(page, DWLP_USER));
}

HWND AddChild(HWND page, PCWSTR windowClass, PCWSTR text, DWORD style, RECT place) {
    MapDialogRect(page, &place);
    const HWND child =
        CreateWindowExW((style & WS_TABSTOP) ? WS_EX_CLIENTEDGE : 0, windowClass, text,
                        WS_CHILD | WS_VISIBLE | style, place.left, place.top, place.right - place.left,
                        place.bottom - place.top, page, nullptr, nullptr, nullptr);
    SendMessageW(child, WM_SETFONT, static_cast<WPARAM>(SendMessageW(page, WM_GETFONT, 0, 0)), TRUE);
    return child;
}

void CreateTree(HostSheet& sheet, HWND page) {
    AddChild(page, L"STATIC", L"Printer features:", 0, {7, 7, 245, 15});
    sheet.treeView = AddChild(
        page, WC_TREEVIEWW, L"",
        WS_TABSTOP | TVS_HASLINES | TVS_HASBUTTONS | TVS_LINESATROOT | TVS_SHOWSELALWAYS, {7, 18, 245, 211});
    sheet.RefreshTree();
}

LRESULT OnNotify(HostSheet& sheet, HWND page, const NMHDR& header) {
    switch (header.code) {
        case static_cast<UINT>(PSN_SETACTIVE):
            sheet.TellCallback(CPSUICB_REASON_SETACTIVE, page);
            sheet.RefreshTree();
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
    switch (message) {
        case WM_INITDIALOG: {
            const auto* const own = reinterpret_cast<const PROPSHEETPAGEW*>(lParam);
            SetWindowLongPtrW(page, DWLP_USER, own->lParam);
            CreateTree(SheetOf(page), page);
            return TRUE;
        }
        case WM_NOTIFY: {
            const auto& header = *reinterpret_cast<const NMHDR*>(lParam);
            if (header.hwndFrom != GetParent(page))
                return FALSE;
            SetWindowLongPtrW(page, DWLP_MSGRESULT, OnNotify(SheetOf(page), page, header));
            return TRUE;
        }
        case WM_DESTROY:
            SheetOf(page).treeView = nullptr;
            return FALSE;
        default:
            return FALSE;
    }
}

INT_PTR CALLBACK ExtraPageProc(HWND page, UINT message, WPARAM, LPARAM) {
    if (message == WM_INITDIALOG)
        AddChild(page, L"STATIC", L"The driver's layout options stand here.", 0, {7, 7, 245, 15});
    return message == WM_INITDIALOG;
}

PROPSHEETPAGEW MakePage(HostSheet& sheet, PCWSTR title, DLGPROC procedure) {
    PROPSHEETPAGEW page = {};
    page.dwSize = sizeof page;
    page.dwFlags = PSP_DLGINDIRECT | PSP_USETITLE;
    page.hInstance = GetModuleHandleW(nullptr);
    page.pResource = reinterpret_cast<LPCDLGTEMPLATEW>(&kTemplate);
    page.pszTitle = title;
    page.pfnDlgProc = procedure;
    page.lParam = reinterpret_cast<LPARAM>(&sheet);
    return page;
}

}  // namespace

PROPSHEETPAGEW DriverPage(HostSheet& sheet) {
    return MakePage(sheet, L"Printer Features", DriverPageProc);
}

PROPSHEETPAGEW ExtraPage(HostSheet& sheet) {
    return MakePage(sheet, L"Layout", ExtraPageProc);
}

// The driver's page lists what is not hidden, each item below the last one of a lower level.
void HostSheet::RefreshTree() {
    if (!treeView)
        return;
    SendMessageW(treeView, TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(TVI_ROOT));
    std::vector<std::pair<BYTE, HTREEITEM>> parents;
    for (const OPTITEM& item : m_session.Tree().All()) {
        if (IsHidden(item))
            continue;
        while (!parents.empty() && parents.back().first >= item.Level)
            parents.pop_back();
        const std::wstring selected = SelectedText(item);
        std::wstring text = item.pName;
        if (!selected.empty())
            text += L": " + selected;
        TVINSERTSTRUCTW insert = {};
        insert.hParent = parents.empty() ? TVI_ROOT : parents.back().second;
        insert.hInsertAfter = TVI_LAST;
        insert.item.mask = TVIF_TEXT | TVIF_STATE;
        insert.item.state = insert.item.stateMask = TVIS_EXPANDED;
        insert.item.pszText = text.data();
        parents.emplace_back(
            item.Level, reinterpret_cast<HTREEITEM>(
                            SendMessageW(treeView, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insert))));
    }
    for (HTREEITEM root = TreeView_GetRoot(treeView); root; root = TreeView_GetNextSibling(treeView, root))
        TreeView_Expand(treeView, root, TVE_EXPAND);
}

}  // namespace driverhost
