#include "tools/driverhost/SheetUser.h"

#include <commctrl.h>

#include <vector>

#include "resources/resource.h"
#include "tools/driverhost/Text.h"

namespace driverhost {

namespace {

std::wstring WindowText(HWND window) {
    std::wstring text(static_cast<size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) + 1, L'\0');
    const LRESULT length =
        SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<size_t>(length));
    return text;
}

void Notify(HWND control, WORD code) {
    SendMessageW(GetParent(control), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(control), code),
                 reinterpret_cast<LPARAM>(control));
}

void ClickAt(HWND window, int x, int y) {
    SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
}

struct Search {
    int id;
    HWND found;
};

// Embedded dialogs are searched too; the page's own control comes first.
HWND FindBelow(HWND page, int id) {
    if (const HWND own = GetDlgItem(page, id))
        return own;
    Search search = {id, nullptr};
    EnumChildWindows(
        page,
        [](HWND child, LPARAM parameter) -> BOOL {
            auto& wanted = *reinterpret_cast<Search*>(parameter);
            if (GetDlgCtrlID(child) != wanted.id)
                return TRUE;
            wanted.found = child;
            return FALSE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
}

}  // namespace

HWND SheetUser::Find(int id) const {
    const int current = m_sheet.CurrentPage();
    if (const HWND shown = m_sheet.PageWindow(current)) {
        if (const HWND control = FindBelow(shown, id))
            return control;
    }
    for (int index = 0; index < m_sheet.PageCount(); ++index) {
        const HWND page = index == current ? nullptr : m_sheet.PageWindow(index);
        if (const HWND control = page ? FindBelow(page, id) : nullptr)
            return control;
    }
    return nullptr;
}

HWND SheetUser::Existing(int id) const {
    const HWND control = Find(id);
    if (!control)
        throw HostError{Format(L"there is no control %d", id)};
    return control;
}

HWND SheetUser::Usable(int id) const {
    const HWND control = Existing(id);
    if (!IsWindowVisible(control))
        throw HostError{Format(L"control %d is not visible", id)};
    if (!IsWindowEnabled(control))
        throw HostError{Format(L"control %d is disabled", id)};
    return control;
}

void SheetUser::ClickTab(int index) {
    const HWND tabs = m_sheet.Tabs();
    RECT place = {};
    if (!SendMessageW(tabs, TCM_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&place)))
        throw HostError{Format(L"the sheet has no page %d", index + 1)};
    ClickAt(tabs, (place.left + place.right) / 2, (place.top + place.bottom) / 2);
}

void SheetUser::ClickTab(const std::wstring& title) {
    for (int index = 0; index < m_sheet.PageCount(); ++index) {
        if (m_sheet.TabText(index) == title)
            return ClickTab(index);
    }
    throw HostError{Format(L"the sheet has no page \"%ls\"", title.c_str())};
}

void SheetUser::PressCtrlTab(bool backwards) {
    keybd_event(VK_CONTROL, 0, 0, 0);
    if (backwards)
        keybd_event(VK_SHIFT, 0, 0, 0);
    PressKey(VK_TAB);
    if (backwards)
        keybd_event(VK_SHIFT, 0, KEYEVENTF_KEYUP, 0);
    keybd_event(VK_CONTROL, 0, KEYEVENTF_KEYUP, 0);
}

void SheetUser::PressKey(BYTE virtualKey) {
    keybd_event(virtualKey, 0, 0, 0);
    keybd_event(virtualKey, 0, KEYEVENTF_KEYUP, 0);
}

void SheetUser::Type(int id, const std::wstring& text) {
    const HWND edit = Usable(id);
    SetFocus(edit);
    SendMessageW(edit, EM_SETSEL, 0, -1);
    if (text.empty())
        SendMessageW(edit, WM_CHAR, VK_BACK, 0);
    for (const wchar_t character : text)
        SendMessageW(edit, WM_CHAR, character, 1);
}

