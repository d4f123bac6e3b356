// The driver's items as a list that follows them: on the driver's own page, and in a window beside the sheet,
// for the plug-in hides that page behind its fonts dialog.
#include <windows.h>

#include <commctrl.h>

#include <algorithm>

#include "tools/driverhost/HostSheet.h"
#include "tools/driverhost/Text.h"

namespace driverhost {

namespace {

constexpr struct {
    const wchar_t* title;
    int width;
} kColumns[] = {{L"Item", 130}, {L"Option", 150}, {L"Keyword", 140}, {L"Shown", 56}, {L"Announced", 76}};

void Set(HWND list, int row, int column, std::wstring text) {
    wchar_t now[128] = {};
    LVITEMW item = {.mask = LVIF_TEXT, .iItem = row, .iSubItem = column, .pszText = now, .cchTextMax = 128};
    SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    item.pszText = text.data();
    if (now != text)
        SendMessageW(list, LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
}

void Show(HWND list, DocumentSession& session) {
    int row = 0;
    for (DriverTree* const tree : {&session.Tree(), &session.PlugInTree()}) {
        for (const OPTITEM& item : tree->All()) {
            if (row == ListView_GetItemCount(list)) {
                LVITEMW fresh = {.iItem = row};
                SendMessageW(list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&fresh));
            }
            const auto announced =
                std::ranges::count_if(session.Helper().Announcements(), [&](const Announcement& call) {
                    return call.plugInItem == (tree == &session.PlugInTree()) &&
                           call.position == tree->PositionOf(&item);
                });
            Set(list, row, 0, (item.Level > 1 ? L"    " : L"") + std::wstring(item.pName));
            Set(list, row, 1, SelectedText(item));
            Set(list, row, 2, Format(L"%hs", KeywordOf(item).c_str()));
            Set(list, row, 3, IsHidden(item) ? L"hidden" : L"yes");
            Set(list, row++, 4, announced ? std::to_wstring(announced) : L"");
        }
    }
}

}  // namespace

HWND CreateItemList(DocumentSession& session, HWND parent, const RECT& place) {
    const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&controls);
    const std::wstring title = L"Driver items of " + session.PrinterName();
    const HWND list = CreateWindowExW(parent ? WS_EX_CLIENTEDGE : 0, WC_LISTVIEWW, title.c_str(),
                                      LVS_REPORT | LVS_NOSORTHEADER | WS_VISIBLE |
                                          (parent ? WS_CHILD | WS_TABSTOP : WS_CAPTION | WS_THICKFRAME),
                                      place.left, place.top, place.right - place.left,
                                      place.bottom - place.top, parent, nullptr, nullptr, nullptr);
    if (!list)
        throw LastError(L"no window can be made");
    SendMessageW(list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES);
    for (int column = 0; const auto& [name, width] : kColumns) {
        LVCOLUMNW info = {.mask = LVCF_TEXT | LVCF_WIDTH, .cx = width, .pszText = const_cast<PWSTR>(name)};
        SendMessageW(list, LVM_INSERTCOLUMNW, static_cast<WPARAM>(column++), reinterpret_cast<LPARAM>(&info));
    }
    Show(list, session);
    SetTimer(list, reinterpret_cast<UINT_PTR>(&session), 250, [](HWND shown, UINT, UINT_PTR id, DWORD) {
        Show(shown, *reinterpret_cast<DocumentSession*>(id));
    });
    return list;
}

}  // namespace driverhost
