#include "tools/driverhost/SheetUser.h"

#include <commctrl.h>

#include "resources/resource.h"
#include "tools/driverhost/Text.h"

namespace driverhost {

namespace {

void Notify(HWND control, WORD code) {
    SendMessageW(GetParent(control), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(control), code),
                 reinterpret_cast<LPARAM>(control));
}

void ClickAt(HWND window, int x, int y) {
    SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
}

// Embedded dialogs are searched too; the page's own control comes first.
HWND FindBelow(HWND page, int id) {
    if (const HWND own = GetDlgItem(page, id))
        return own;
    for (const HWND child : page ? Descendants(page) : std::vector<HWND>()) {
        if (GetDlgCtrlID(child) == id)
            return child;
    }
    return nullptr;
}

}  // namespace

std::vector<HWND> Descendants(HWND window) {
    std::vector<HWND> found;
    EnumChildWindows(
        window,
        [](HWND child, LPARAM all) -> BOOL {
            reinterpret_cast<std::vector<HWND>*>(all)->push_back(child);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&found));
    return found;
}

HWND SheetUser::Find(int id) const {
    HWND control = FindBelow(m_sheet.PageWindow(m_sheet.CurrentPage()), id);
    for (int index = 0; !control && index < m_sheet.PageCount(); ++index)
        control = FindBelow(m_sheet.PageWindow(index), id);
    return control;
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
    RECT place = {};
    if (!SendMessageW(m_sheet.Tabs(), TCM_GETITEMRECT, static_cast<WPARAM>(index),
                      reinterpret_cast<LPARAM>(&place)))
        throw HostError{Format(L"the sheet has no page %d", index + 1)};
    ClickAt(m_sheet.Tabs(), (place.left + place.right) / 2, (place.top + place.bottom) / 2);
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
    LVFINDINFOW wanted = {.flags = LVFI_STRING, .psz = text.c_str()};
    const LRESULT index =
        SendMessageW(list, LVM_FINDITEMW, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&wanted));
    if (index < 0)
        throw HostError{Format(L"control %d has no entry \"%ls\"", id, text.c_str())};
    if ((ListView_GetCheckState(list, static_cast<UINT>(index)) == 1) == on)
        return;
    SendMessageW(list, LVM_ENSUREVISIBLE, static_cast<WPARAM>(index), FALSE);
    RECT place = {LVIR_BOUNDS, 0, 0, 0};
    SendMessageW(list, LVM_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&place));
    ClickAt(list, place.left + 6, (place.top + place.bottom) / 2);
}

void SheetUser::Press(int button) {
    SendMessageW(GetDlgItem(m_sheet.Window(), button), BM_CLICK, 0, 0);
}

void SheetUser::Apply() {
    if (!ApplyEnabled())
        throw HostError{L"the Apply button is disabled or missing"};
    Press(IDC_SHEET_APPLY);
}

bool SheetUser::ApplyEnabled() const {
    const HWND button = GetDlgItem(m_sheet.Window(), IDC_SHEET_APPLY);
    return button && IsWindowVisible(button) && IsWindowEnabled(button);
}

std::wstring SheetUser::Text(int id) const {
    const HWND control = Existing(id);
    std::wstring text(static_cast<size_t>(SendMessageW(control, WM_GETTEXTLENGTH, 0, 0)), L'\0');
    SendMessageW(control, WM_GETTEXT, text.size() + 1, reinterpret_cast<LPARAM>(text.data()));
    return text;
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
