#include "pages/settings/DriverControls.h"

#include "pages/DriverOptions.h"
#include "resources/resource.h"

namespace kzp {

namespace {

// The driver's item that follows the colour mode is known by its position alone.
constexpr DWORD kColorCompanionPosition = 4;

constexpr LONG kPortraitSelection = 0;
constexpr LONG kLandscapeSelection = 1;

LONG Selected(HWND page, int list) {
    return static_cast<LONG>(SendDlgItemMessageW(page, list, CB_GETCURSEL, 0, 0));
}

void ApplyList(const SheetState& sheet, HWND page, int list, PCSTR keyword) {
    if (const LONG selection = Selected(page, list); selection != CB_ERR)
        SelectOption(sheet, FindFeature(sheet, keyword), selection);
}

void ApplyColor(const SheetState& sheet, HWND page) {
    const LONG selection = Selected(page, IDC_COLOR);
    const POPTITEM color = FindFeature(sheet, kColorMode);
    if (!color || selection == CB_ERR)
        return;
    color->Sel = selection;
    if (const POPTITEM companion = DriverItemAt(sheet.CurrentUIParam, kColorCompanionPosition)) {
        companion->Flags &= ~static_cast<DWORD>(OPTIF_HIDE);
        SelectOption(sheet, companion, selection > 1 ? 1 : 0);
    }
    AnnounceSelection(sheet, color);
}

void ApplyOrientation(const SheetState& sheet, HWND page, int button, LONG selection) {
    const POPTITEM orientation = FindFeature(sheet, kOrientation);
    if (!orientation || IsDlgButtonChecked(page, button) != BST_CHECKED)
        return;
    orientation->Flags &= ~static_cast<DWORD>(OPTIF_HIDE);
    SelectOption(sheet, orientation, selection);
}

PCWSTR YesOrNo(HWND page, int box) {
    return IsDlgButtonChecked(page, box) == BST_CHECKED ? L"YES" : L"NO";
}

void FillList(const SheetState& sheet, HWND page, int list, PCSTR keyword) {
    const OPTITEM* const item = FindFeature(sheet, keyword);
    for (LONG option = 0; static_cast<size_t>(option) < OptionsOf(item).size(); ++option) {
        const PCWSTR name = OptionName(item, option);
        // An option without a name keeps its place, for positions count.
        SendDlgItemMessageW(page, list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name ? name : L""));
    }
}

void ShowSelection(const SheetState& sheet, HWND page, int list, PCSTR keyword) {
    if (const OPTITEM* const item = FindFeature(sheet, keyword))
        SendDlgItemMessageW(page, list, CB_SETCURSEL, static_cast<WPARAM>(item->Sel), 0);
}

void ShowOrientation(SheetState& sheet, HWND page) {
    const OPTITEM* const orientation = FindFeature(sheet, kOrientation);
    if (!orientation)
        return;
    const bool portrait = orientation->Sel == kPortraitSelection;
    CheckRadioButton(page, IDC_PORTRAIT, IDC_LANDSCAPE, portrait ? IDC_PORTRAIT : IDC_LANDSCAPE);
    sheet.Measures.orientation = portrait ? 1 : 0;
}

// The unit is recorded at once. What an earlier sheet left would have the first fill converted once more.
void ShowUnit(SheetState& sheet, HWND page) {
    if (TakeDriverUnit(sheet))
        CheckRadioButton(page, IDC_INCHES, IDC_MILLIMETERS,
                         sheet.Measures.unit == kInches ? IDC_INCHES : IDC_MILLIMETERS);
}

// The box is one of the output location page; on this page it is missing, and nothing happens.
void ShowPromptPreference(const SheetState& sheet, HWND page) {
    if (const OPTITEM* const preference = FindFeature(sheet, kSaveAsPreference))
        CheckDlgButton(page, IDC_PROMPT_FILE_NAME, preference->Sel ? BST_UNCHECKED : BST_CHECKED);
}

}  // namespace

void ApplyControlToDriver(SheetState& sheet, HWND page, int controlId) {
    switch (controlId) {
        case IDC_PAPER:
            ApplyList(sheet, page, IDC_PAPER, kPaperSize);
            break;
        case IDC_QUALITY:
            ApplyList(sheet, page, IDC_QUALITY, kResolution);
            break;
        case IDC_COLOR:
            ApplyColor(sheet, page);
            break;
        case IDC_PORTRAIT:
            ApplyOrientation(sheet, page, IDC_PORTRAIT, kPortraitSelection);
            break;
        case IDC_LANDSCAPE:
            ApplyOrientation(sheet, page, IDC_LANDSCAPE, kLandscapeSelection);
            break;
        case IDC_DISPLAY_IN_VIEWER:
            sheet.Pending.LaunchView = YesOrNo(page, controlId);
            break;
        case IDC_PROMPT_FILE_NAME:
            sheet.Pending.PromptFileName = YesOrNo(page, controlId);
            break;
        default:
            break;
    }
}

void ShowDriverSelections(SheetState& sheet, HWND page) {
    FillList(sheet, page, IDC_QUALITY, kResolution);
    FillList(sheet, page, IDC_COLOR, kColorMode);
    ShowOrientation(sheet, page);
    ShowSelection(sheet, page, IDC_QUALITY, kResolution);
    AnnounceSelection(sheet, FindFeature(sheet, kColorMode));
    ShowSelection(sheet, page, IDC_COLOR, kColorMode);
    ShowSelection(sheet, page, IDC_PAPER, kPaperSize);
    ShowUnit(sheet, page);
    ShowPromptPreference(sheet, page);
}

bool TakeDriverUnit(SheetState& sheet) {
    const OPTITEM* const unit = FindFeature(sheet, kCustomUnit);
    if (!unit)
        return false;
    sheet.Measures.unit = unit->Sel == 0 ? kInches : kMillimeters;
    return true;
}

bool SelectDriverUnit(const SheetState& sheet, DWORD unit) {
    const POPTITEM item = FindFeature(sheet, kCustomUnit);
    SelectOption(sheet, item, static_cast<LONG>(unit));
    return item != nullptr;
}

}  // namespace kzp
