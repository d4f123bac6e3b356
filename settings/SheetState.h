// What the process keeps while a document sheet is open, and what the pages have edited until the commit
// writes it. Only the thread that shows the sheet touches it; the driver shows one sheet at a time.
#pragma once

#include <string>

#include "driverkit/printoem.h"

namespace kzp {

struct SheetState {
    // The latest CommonUIProp call's parameter block, owned by the driver; and a copy of its printer's name.
    POEMCUIPPARAM CurrentUIParam = nullptr;
    std::wstring CurrentPrinterName;

    // From the latest PROPSHEETUI_REASON_INIT: the sheet's function and the handles of the two pages.
    PROPSHEETUI_INFO SheetInfo = {};
    LONG_PTR SettingsPageHandle = 0;
    LONG_PTR OutputPageHandle = 0;
    bool ExtraPageAdded = false;  // a further page behind ours; cleared whenever the pages are added

    bool SheetPrimed = false;  // the fonts dialog is embedded and every tab has been visited
    HWND FirstHiddenChild =
        nullptr;                     // the driver page's first control, when it was hidden for the first time
    HWND FontsDialog = nullptr;      // the embedded fonts dialog while it exists
    HWND SheetTabControl = nullptr;  // the sheet's tab control; owns the pages' message boxes
    bool ApplyRefused = false;       // set by a refused commit, cleared by the settings page
    bool ApplyButtonVisible = true;  // whether the sheet showed Apply when the settings page was set up
};

// Edited by the pages, written by the commit. Lives as long as the DLL stays loaded and is shared by all
// sheets.
struct PendingSettings {
    std::wstring LaunchView;      // "YES" or "NO"
    std::wstring PromptFileName;  // "YES", "NO" or "No"
    std::wstring PathDirs;        // folder history, each entry followed by ";"
    std::wstring DefaultDir;      // output folder
    DWORD KzpxOutput = 1;         // 1 "KZPx" output, 0 "KZP"
};

extern SheetState g_sheet;
extern PendingSettings g_pendingSettings;

}  // namespace kzp
