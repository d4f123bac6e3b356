#include "settings/CommitCallback.h"

#include <cstring>

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
    if (!param.pOEMDM)
        return;
    float margins[4];
    std::memcpy(margins, static_cast<const KZPPrivateDevMode*>(param.pOEMDM)->fMargins, sizeof margins);
    StorePrinterData(param.hPrinter, kMarginPrinterData, REG_BINARY, margins, sizeof margins);
}

void StorePendingTexts() {
    (void)WriteStringSetting(kLaunchView, g_pendingSettings.LaunchView);
    (void)WriteStringSetting(kPromptFileName, g_pendingSettings.PromptFileName);
    (void)WriteStringSetting(kPathDirs, g_pendingSettings.PathDirs);
    // Only with a custom size does an empty folder become the documents folder; the asymmetry is deliberate.
    if (g_measures.CustomSizeSelected && g_pendingSettings.DefaultDir.empty())
        g_pendingSettings.DefaultDir = DocumentsFolder();
    (void)WriteStringSetting(kDefaultDir, g_pendingSettings.DefaultDir);
}

void PressEnter() {
    keybd_event(VK_RETURN, 0, 0, 0);
    keybd_event(VK_RETURN, 0, KEYEVENTF_KEYUP, 0);
}

// Commits the paper and answers what the driver shall do.
LONG CommitPaper() {
    if (!g_measures.CustomSizeSelected)
        return CPSUICB_ACTION_OPTIF_CHANGED;
    if (CommitCustomForm() == 0 || g_sheet.ApplyButtonVisible)
        return CPSUICB_ACTION_ITEMS_APPLIED;
    // A sheet without Apply closes once more, by its own Enter, with the new form in place.
    PressEnter();
    return CPSUICB_ACTION_NO_APPLY_EXIT;
}

// The order of the writes is part of what other programs may rely on.
LONG Commit(const OEMCUIPPARAM& param) {
    StoreUiValue(param);
    LONG result = CPSUICB_ACTION_NO_APPLY_EXIT;
    if (SizesValid()) {
        StorePendingTexts();
        CommitMargins();
        result = CommitPaper();
    } else {
        g_sheet.ApplyRefused = true;
    }
    SaveFontList();
    (void)WriteDwordSetting(kOutputType, g_pendingSettings.KzpxOutput != 0 ? 2 : 1);
    StoreMargins(param);
    return result;
}

// Every page must exist before OK can be pressed, for only pages that were shown once hold their values.
void PrimeSheet(HWND driverPage) {
    EmbedSettingsDialog(driverPage);
    g_sheet.SheetPrimed = true;
    VisitAllTabs(GetParent(driverPage));
}

}  // namespace

LONG APIENTRY CommitCallback(PCPSUICBPARAM cbparam, POEMCUIPPARAM param) {
    // Whatever goes wrong inside keeps the sheet, and what the user typed, open.
    return GuardCallback<LONG>(
        L"CommitCallback", L"settings/CommitCallback", __LINE__, CPSUICB_ACTION_NO_APPLY_EXIT, [&]() -> LONG {
            if (!cbparam)
                return CPSUICB_ACTION_NONE;
            if (cbparam->Reason == CPSUICB_REASON_APPLYNOW && param)
                return Commit(*param);
            // Without a page every window of the desktop would count as its child.
            if (cbparam->Reason == CPSUICB_REASON_SETACTIVE && cbparam->hDlg && !g_sheet.SheetPrimed)
                PrimeSheet(cbparam->hDlg);
            return CPSUICB_ACTION_NONE;
        });
}

}  // namespace kzp
