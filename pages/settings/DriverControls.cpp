#include "pages/settings/DriverControls.h"

#include "pages/DriverOptions.h"
#include "pages/settings/Measures.h"
#include "resources/resource.h"
#include "settings/SheetState.h"

namespace kzp {

namespace {

// The driver's item that follows the colour mode is known by its position alone.
constexpr DWORD kColorCompanionPosition = 4;

constexpr LONG kPortraitSelection = 0;
constexpr LONG kLandscapeSelection = 1;

LONG Selected(HWND page, int list) {
    return static_cast<LONG>(SendDlgItemMessageW(page, list, CB_GETCURSEL, 0, 0));
}

void ApplyList(HWND page, int list, PCSTR keyword) {
    if (const LONG selection = Selected(page, list); selection != CB_ERR)
        SelectOption(FindFeature(keyword), selection);
}

void ApplyColor(HWND page) {
    const LONG selection = Selected(page, IDC_COLOR);
    const POPTITEM color = FindFeature(kColorMode);
    if (!color || selection == CB_ERR)
        return;
    color->Sel = selection;
    if (const POPTITEM companion = DriverItemAt(kColorCompanionPosition)) {
        companion->Flags &= ~static_cast<DWORD>(OPTIF_HIDE);
        SelectOption(companion, selection > 1 ? 1 : 0);
    }
    AnnounceSelection(color);
}

void ApplyOrientation(HWND page, int button, LONG selection) {
    const POPTITEM orientation = FindFeature(kOrientation);
    if (!orientation || IsDlgButtonChecked(page, button) != BST_CHECKED)
        return;
    orientation->Flags &= ~static_cast<DWORD>(OPTIF_HIDE);
    SelectOption(orientation, selection);
}

PCWSTR YesOrNo(HWND page, int box) {
    return IsDlgButtonChecked(page, box) == BST_CHECKED ? L"YES" : L"NO";
}

void FillList(HWND page, int list, PCSTR keyword) {
    const OPTITEM* const item = FindFeature(keyword);
    for (LONG option = 0; static_cast<size_t>(option) < OptionsOf(item).size(); ++option) {
        const PCWSTR name = OptionName(item, option);
        // An option without a name keeps its place, for positions count.
        SendDlgItemMessageW(page, list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name ? name : L""));
    }
}

void ShowSelection(HWND page, int list, PCSTR keyword) {
    if (const OPTITEM* const item = FindFeature(keyword))
        SendDlgItemMessageW(page, list, CB_SETCURSEL, static_cast<WPARAM>(item->Sel), 0);
}

void ShowOrientation(HWND page) {
    const OPTITEM* const orientation = FindFeature(kOrientation);
    if (!orientation)
        return;
    const bool portrait = orientation->Sel == kPortraitSelection;
    CheckRadioButton(page, IDC_PORTRAIT, IDC_LANDSCAPE, portrait ? IDC_PORTRAIT : IDC_LANDSCAPE);
    g_measures.orientation = portrait ? 1 : 0;
}

// The unit is recorded at once. What an earlier sheet left would have the first fill converted once more.
void ShowUnit(HWND page) {
    const OPTITEM* const unit = FindFeature(kCustomUnit);
    if (!unit)
        return;
    g_measures.unit = unit->Sel == 0 ? kInches : kMillimeters;
    CheckRadioButton(page, IDC_INCHES, IDC_MILLIMETERS, unit->Sel == 0 ? IDC_INCHES : IDC_MILLIMETERS);
}

// The box is one of the output location page; on this page it is missing, and nothing happens.
void ShowPromptPreference(HWND page) {
    if (const OPTITEM* const preference = FindFeature(kSaveAsPreference))
        CheckDlgButton(page, IDC_PROMPT_FILE_NAME, preference->Sel ? BST_UNCHECKED : BST_CHECKED);
}

}  // namespace

void ApplyControlToDriver(HWND page, int controlId) {
    switch (controlId) {
        case IDC_PAPER:
            ApplyList(page, IDC_PAPER, kPaperSize);
            break;
        case IDC_QUALITY:
            ApplyList(page, IDC_QUALITY, kResolution);
            break;
        case IDC_COLOR:
            ApplyColor(page);
            break;
        case IDC_PORTRAIT:
            ApplyOrientation(page, IDC_PORTRAIT, kPortraitSelection);
            break;
        case IDC_LANDSCAPE:
            ApplyOrientation(page, IDC_LANDSCAPE, kLandscapeSelection);
            break;
        case IDC_DISPLAY_IN_VIEWER:
            g_pendingSettings.LaunchView = YesOrNo(page, controlId);
            break;
        case IDC_PROMPT_FILE_NAME:
            g_pendingSettings.PromptFileName = YesOrNo(page, controlId);
            break;
        default:
            break;
    }
}

void ShowDriverSelections(HWND page) {
    FillList(page, IDC_QUALITY, kResolution);
    FillList(page, IDC_COLOR, kColorMode);
    ShowOrientation(page);
    ShowSelection(page, IDC_QUALITY, kResolution);
    AnnounceSelection(FindFeature(kColorMode));
    ShowSelection(page, IDC_COLOR, kColorMode);
    ShowSelection(page, IDC_PAPER, kPaperSize);
    ShowUnit(page);
    ShowPromptPreference(page);
}

bool HasDriverUnit() {
    return FindFeature(kCustomUnit) != nullptr;
}

bool SelectDriverUnit(DWORD unit) {
    SelectOption(FindFeature(kCustomUnit), static_cast<LONG>(unit));
    return HasDriverUnit();
}

}  // namespace kzp
