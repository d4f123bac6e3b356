#include "pages/settings/DocumentSettingsPage.h"

#include <commctrl.h>
#include <prsht.h>

#include "core/DebugTrace.h"
#include "core/Module.h"
#include "help/Help.h"
#include "help/ResourceModule.h"
#include "pages/ControlTexts.h"
#include "pages/SheetFrame.h"
#include "pages/settings/DriverControls.h"
#include "pages/settings/Measures.h"
#include "pages/settings/NumericEdits.h"
#include "pages/settings/PageLeaving.h"
#include "pages/settings/PaperForms.h"
#include "pages/settings/SizeRow.h"
#include "resources/resource.h"
#include "settings/SettingsStore.h"
#include "settings/SheetState.h"

namespace kzp {

namespace {

// While WM_INITDIALOG runs: a standard paper is not judged before the page is filled.
constinit bool g_initialising = false;

constexpr unsigned kSpinFloor = 0;
constexpr DWORD kStoredKzp = 1;  // "OutputType"; anything else is KZPx

constexpr ControlText kTexts[] = {
    {IDC_PAPER_LABEL, IDS_PAPER_LABEL},
    {IDC_WIDTH_LABEL, IDS_WIDTH_LABEL},
    {IDC_HEIGHT_LABEL, IDS_HEIGHT_LABEL},
    {IDC_MARGIN_LABEL, IDS_MARGIN_LABEL},
    {IDC_LEFT_LABEL, IDS_LEFT_LABEL},
    {IDC_RIGHT_LABEL, IDS_RIGHT_LABEL},
    {IDC_TOP_LABEL, IDS_TOP_LABEL},
    {IDC_BOTTOM_LABEL, IDS_BOTTOM_LABEL},
    {IDC_UNITS_LABEL, IDS_UNITS_LABEL},
    {IDC_INCHES, IDS_INCHES},
    {IDC_MILLIMETERS, IDS_MILLIMETERS},
    {IDC_ORIENTATION_LABEL, IDS_ORIENTATION_LABEL},
    {IDC_PORTRAIT, IDS_PORTRAIT},
    {IDC_LANDSCAPE, IDS_LANDSCAPE},
    {IDC_QUALITY_LABEL, IDS_QUALITY_LABEL},
    {IDC_COLOR_LABEL, IDS_COLOR_LABEL},
    {IDC_DISPLAY_IN_VIEWER, IDS_DISPLAY_IN_VIEWER},
    {IDC_OUTPUT_TYPE_LABEL, IDS_OUTPUT_TYPE_LABEL},
    {IDC_OUTPUT_KZPX, IDS_OUTPUT_KZPX},
    {IDC_OUTPUT_KZP, IDS_OUTPUT_KZP},
    {IDC_HELP_SETTINGS, IDS_HELP_SETTINGS},
    {IDC_PAPER_GROUP, IDS_PAPER_GROUP},
};

void LocaliseTexts(HWND page) {
    LocaliseControls(page, kTexts);
    LocalisePageTitle(page, IDS_SETTINGS_PAGE_TITLE);
}

// Anything but a "NO" means yes, and is stored as such.
void ShowViewerChoice(HWND page) {
    std::wstring stored;
    ReadStringSetting(kLaunchView, stored);
    const bool launch = IsPrefixOfYes(stored) || !IsPrefixOfNo(stored);
    CheckDlgButton(page, IDC_DISPLAY_IN_VIEWER, launch ? BST_CHECKED : BST_UNCHECKED);
    g_pendingSettings.LaunchView = launch ? L"YES" : L"NO";
    if (launch)
        WriteStringSetting(kLaunchView, L"YES");
}

void ShowOutputType(HWND page) {
    DWORD stored = 0;
    ReadDwordSetting(kOutputType, stored);
    const bool kzpx = stored != kStoredKzp;
    CheckRadioButton(page, IDC_OUTPUT_KZPX, IDC_OUTPUT_KZP, kzpx ? IDC_OUTPUT_KZPX : IDC_OUTPUT_KZP);
    g_pendingSettings.KzpxOutput = kzpx ? 1 : 0;
}

// Without the driver's unit nothing is shown in the edits; the record's margins then go through unchanged.
void ShowSizes(HWND page) {
    if (!HasDriverUnit()) {
        TakeRecordMargins();
    } else if (g_measures.unit == kMillimeters) {
        ShowCustomForm(page, 1.0, false, true);
    } else {
        ShowCustomForm(page, 25.4, true, true);
        ConvertUnits(page, kInches);
    }
}

// The style is asked, for the sheet itself is not on the screen yet when its first page is set up.
bool ApplyIsVisible(HWND sheet) {
    const HWND apply = GetDlgItem(sheet, IDC_SHEET_APPLY);
    return apply && (GetWindowLongW(apply, GWL_STYLE) & WS_VISIBLE);
}

void OnInit(HWND page) {
    struct Initialising {
        Initialising() { g_initialising = true; }
        ~Initialising() { g_initialising = false; }
    } const initialising;
    const HWND sheet = GetParent(page);
    if (!g_sheet.SheetPrimed)
        VisitAllTabs(sheet);
    const ResModuleUse texts(g_hInstance);
    ForgetEdits();
    LocaliseTexts(page);
    FillPaperList(page);
    ShowDriverSelections(page);
    ShowViewerChoice(page);
    ShowOutputType(page);
    RememberOffsets(page);
    SelectPaper(page);
    ShowSizes(page);
    g_sheet.ApplyButtonVisible = ApplyIsVisible(sheet);
}

// Converts from the unit still recorded.
void OnUnit(HWND page, DWORD unit) {
    if (!SelectDriverUnit(unit))
        return;
    ConvertUnits(page, unit);
    g_measures.unit = unit;
}

void OnOrientation(HWND page, int button) {
    ApplyControlToDriver(page, button);
    g_measures.orientation = button == IDC_PORTRAIT ? 1 : 0;
}

void OnButton(HWND page, int button) {
    switch (button) {
        case IDC_HELP_SETTINGS:
            return ShowHelp();
        case IDC_INCHES:
            return OnUnit(page, kInches);
        case IDC_MILLIMETERS:
            return OnUnit(page, kMillimeters);
        case IDC_PORTRAIT:
        case IDC_LANDSCAPE:
            return OnOrientation(page, button);
        case IDC_DISPLAY_IN_VIEWER:
            return ApplyControlToDriver(page, button);
        case IDC_OUTPUT_KZPX:
        case IDC_OUTPUT_KZP:
            g_pendingSettings.KzpxOutput = button == IDC_OUTPUT_KZPX ? 1 : 0;
            return;
        default:
            return;
    }
}

void OnSelection(HWND page, int list) {
    ApplyControlToDriver(page, list);
    if (list == IDC_PAPER)
        SelectPaper(page);
}

INT_PTR OnCommand(HWND page, int control, UINT notification) {
    switch (notification) {
        case BN_CLICKED:
            OnButton(page, control);
            break;
        case CBN_SELCHANGE:
            OnSelection(page, control);
            break;
        case EN_CHANGE:
            FilterNumericEdit(page, control);
            break;
        default:
            return 0;
    }
    EnableApply(GetParent(page));
    return 1;
}

// Held down, the buttons report longer steps; those repeat the direction of the click.
void OnSpin(HWND page, int edit, int step) {
    LONG& direction = g_measures.lastSpinDirection;
    const bool click = step == -1 || step == 1;
    if (click)
        direction = step;
    if (direction == -1)
        StepUp(page, edit, kSpinFloor);
    else if (direction == 1)
        StepDown(page, edit, kSpinFloor);
    if (click)
        EnableApply(GetParent(page));
}

INT_PTR OnNotify(HWND page, const NMHDR& header) {
    if (header.code == UDN_DELTAPOS) {
        if (const int edit = EditOfSpinButton(header.idFrom))
            OnSpin(page, edit, reinterpret_cast<const NMUPDOWN&>(header).iDelta);
    }
    return header.code != PSN_KILLACTIVE || LeavePage(g_initialising);
}

INT_PTR OnMessage(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG:
            OnInit(page);
            return 1;
        case WM_COMMAND:
            return OnCommand(page, LOWORD(wParam), HIWORD(wParam));
        case WM_NOTIFY:
            return OnNotify(page, *reinterpret_cast<const NMHDR*>(lParam));
        case WM_SHOWWINDOW:
            CheckWhenShownOrHidden();
            return 0;
        default:
            return 0;
    }
}

}  // namespace

INT_PTR CALLBACK DocumentSettingsPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    return GuardCallback<INT_PTR>(L"DocumentSettingsPageProc", L"pages/settings/DocumentSettingsPage",
                                  __LINE__, 0, [&] { return OnMessage(page, message, wParam, lParam); });
}

}  // namespace kzp
