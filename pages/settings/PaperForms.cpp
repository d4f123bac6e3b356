#include "pages/settings/PaperForms.h"

#include <climits>
#include <new>
#include <string>

#include "pages/ControlTexts.h"
#include "pages/DriverOptions.h"
#include "pages/settings/Measures.h"
#include "pages/settings/NumericEdits.h"
#include "pages/settings/SizeRow.h"
#include "resources/resource.h"
#include "settings/SheetState.h"
#include "settings/SpoolerForms.h"

namespace kzp {

namespace {

// 8.5 by 10.5 inches in tenths of a millimetre; the height is deliberate, this is not Letter.
constexpr LONG kDefaultWidthTenthMm = 2159;
constexpr LONG kDefaultHeightTenthMm = 2667;

HANDLE Printer() {
    return g_sheet.CurrentUIParam ? g_sheet.CurrentUIParam->hPrinter : nullptr;
}

// The driver's first item is taken as the paper feature wherever the selected paper's name counts.
PCWSTR PaperName(LONG option) {
    return OptionName(DriverItemAt(0), option);
}

bool CustomPaperSelected() {
    const OPTITEM* const paper = DriverItemAt(0);
    return paper && IsCustomForm(PaperName(paper->Sel));
}

// Single precision in this order; truncated to what the spooler can hold.
LONG ThousandthsOf(const NumberText& text) {
    const float value = ParseNumber(text) * (g_measures.unit == kInches ? 254.0f : 10.0f) * 100.0f;
    return value < 2147483648.0f ? static_cast<LONG>(value) : LONG_MAX;
}

void WriteLength(HWND page, int control, double value) {
    NumberText text;
    FormatTwoDecimals(value, text);
    SetDlgItemTextW(page, control, text);
}

}  // namespace

int EnsureCustomForm() {
    if (!ReadFormSize(Printer(), kCustomFormName))
        AddCustomForm(g_sheet.CurrentPrinterName.c_str(), kCustomFormName, kDefaultWidthTenthMm,
                      kDefaultHeightTenthMm);
    return 1;
}

int CommitCustomForm() {
    if (!CustomPaperSelected())
        return 0;
    const SIZEL typed = {ThousandthsOf(g_measures.widthText), ThousandthsOf(g_measures.heightText)};
    const auto stored = ReadFormSize(Printer(), kCustomFormName);
    if ((stored && stored->cx == typed.cx && stored->cy == typed.cy) || !Printer())
        return 0;
    return ResizeCustomForm(Printer(), typed) ? 1 : 0;
}

void FillPaperList(HWND page) {
    const OPTITEM* const paper = FindFeature(kPaperSize);
    const std::wstring customName = LoadText(IDS_CUSTOM_PAPER);
    for (LONG option = 0; static_cast<size_t>(option) < OptionsOf(paper).size(); ++option) {
        PCWSTR name = OptionName(paper, option);
        if (IsCustomForm(name) && !customName.empty())
            name = customName.c_str();
        const LRESULT added = SendDlgItemMessageW(page, IDC_PAPER, CB_ADDSTRING, 0,
                                                  reinterpret_cast<LPARAM>(name ? name : L""));
        if (added == CB_ERRSPACE)
            throw std::bad_alloc();
    }
}

void ShowCustomForm(HWND page, double factor, bool takeUnitFromDriver, bool fill) {
    const OPTITEM* const unit = takeUnitFromDriver ? FindFeature(kCustomUnit) : nullptr;
    CheckRadioButton(page, IDC_INCHES, IDC_MILLIMETERS,
                     unit && unit->Sel == 0 ? IDC_INCHES : IDC_MILLIMETERS);
    if (!fill)
        return;
    // Every write raises the edit's change notification, through which the state follows.
    if (const auto size = ReadFormSize(Printer(), kCustomFormName)) {
        WriteLength(page, IDC_WIDTH, size->cx / (factor * 1000));
        WriteLength(page, IDC_HEIGHT, size->cy / (factor * 1000));
    }
    float margins[kMargins];
    if (ReadRecordMargins(margins)) {
        WriteLength(page, IDC_LEFT, margins[kLeft] / factor);
        WriteLength(page, IDC_TOP, margins[kTop] / factor);
        WriteLength(page, IDC_RIGHT, margins[kRight] / factor);
        WriteLength(page, IDC_BOTTOM, margins[kBottom] / factor);
    }
}

void ReadStandardFormSize(HWND page, double factor) {
    wchar_t name[kNumberChars] = L"";
    GetDlgItemTextW(page, IDC_PAPER, name, kNumberChars);
    const SIZEL size = ReadFormSize(Printer(), name).value_or(SIZEL{});
    g_measures.formWidthIn = static_cast<float>(size.cx / (factor * 1000));
    g_measures.formHeightIn = static_cast<float>(size.cy / (factor * 1000));
}

void SelectPaper(HWND page) {
    const LRESULT selected = SendDlgItemMessageW(page, IDC_PAPER, CB_GETCURSEL, 0, 0);
    const bool custom = IsCustomForm(PaperName(static_cast<LONG>(selected)));
    if (custom) {
        if (g_measures.unit == kInches) {
            ConvertUnits(page, kInches);
            ShowCustomForm(page, 25.4, true, false);
        } else {
            ShowCustomForm(page, 1.0, false, false);
        }
        ShowSizeRow(page, 0, SW_SHOW);
    } else {
        ReadStandardFormSize(page, 25.4);
        ShowSizeRow(page, HiddenRowShift(page), SW_HIDE);
    }
    g_measures.CustomSizeSelected = custom;
}

}  // namespace kzp
