#include "pages/settings/PaperForms.h"

#include <winspool.h>

#include <cwchar>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "pages/ControlTexts.h"
#include "pages/DriverOptions.h"
#include "pages/settings/Measures.h"
#include "pages/settings/NumericEdits.h"
#include "pages/settings/SizeRow.h"
#include "resources/resource.h"
#include "settings/SheetState.h"
#include "support/UniqueHandle.h"

namespace kzp {

namespace {

constexpr DWORD kFormLevel = 1;

// 8.5 by 10.5 inches in tenths of a millimetre; the height is deliberate, this is not Letter.
constexpr LONG kDefaultWidthTenthMm = 2159;
constexpr LONG kDefaultHeightTenthMm = 2667;

HANDLE Printer() {
    return g_sheet.CurrentUIParam ? g_sheet.CurrentUIParam->hPrinter : nullptr;
}

std::optional<SIZEL> ReadFormSize(PCWSTR name) {
    const HANDLE printer = Printer();
    if (!printer)
        return std::nullopt;
    const PWSTR formName = const_cast<PWSTR>(name);
    DWORD bytes = 0;
    GetFormW(printer, formName, kFormLevel, nullptr, 0, &bytes);
    if (bytes < sizeof(FORM_INFO_1W))
        return std::nullopt;
    std::vector<BYTE> block(bytes);
    if (!GetFormW(printer, formName, kFormLevel, block.data(), bytes, &bytes))
        return std::nullopt;
    return reinterpret_cast<const FORM_INFO_1W*>(block.data())->Size;
}

// A user form whose imageable area is the whole sheet.
FORM_INFO_1W FormRecord(PCWSTR name, LONG width, LONG height) {
    FORM_INFO_1W form = {};
    form.Flags = FORM_USER;
    form.pName = const_cast<PWSTR>(name);
    form.Size = {width, height};
    form.ImageableArea = {0, 0, width, height};
    return form;
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

bool IsCustomForm(PCWSTR name) {
    return name && std::wcscmp(name, kCustomFormName) == 0;
}

int EnsureCustomForm() {
    if (!ReadFormSize(kCustomFormName))
        AddCustomForm(g_sheet.CurrentPrinterName.c_str(), kCustomFormName, kDefaultWidthTenthMm,
                      kDefaultHeightTenthMm);
    return 1;
}

bool AddCustomForm(PCWSTR printerName, PCWSTR formName, LONG widthTenthMm, LONG heightTenthMm) {
    PRINTER_DEFAULTSW defaults = {nullptr, nullptr, PRINTER_ALL_ACCESS};
    UniquePrinter printer;
    if (!OpenPrinterW(const_cast<PWSTR>(printerName), printer.Put(), &defaults) || !printer)
        return false;
    FORM_INFO_1W form = FormRecord(formName, widthTenthMm * 100, heightTenthMm * 100);
    return AddFormW(printer.Get(), kFormLevel, reinterpret_cast<BYTE*>(&form)) != FALSE;
}

int CommitCustomForm() {
    if (!CustomPaperSelected())
        return 0;
    const LONG width = ThousandthsOf(g_measures.widthText);
    const LONG height = ThousandthsOf(g_measures.heightText);
    const auto stored = ReadFormSize(kCustomFormName);
    if ((stored && stored->cx == width && stored->cy == height) || !Printer())
        return 0;
    FORM_INFO_1W form = FormRecord(kCustomFormName, width, height);
    return SetFormW(Printer(), form.pName, kFormLevel, reinterpret_cast<BYTE*>(&form));
}

void FillPaperList(HWND page) {
    const OPTITEM* const paper = FindFeature("PaperSize");
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
    const OPTITEM* const unit = takeUnitFromDriver ? FindFeature("CustomUnit") : nullptr;
    CheckRadioButton(page, IDC_INCHES, IDC_MILLIMETERS,
                     unit && unit->Sel == 0 ? IDC_INCHES : IDC_MILLIMETERS);
    if (!fill)
        return;
    // Every write raises the edit's change notification, through which the state follows.
    if (const auto size = ReadFormSize(kCustomFormName)) {
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
    const SIZEL size = ReadFormSize(name).value_or(SIZEL{});
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
