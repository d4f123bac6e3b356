#include "pages/settings/SizeRow.h"

#include "resources/resource.h"

namespace kzp {

namespace {

constexpr int kRow[] = {IDC_WIDTH_LABEL,  IDC_WIDTH,  IDC_WIDTH_SPIN,
                        IDC_HEIGHT_LABEL, IDC_HEIGHT, IDC_HEIGHT_SPIN};

RECT PlaceOn(HWND page, HWND control) {
    RECT place = {};
    GetWindowRect(control, &place);
    MapWindowPoints(nullptr, page, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

template <class Use>
void ForEachMovingControl(SheetState& sheet, HWND page, Use&& use) {
    for (int id = IDC_MOVING_FIRST; id <= IDC_MOVING_LAST; ++id) {
        if (const HWND control = GetDlgItem(page, id))
            use(control, PlaceOn(page, control), sheet.RememberedOffsets[id - IDC_MOVING_FIRST]);
    }
}

// Hiding may take the keyboard focus away from whoever selects a paper with the arrow keys (Wine leaves it);
// it is given back. A page that is not on the screen yet has nothing to paint anew.
void Repaint(HWND page) {
    if (!IsWindowVisible(page))
        return;
    const HWND focus = GetFocus();
    ShowWindow(page, SW_HIDE);
    ShowWindow(page, SW_SHOW);
    if (IsChild(page, focus))
        SetFocus(focus);
}

}  // namespace

void RememberOffsets(SheetState& sheet, HWND page) {
    ForEachMovingControl(sheet, page, [](HWND, const RECT& place, int& offset) { offset = place.top; });
}

void ShowSizeRow(SheetState& sheet, HWND page, int shift, int showCommand) {
    for (const int id : kRow)
        ShowWindow(GetDlgItem(page, id), showCommand);
    if (showCommand == SW_HIDE && shift == 0)
        return;
    ForEachMovingControl(sheet, page, [shift](HWND control, const RECT& place, int offset) {
        SetWindowPos(control, nullptr, place.left, shift + offset, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    });
    Repaint(page);
}

int HiddenRowShift(HWND page) {
    const RECT row = PlaceOn(page, GetDlgItem(page, IDC_WIDTH_LABEL));
    const RECT below = PlaceOn(page, GetDlgItem(page, IDC_MARGIN_LABEL));
    return row.top - below.top;
}

}  // namespace kzp
