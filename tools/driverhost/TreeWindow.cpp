#include "tools/driverhost/TreeWindow.h"

#include <commctrl.h>

#include <algorithm>

#include "tools/driverhost/Text.h"

namespace driverhost {

namespace {

constexpr wchar_t kClass[] = L"DriverHostTree";
constexpr UINT_PTR kTimer = 1;

struct Column {
    const wchar_t* title;
    int width;
};
constexpr Column kColumns[] = {{L"#", 28},       {L"Item", 130}, {L"Keyword", 140},
                               {L"Option", 150}, {L"Shown", 56}, {L"Announced", 76}};

std::wstring PositionText(const char* prefix, DWORD position) {
    return Format(L"%hs%lu", prefix, position);
}

}  // namespace

TreeWindow::TreeWindow(DocumentSession& session) : m_session(session) {
    INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_WIN95_CLASSES};
    InitCommonControlsEx(&controls);
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = Procedure;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    windowClass.lpszClassName = kClass;
    RegisterClassW(&windowClass);
    const std::wstring title = L"Driver items of " + session.PrinterName();
    m_window = CreateWindowExW(0, kClass, title.c_str(), WS_OVERLAPPEDWINDOW, 10, 10, 620, 420, nullptr,
                               nullptr, windowClass.hInstance, this);
    if (!m_window)
        throw HostError{Format(L"no window can be made: %ls", Win32Error(GetLastError()).c_str())};
    ShowWindow(m_window, SW_SHOWNORMAL);
    UpdateWindow(m_window);
    SetForegroundWindow(m_window);
    SetFocus(m_window);
}

TreeWindow::~TreeWindow() {
    DestroyWindow(m_window);
}

LRESULT CALLBACK TreeWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* self = reinterpret_cast<TreeWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    switch (message) {
        case WM_CREATE:
            self = static_cast<TreeWindow*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
            SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
            self->m_list = CreateWindowExW(0, WC_LISTVIEWW, nullptr,
                                           WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_NOSORTHEADER, 0, 0, 0, 0,
                                           window, nullptr, nullptr, nullptr);
            self->AddColumns();
            self->Refresh();
            SetTimer(window, kTimer, 250, nullptr);
            return 0;
        case WM_SIZE:
            MoveWindow(self->m_list, 0, 0, LOWORD(lParam), HIWORD(lParam), TRUE);
            return 0;
        case WM_TIMER:
            self->Refresh();
            return 0;
        case WM_CLOSE:  // the sheet is what is closed
            return 0;
        default:
            return DefWindowProcW(window, message, wParam, lParam);
    }
}

void TreeWindow::AddColumns() {
    SendMessageW(m_list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES);
    int position = 0;
    for (const Column& column : kColumns) {
        LVCOLUMNW info = {};
        info.mask = LVCF_TEXT | LVCF_WIDTH;
        info.pszText = const_cast<PWSTR>(column.title);
        info.cx = column.width;
        SendMessageW(m_list, LVM_INSERTCOLUMNW, static_cast<WPARAM>(position++),
                     reinterpret_cast<LPARAM>(&info));
    }
}

std::vector<TreeWindow::Row> TreeWindow::Rows() const {
    std::vector<Row> rows;
    const auto& calls = m_session.Helper().Announcements();
    const auto add = [&](const DriverTree& tree, bool plugIn, const char* prefix) {
        for (DWORD position = 0; position < tree.Count(); ++position) {
            const OPTITEM& item = tree.All()[position];
            const auto announced = std::count_if(calls.begin(), calls.end(), [&](const Announcement& call) {
                return call.plugInItem == plugIn && call.position == static_cast<int>(position);
            });
            rows.push_back(
                {PositionText(prefix, position), std::wstring(item.Level > 1 ? 4u : 0u, L' ') + item.pName,
                 FromAnsi(KeywordOf(item).c_str()), SelectedText(item), IsHidden(item) ? L"hidden" : L"yes",
                 announced ? Format(L"%d", static_cast<int>(announced)) : L""});
        }
    };
    add(m_session.Tree(), false, "");
    add(m_session.PlugInTree(), true, "P");
    return rows;
}

void TreeWindow::Refresh() {
    std::vector<Row> rows = Rows();
    for (size_t row = 0; row < rows.size(); ++row) {
        const bool isNew = row >= m_shown.size();
        if (!isNew && rows[row] == m_shown[row])
            continue;
        for (size_t column = 0; column < rows[row].size(); ++column) {
            LVITEMW item = {};
            item.mask = LVIF_TEXT;
            item.iItem = static_cast<int>(row);
            item.iSubItem = static_cast<int>(column);
            item.pszText = rows[row][column].data();
            SendMessageW(m_list, isNew && column == 0 ? LVM_INSERTITEMW : LVM_SETITEMW, 0,
                         reinterpret_cast<LPARAM>(&item));
        }
    }
    m_shown = std::move(rows);
}

}  // namespace driverhost