void SheetUser::SetText(int id, const std::wstring& text) {
    const HWND edit = Usable(id);
    SetFocus(edit);
    SendMessageW(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

void SheetUser::Click(int id) {
    const HWND button = Usable(id);
    SetFocus(button);
    SendMessageW(button, BM_CLICK, 0, 0);
}

void SheetUser::Check(int id, bool on) {
    if (Checked(id) != on)
        Click(id);
}

void SheetUser::Select(int id, const std::wstring& text) {
    const LRESULT index = SendMessageW(Usable(id), CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                       reinterpret_cast<LPARAM>(text.c_str()));
    if (index == CB_ERR)
        throw HostError{Format(L"control %d has no entry \"%ls\"", id, text.c_str())};
    SelectIndex(id, static_cast<int>(index));
}

void SheetUser::SelectIndex(int id, int index) {
    const HWND combo = Usable(id);
    SetFocus(combo);
    if (index < 0 || SendMessageW(combo, CB_SETCURSEL, static_cast<WPARAM>(index), 0) == CB_ERR)
        throw HostError{Format(L"control %d has no entry %d", id, index)};
    Notify(combo, CBN_SELENDOK);
    Notify(combo, CBN_SELCHANGE);
}

void SheetUser::Spin(int id, bool up, int times) {
    for (int click = 0; click < times; ++click) {
        const HWND spin = Usable(id);
        RECT area = {};
        GetClientRect(spin, &area);
        ClickAt(spin, area.right / 2, up ? 2 : area.bottom - 3);
    }
}

void SheetUser::CheckItem(int id, const std::wstring& text, bool on) {
    const HWND list = Usable(id);
    LVFINDINFOW wanted = {};
    wanted.flags = LVFI_STRING;
    wanted.psz = text.c_str();
    const LRESULT index =
        SendMessageW(list, LVM_FINDITEMW, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&wanted));
    if (index < 0)
        throw HostError{Format(L"control %d has no entry \"%ls\"", id, text.c_str())};
    const bool checked = ListView_GetCheckState(list, static_cast<UINT>(index)) == 1;
    if (checked == on)
        return;
    SendMessageW(list, LVM_ENSUREVISIBLE, static_cast<WPARAM>(index), FALSE);
    RECT place = {LVIR_BOUNDS, 0, 0, 0};
    SendMessageW(list, LVM_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&place));
    ClickAt(list, place.left + 6, (place.top + place.bottom) / 2);
}

void SheetUser::SelectDriverOption(const std::string& keyword, LONG selection) {
    OPTITEM* const item = m_sheet.Session().Tree().Find(keyword.c_str());
    if (!item)
        throw HostError{Format(L"the driver has no feature \"%hs\"", keyword.c_str())};
    const LONG old = item->Sel;
    item->Sel = selection;
    item->Flags |= OPTIF_CHANGED;
    m_sheet.TellCallback(CPSUICB_REASON_SEL_CHANGED, m_sheet.PageWindow(m_sheet.DriverPageIndex()), item,
                         old);
    m_sheet.RefreshTree();
}

void SheetUser::Ok() {
    SendMessageW(GetDlgItem(m_sheet.Window(), IDOK), BM_CLICK, 0, 0);
}

void SheetUser::Cancel() {
    SendMessageW(GetDlgItem(m_sheet.Window(), IDCANCEL), BM_CLICK, 0, 0);
}

void SheetUser::Apply() {
    if (!ApplyEnabled())
        throw HostError{L"the Apply button is disabled or missing"};
    SendMessageW(GetDlgItem(m_sheet.Window(), IDC_SHEET_APPLY), BM_CLICK, 0, 0);
}

bool SheetUser::ApplyEnabled() const {
    const HWND button = GetDlgItem(m_sheet.Window(), IDC_SHEET_APPLY);
    return button && IsWindowVisible(button) && IsWindowEnabled(button);
}

std::wstring SheetUser::Text(int id) const {
    return WindowText(Existing(id));
}

bool SheetUser::Checked(int id) const {
    return SendMessageW(Existing(id), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

bool SheetUser::Visible(int id) const {
    return IsWindowVisible(Existing(id)) != FALSE;
}

bool SheetUser::Enabled(int id) const {
    return IsWindowEnabled(Existing(id)) != FALSE;
}

}  // namespace driverhost
