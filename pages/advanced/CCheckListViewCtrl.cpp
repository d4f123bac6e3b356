#include "pages/advanced/CCheckListViewCtrl.h"

#include <commctrl.h>

namespace kzp {

namespace {

constexpr UINT kUncheckedImage = 1;
constexpr UINT kCheckedImage = 2;
constexpr int kEveryItem = -1;
constexpr int kTextCharacters = 32;

}  // namespace

CCheckListViewCtrl::ManyChanges::ManyChanges(CCheckListViewCtrl& list) : m_list(list) {
    if (m_list.m_changes++ == 0)
        SendMessageW(m_list.m_list, WM_SETREDRAW, FALSE, 0);
}

CCheckListViewCtrl::ManyChanges::~ManyChanges() {
    if (--m_list.m_changes != 0)
        return;
    SendMessageW(m_list.m_list, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(m_list.m_list, nullptr, TRUE);
}

void CCheckListViewCtrl::Attach(HWND list, int width) {
    m_list = list;
    SendMessageW(list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT);
    LVCOLUMNW column = {};
    SendMessageW(list, LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
    SendMessageW(list, LVM_SETCOLUMNWIDTH, 0, width);
}

int CCheckListViewCtrl::Count() const {
    return static_cast<int>(SendMessageW(m_list, LVM_GETITEMCOUNT, 0, 0));
}

void CCheckListViewCtrl::Add(std::span<const std::wstring> names) {
    const ManyChanges changes(*this);
    SendMessageW(m_list, LVM_SETITEMCOUNT, names.size(), 0);
    // A sorted list looks for a new entry's place from its front: coming in descending order, each is there
    // at once.
    for (auto name = names.rbegin(); name != names.rend(); ++name) {
        LVITEMW item = {};
        item.mask = LVIF_TEXT;
        item.pszText = const_cast<PWSTR>(name->c_str());
        SendMessageW(m_list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    }
}

std::wstring CCheckListViewCtrl::Text(int index) const {
    wchar_t text[kTextCharacters] = {};
    LVITEMW item = {};
    item.pszText = text;
    item.cchTextMax = kTextCharacters;
    SendMessageW(m_list, LVM_GETITEMTEXTW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
    return item.pszText;
}

bool CCheckListViewCtrl::IsChecked(int index) const {
    const LRESULT state =
        SendMessageW(m_list, LVM_GETITEMSTATE, static_cast<WPARAM>(index), LVIS_STATEIMAGEMASK);
    return static_cast<UINT>(state) != INDEXTOSTATEIMAGEMASK(kUncheckedImage);
}

void CCheckListViewCtrl::Check(int index) {
    SetStateImage(index, kCheckedImage);
}

void CCheckListViewCtrl::CheckAll(bool checked) {
    const ManyChanges changes(*this);
    SetStateImage(kEveryItem, checked ? kCheckedImage : kUncheckedImage);
}

void CCheckListViewCtrl::SetStateImage(int index, UINT image) {
    LVITEMW item = {};
    item.state = INDEXTOSTATEIMAGEMASK(image);
    item.stateMask = LVIS_STATEIMAGEMASK;
    SendMessageW(m_list, LVM_SETITEMSTATE, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
}

}  // namespace kzp
