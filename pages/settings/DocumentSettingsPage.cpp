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
#include "pages/settings/NumericEdits.h"
#include "pages/settings/PageLeaving.h"
#include "pages/settings/PaperForms.h"
#include "pages/settings/SizeRow.h"
#include "resources/resource.h"
#include "settings/SettingsStore.h"

namespace kzp {

namespace {

constexpr unsigned kSpinFloor = 0;

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

void LocaliseTexts(const SheetState& sheet, HWND page) {
    LocaliseControls(sheet, page, kTexts);
    LocalisePageTitle(sheet, page, IDS_SETTINGS_PAGE_TITLE);
}

// Anything but a "NO" means yes, and is stored as such.
void ShowViewerChoice(SheetState& sheet, HWND page) {
    std::wstring stored;
    ReadStringSetting(kLaunchView, stored);
    const bool launch = IsPrefixOfYes(stored) || !IsPrefixOfNo(stored);
    CheckDlgButton(page, IDC_DISPLAY_IN_VIEWER, launch ? BST_CHECKED : BST_UNCHECKED);
    sheet.Pending.LaunchView = launch ? L"YES" : L"NO";
    if (launch)
        WriteStringSetting(kLaunchView, L"YES");
}

void ShowOutputType(SheetState& sheet, HWND page) {
    DWORD stored = 0;
    ReadDwordSetting(kOutputType, stored);
    const bool kzpx = stored != kStoredKzp;
    CheckRadioButton(page, IDC_OUTPUT_KZPX, IDC_OUTPUT_KZP, kzpx ? IDC_OUTPUT_KZPX : IDC_OUTPUT_KZP);
    sheet.Pending.KzpxOutput = kzpx ? 1 : 0;
}

// Without the driver's unit nothing is shown in the edits; the record's margins then go through unchanged.
void ShowSizes(SheetState& sheet, HWND page) {
    if (!TakeDriverUnit(sheet))
        return;
    ShowCustomForm(sheet, page, true);
    if (sheet.Measures.unit == kInches)
        ConvertUnits(sheet.Measures, page, kInches);
}

// The style is asked, for the sheet itself is not on the screen yet when its first page is set up.
bool ApplyIsVisible(HWND frame) {
    const HWND apply = GetDlgItem(frame, IDC_SHEET_APPLY);
    return apply && (GetWindowLongW(apply, GWL_STYLE) & WS_VISIBLE);
}

class Initialising {
  public:
    explicit Initialising(SheetState& sheet) : m_sheet(sheet) { m_sheet.Initialising = true; }
    ~Initialising() { m_sheet.Initialising = false; }
    Initialising(const Initialising&) = delete;
    Initialising& operator=(const Initialising&) = delete;

  private:
    SheetState& m_sheet;
};

void OnInit(SheetState& sheet, HWND page) {
    const Initialising initialising(sheet);
    const HWND frame = GetParent(page);
    if (!sheet.SheetPrimed)
        VisitAllTabs(sheet, frame);
    TakeStoredSizes(sheet);
    const ResModuleUse texts(g_hInstance);
    LocaliseTexts(sheet, page);
    FillPaperList(sheet, page);
    ShowDriverSelections(sheet, page);
    ShowViewerChoice(sheet, page);
    ShowOutputType(sheet, page);
    RememberOffsets(sheet, page);
    SelectPaper(sheet, page);
    ShowSizes(sheet, page);
    sheet.ApplyButtonVisible = ApplyIsVisible(frame);
}

// Converts from the unit still recorded. A button that gets the focus says that it is pressed before it shows
// it, and the limit of what is typed follows what the buttons show.
void OnUnit(SheetState& sheet, HWND page, DWORD unit) {
    if (!SelectDriverUnit(sheet, unit))
        return;
    CheckRadioButton(page, IDC_INCHES, IDC_MILLIMETERS, unit == kInches ? IDC_INCHES : IDC_MILLIMETERS);
    ConvertUnits(sheet.Measures, page, unit);
    sheet.Measures.unit = unit;
}

void OnOrientation(SheetState& sheet, HWND page, int button) {
    ApplyControlToDriver(sheet, page, button);
    sheet.Measures.orientation = button == IDC_PORTRAIT ? 1 : 0;
}

void OnButton(SheetState& sheet, HWND page, int button) {
    switch (button) {
        case IDC_HELP_SETTINGS:
            return ShowHelp();
        case IDC_INCHES:
            return OnUnit(sheet, page, kInches);
        case IDC_MILLIMETERS:
            return OnUnit(sheet, page, kMillimeters);
        case IDC_PORTRAIT:
        case IDC_LANDSCAPE:
            return OnOrientation(sheet, page, button);
        case IDC_DISPLAY_IN_VIEWER:
            return ApplyControlToDriver(sheet, page, button);
        case IDC_OUTPUT_KZPX:
        case IDC_OUTPUT_KZP:
            sheet.Pending.KzpxOutput = button == IDC_OUTPUT_KZPX ? 1 : 0;
            return;
        default:
            return;
    }
}

void OnSelection(SheetState& sheet, HWND page, int list) {
    ApplyControlToDriver(sheet, page, list);
    if (list == IDC_PAPER)
        SelectPaper(sheet, page);
}

INT_PTR OnCommand(SheetState& sheet, HWND page, int control, UINT notification) {
    switch (notification) {
        case BN_CLICKED:
            OnButton(sheet, page, control);
            break;
        case CBN_SELCHANGE:
            OnSelection(sheet, page, control);
            break;
        case EN_CHANGE:
            FilterNumericEdit(sheet.Measures, page, control);
            break;
        default:
            return 0;
    }
    EnableApply(GetParent(page));
    return 1;
}

// Held down, the buttons report longer steps; those repeat the direction of the click.
void OnSpin(SheetState& sheet, HWND page, int edit, int step) {
    LONG& direction = sheet.Measures.lastSpinDirection;
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

INT_PTR OnNotify(SheetState& sheet, HWND page, const NMHDR& header) {
    if (header.code == UDN_DELTAPOS) {
        if (const int edit = EditOfSpinButton(header.idFrom))
            OnSpin(sheet, page, edit, reinterpret_cast<const NMUPDOWN&>(header).iDelta);
    }
    return header.code != PSN_KILLACTIVE || LeavePage(sheet);
}

INT_PTR OnMessage(SheetState& sheet, HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG:
            OnInit(sheet, page);
            return 1;
        case WM_COMMAND:
            return OnCommand(sheet, page, LOWORD(wParam), HIWORD(wParam));
        case WM_NOTIFY:
            return OnNotify(sheet, page, *reinterpret_cast<const NMHDR*>(lParam));
        case WM_SHOWWINDOW:
            CheckWhenShownOrHidden(sheet);
            return 0;
        default:
            return 0;
    }
}

}  // namespace

INT_PTR CALLBACK DocumentSettingsPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    return GuardCallback<INT_PTR>(L"DocumentSettingsPageProc", L"pages/settings/DocumentSettingsPage",
                                  __LINE__, 0, [&]() -> INT_PTR {
                                      SheetState* const sheet = SheetOfPage(page, message, lParam);
                                      return sheet ? OnMessage(*sheet, page, message, wParam, lParam) : 0;
                                  });
}

void TakeStoredSizes(SheetState& sheet) {
    (void)TakeDriverUnit(sheet);
    TakeRecordMargins(sheet.Measures, RecordOf(sheet.CurrentUIParam));
}

}  // namespace kzp
