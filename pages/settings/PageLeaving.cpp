#include "pages/settings/PageLeaving.h"

#include <commctrl.h>

#include "pages/ControlTexts.h"
#include "pages/SheetFrame.h"
#include "resources/resource.h"
#include "support/WindowsVersion.h"

namespace kzp {

namespace {

// More tabs than the driver's own one and our two: an application or another plug-in has added some.
constexpr int kUsualTabs = 3;

int AskTabs(const SheetState& sheet, UINT message) {
    return static_cast<int>(SendMessageW(sheet.SheetTabControl, message, 0, 0));
}

bool IsWindowsXP() {
    const OSVERSIONINFOW version = WindowsVersion();
    return version.dwMajorVersion == 5 && version.dwMinorVersion == 1;
}

void ShowInvalidSizeMessage(const SheetState& sheet) {
    const std::wstring caption = LoadText(sheet, IDS_INVALID_SIZE_CAPTION);
    const std::wstring text = LoadText(sheet, IDS_INVALID_SIZE_TEXT);
    MessageBoxW(sheet.SheetTabControl, text.c_str(), caption.c_str(), MB_ICONEXCLAMATION);
}

// Presses Ctrl+Tab until the sheet's second-to-last tab, which is this page, is in front again.
void ReturnToPage(const SheetState& sheet) {
    const int count = AskTabs(sheet, TCM_GETITEMCOUNT);
    const int current = AskTabs(sheet, TCM_GETCURSEL);
    const int target = count - (sheet.ExtraPageAdded ? 1 : 2);
    PressCtrlTab(current <= target ? target - current : count - current + target);
}

}  // namespace

bool LeavePage(SheetState& sheet) {
    if (sheet.Initialising && !sheet.Measures.CustomSizeSelected)
        return true;
    if (SizesValid(sheet.Measures))
        return true;
    // There a refused apply has the page lose the front once more; the user has just read the message.
    if (sheet.ApplyRefused && (AskTabs(sheet, TCM_GETITEMCOUNT) > kUsualTabs || IsWindowsXP()))
        sheet.ApplyRefused = false;
    else
        ShowInvalidSizeMessage(sheet);
    return false;
}

void CheckWhenShownOrHidden(const SheetState& sheet) {
    if (!SizesValid(sheet.Measures))
        ReturnToPage(sheet);
}

}  // namespace kzp
