#include "pages/settings/PageLeaving.h"

#include <commctrl.h>

#include "pages/ControlTexts.h"
#include "pages/SheetFrame.h"
#include "pages/settings/Measures.h"
#include "resources/resource.h"
#include "settings/SheetState.h"
#include "support/WindowsVersion.h"

namespace kzp {

namespace {

// More tabs than the driver's own one and our two: an application or another plug-in has added some.
constexpr int kUsualTabs = 3;

int AskTabs(UINT message) {
    return static_cast<int>(SendMessageW(g_sheet.SheetTabControl, message, 0, 0));
}

bool IsWindowsXP() {
    const OSVERSIONINFOW version = WindowsVersion();
    return version.dwMajorVersion == 5 && version.dwMinorVersion == 1;
}

void ShowInvalidSizeMessage() {
    const std::wstring caption = LoadText(IDS_INVALID_SIZE_CAPTION);
    const std::wstring text = LoadText(IDS_INVALID_SIZE_TEXT);
    MessageBoxW(g_sheet.SheetTabControl, text.c_str(), caption.c_str(), MB_ICONEXCLAMATION);
}

// Presses Ctrl+Tab until the sheet's second-to-last tab, which is this page, is in front again.
void ReturnToPage() {
    const int count = AskTabs(TCM_GETITEMCOUNT);
    const int current = AskTabs(TCM_GETCURSEL);
    const int target = count - (g_sheet.ExtraPageAdded ? 1 : 2);
    PressCtrlTab(current <= target ? target - current : count - current + target);
}

}  // namespace

bool LeavePage(bool initialising) {
    if (initialising && !g_measures.CustomSizeSelected)
        return true;
    if (SizesValid())
        return true;
    // There a refused apply has the page lose the front once more; the user has just read the message.
    if (g_sheet.ApplyRefused && (AskTabs(TCM_GETITEMCOUNT) > kUsualTabs || IsWindowsXP()))
        g_sheet.ApplyRefused = false;
    else
        ShowInvalidSizeMessage();
    return false;
}

void CheckWhenShownOrHidden() {
    if (!SizesValid())
        ReturnToPage();
}

}  // namespace kzp
