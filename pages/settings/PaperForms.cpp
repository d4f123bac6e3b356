#include "pages/settings/PaperForms.h"

#include <climits>
#include <new>
#include <string>

#include "pages/ControlTexts.h"
#include "pages/DriverOptions.h"
#include "pages/settings/NumericEdits.h"
#include "pages/settings/SizeRow.h"
#include "resources/resource.h"
#include "settings/SpoolerForms.h"

namespace kzp {

namespace {

// 8.5 by 10.5 inches in tenths of a millimetre; the height is deliberate, this is not Letter.
constexpr LONG kDefaultWidthTenthMm = 2159;
constexpr LONG kDefaultHeightTenthMm = 2667;

HANDLE PrinterOf(const SheetState& sheet) {
    return sheet.CurrentUIParam ? sheet.CurrentUIParam->hPrinter : nullptr;
}

// The driver's first item is taken as the paper feature wherever the selected paper's name counts.
const OPTITEM* PaperItem(const OEMCUIPPARAM* param) {
    return DriverItemAt(param, 0);
}

// Single precision in this order; truncated to what the spooler can hold.
LONG ThousandthsOf(const NumberText& text, DWORD unit) {
    const float value = ParseNumber(text) * (unit == kInches ? 254.0f : 10.0f) * 100.0f;
    return value < 2147483648.0f ? static_cast<LONG>(value) : LONG_MAX;
}

void WriteLength(HWND page, int control, double value) {
    NumberText text;
    FormatTwoDecimals(value, text);
    SetDlgItemTextW(page, control, text);
}

}  // namespace

int EnsureCustomForm(const SheetState& sheet) {
    if (!ReadFormSize(PrinterOf(sheet), kCustomFormName))
        AddCustomForm(sheet.CurrentPrinterName.c_str(), kCustomFormName, kDefaultWidthTenthMm,
                      kDefaultHeightTenthMm);
    return 1;
}

int CommitCustomForm(const PageMeasureState& measures, const OEMCUIPPARAM& param) {
    const OPTITEM* const paper = PaperItem(&param);
    if (!paper || !IsCustomForm(OptionName(paper, paper->Sel)))
        return 0;
    const SIZEL typed = {ThousandthsOf(measures.widthText, measures.unit),
                         ThousandthsOf(measures.heightText, measures.unit)};
    const auto stored = ReadFormSize(param.hPrinter, kCustomFormName);
    if ((stored && stored->cx == typed.cx && stored->cy == typed.cy) || !param.hPrinter)
        return 0;
    return ResizeCustomForm(param.hPrinter, typed) ? 1 : 0;
}

void FillPaperList(const SheetState& sheet, HWND page) {
    const OPTITEM* const paper = FindFeature(sheet, kPaperSize);
    const std::wstring customName = LoadText(sheet, IDS_CUSTOM_PAPER);
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

void ShowCustomForm(const SheetState& sheet, HWND page, bool fill) {
    const OPTITEM* const unit = sheet.Measures.unit == kInches ? FindFeature(sheet, kCustomUnit) : nullptr;
    CheckRadioButton(page, IDC_INCHES, IDC_MILLIMETERS,
                     unit && unit->Sel == 0 ? IDC_INCHES : IDC_MILLIMETERS);
    if (!fill)
        return;
    const double factor = MillimetersPerUnit(sheet.Measures.unit);
    // Every write raises the edit's change notification, through which the state follows.
    if (const auto size = ReadFormSize(PrinterOf(sheet), kCustomFormName)) {
        WriteLength(page, IDC_WIDTH, size->cx / (factor * 1000));
        WriteLength(page, IDC_HEIGHT, size->cy / (factor * 1000));
    }
    float margins[kMargins];
    if (ReadRecordMargins(RecordOf(sheet.CurrentUIParam), margins)) {
        WriteLength(page, IDC_LEFT, margins[kLeft] / factor);
        WriteLength(page, IDC_TOP, margins[kTop] / factor);
        WriteLength(page, IDC_RIGHT, margins[kRight] / factor);
        WriteLength(page, IDC_BOTTOM, margins[kBottom] / factor);
    }
}

void ReadStandardFormSize(SheetState& sheet, HWND page) {
    constexpr double kThousandthsPerInch = 25.4 * 1000;
    wchar_t name[kNumberChars] = L"";
    GetDlgItemTextW(page, IDC_PAPER, name, kNumberChars);
    const SIZEL size = ReadFormSize(PrinterOf(sheet), name).value_or(SIZEL{});
    sheet.Measures.formWidthIn = static_cast<float>(size.cx / kThousandthsPerInch);
    sheet.Measures.formHeightIn = static_cast<float>(size.cy / kThousandthsPerInch);
}

void SelectPaper(SheetState& sheet, HWND page) {
    const auto selected = static_cast<LONG>(SendDlgItemMessageW(page, IDC_PAPER, CB_GETCURSEL, 0, 0));
    const bool custom = IsCustomForm(OptionName(PaperItem(sheet.CurrentUIParam), selected));
    if (custom) {
        if (sheet.Measures.unit == kInches)
            ConvertUnits(sheet.Measures, page, kInches);
        ShowCustomForm(sheet, page, false);
        ShowSizeRow(sheet, page, 0, SW_SHOW);
    } else {
        ReadStandardFormSize(sheet, page);
        ShowSizeRow(sheet, page, HiddenRowShift(page), SW_HIDE);
    }
    sheet.Measures.CustomSizeSelected = custom;
}

}  // namespace kzp
