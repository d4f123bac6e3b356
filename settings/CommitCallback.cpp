#include "settings/CommitCallback.h"

#include "core/DebugTrace.h"
#include "core/KZPPrivateDevMode.h"
#include "pages/SheetFrame.h"
#include "pages/advanced/CAdvancedDlg.h"
#include "pages/output/EmbeddedDialog.h"
#include "pages/output/OutputFolder.h"
#include "pages/settings/Measures.h"
#include "pages/settings/PaperForms.h"
#include "settings/SettingsStore.h"
#include "settings/SheetState.h"
#include "support/Spooler.h"

namespace kzp {

namespace {

constexpr wchar_t kUiValuePrinterData[] = L"BRMK_KZPWRITER_UI_VALUE";

void StorePrinterData(HANDLE printer, const wchar_t* name, DWORD type, const void* data, DWORD bytes) {
    // Refused writes are ignored: the sheet's other choices still count.
    (void)SetPrinterDataW(printer, SpoolerText(name), type, const_cast<BYTE*>(static_cast<const BYTE*>(data)),
                          bytes);
}

// The output-location item is the first of the plug-in's own; a driver need not pass one.
void StoreUiValue(const OEMCUIPPARAM& param) {
    if (!param.pOEMOptItems || param.cOEMOptItems == 0)
        return;
    const LONG selection = param.pOEMOptItems[0].Sel;
    StorePrinterData(param.hPrinter, kUiValuePrinterData, REG_DWORD, &selection, sizeof selection);
}

void StoreMargins(const OEMCUIPPARAM& param) {
    float margins[kMargins];
    if (!ReadRecordMargins(RecordOf(&param), margins))
        return;
    StorePrinterData(param.hPrinter, kMarginPrinterData, REG_BINARY, margins, sizeof margins);
}

void StorePendingTexts(SheetState& sheet) {
    (void)WriteStringSetting(kLaunchView, sheet.Pending.LaunchView);
    (void)WriteStringSetting(kPromptFileName, sheet.Pending.PromptFileName);
    (void)WriteStringSetting(kPathDirs, sheet.Pending.PathDirs);
    // Only with a custom size does an empty folder become the documents folder; the asymmetry is deliberate.
    if (sheet.Measures.CustomSizeSelected && sheet.Pending.DefaultDir.empty())
        sheet.Pending.DefaultDir = DocumentsFolder();
    (void)WriteStringSetting(kDefaultDir, sheet.Pending.DefaultDir);
}

void PressEnter() {
    keybd_event(VK_RETURN, 0, 0, 0);
    keybd_event(VK_RETURN, 0, KEYEVENTF_KEYUP, 0);
}

// Commits the paper and answers what the driver shall do.
LONG CommitPaper(const SheetState& sheet, const OEMCUIPPARAM& param) {
    if (!sheet.Measures.CustomSizeSelected)
        return CPSUICB_ACTION_OPTIF_CHANGED;
    if (CommitCustomForm(sheet.Measures, param) == 0 || sheet.ApplyButtonVisible)
        return CPSUICB_ACTION_ITEMS_APPLIED;
    // A sheet without Apply closes once more, by its own Enter, with the new form in place.
    PressEnter();
    return CPSUICB_ACTION_NO_APPLY_EXIT;
}

// Printer, record and items are those of the block that the driver gives; what the user chose is the sheet's.
// The order of the writes is part of what other programs may rely on.
LONG Commit(SheetState& sheet, const OEMCUIPPARAM& param) {
    StoreUiValue(param);
    LONG result = CPSUICB_ACTION_NO_APPLY_EXIT;
    if (SizesValid(sheet.Measures)) {
        StorePendingTexts(sheet);
        CommitMargins(sheet.Measures, RecordOf(&param));
        result = CommitPaper(sheet, param);
    } else {
        sheet.ApplyRefused = true;
    }
    SaveFontList(sheet);
    (void)WriteDwordSetting(kOutputType, sheet.Pending.KzpxOutput != 0 ? 2 : 1);
    StoreMargins(param);
    return result;
}

// Every page must exist before OK can be pressed, for only pages that were shown once hold their values.
void PrimeSheet(SheetState& sheet, HWND driverPage) {
    EmbedSettingsDialog(sheet, driverPage);
    sheet.SheetPrimed = true;
    VisitAllTabs(sheet, GetParent(driverPage));
}

LONG OnEvent(const CPSUICBPARAM& event, POEMCUIPPARAM param) {
    const bool apply = event.Reason == CPSUICB_REASON_APPLYNOW;
    // Without a page every window of the desktop would count as its child.
    const bool activation = event.Reason == CPSUICB_REASON_SETACTIVE && event.hDlg;
    if (!apply && !activation)
        return CPSUICB_ACTION_NONE;
    const SheetUse sheet = SheetOfBlock(param);
    if (apply)
        return Commit(*sheet.Get(), *param);
    if (!sheet.Get()->SheetPrimed)
        PrimeSheet(*sheet.Get(), event.hDlg);
    return CPSUICB_ACTION_NONE;
}

}  // namespace

LONG APIENTRY CommitCallback(PCPSUICBPARAM cbparam, POEMCUIPPARAM param) {
    if (!cbparam || !param)
        return CPSUICB_ACTION_NONE;
    // A commit that goes wrong inside keeps the sheet, and what the user typed, open.
    const LONG fallback =
        cbparam->Reason == CPSUICB_REASON_APPLYNOW ? CPSUICB_ACTION_NO_APPLY_EXIT : CPSUICB_ACTION_NONE;
    return GuardCallback<LONG>(L"CommitCallback", L"settings/CommitCallback", __LINE__, fallback,
                               [&] { return OnEvent(*cbparam, param); });
}

}  // namespace kzp
