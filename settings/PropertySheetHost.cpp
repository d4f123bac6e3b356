#include "settings/PropertySheetHost.h"

#include "core/Module.h"
#include "pages/output/OutputLocationPage.h"
#include "pages/settings/DocumentSettingsPage.h"
#include "pages/settings/PaperForms.h"
#include "resources/resource.h"
#include "settings/CommitCallback.h"
#include "settings/SettingsStore.h"
#include "settings/SheetState.h"
#include "settings/TreeTrimming.h"

namespace kzp {

namespace {

HRESULT InvalidParameter() {
    SetLastError(ERROR_INVALID_PARAMETER);
    return E_FAIL;
}

// A page that is never shown, or cannot be set up, then commits what is stored already, unchanged.
void TakeWhatIsStored(SheetState& sheet) {
    PendingSettings& pending = sheet.Pending;
    ReadStringSetting(kLaunchView, pending.LaunchView);
    ReadStringSetting(kPromptFileName, pending.PromptFileName);
    ReadStringSetting(kPathDirs, pending.PathDirs);
    ReadStringSetting(kDefaultDir, pending.DefaultDir);
    DWORD outputType = 0;
    ReadDwordSetting(kOutputType, outputType);
    pending.KzpxOutput = outputType != kStoredKzp ? 1 : 0;
    TakeStoredSizes(sheet);
}

LONG_PTR AddPage(const SheetState& sheet, PPROPSHEETUI_INFO info, int dialogId, DLGPROC procedure) {
    PROPSHEETPAGEW page = {};
    page.dwSize = sizeof page;
    page.hInstance = g_hInstance;
    page.pszTemplate = MAKEINTRESOURCEW(dialogId);
    page.pfnDlgProc = procedure;
    page.lParam = sheet.PageParam;
    return info->pfnComPropSheet(info->hComPropSheet, CPSFUNC_ADD_PROPSHEETPAGEW,
                                 reinterpret_cast<LPARAM>(&page), 0);
}

LONG_PTR AddPages(PPROPSHEETUI_INFO info) {
    const SheetUse use = AddPagesToSheet(*info);
    SheetState& sheet = *use.Get();
    TakeWhatIsStored(sheet);
    sheet.SettingsPageHandle = AddPage(sheet, info, IDD_DOCUMENT_SETTINGS, DocumentSettingsPageProc);
    const LONG_PTR started =
        info->pfnComPropSheet(info->hComPropSheet, CPSFUNC_SET_HSTARTPAGE, sheet.SettingsPageHandle, 0);
    sheet.OutputPageHandle = AddPage(sheet, info, IDD_OUTPUT_LOCATION, OutputLocationPageProc);
    sheet.ExtraPageAdded = false;
    return started;
}

}  // namespace

HRESULT CommonUIProp(DWORD mode, POEMCUIPPARAM param, IPrintOemDriverUI* driverUI) {
    if (!param)
        return InvalidParameter();
    // The printer's properties show no pages of ours: their state is for this call alone.
    SheetState passing;
    const SheetUse presented = mode == OEMCUIP_PRNPROP ? SheetUse() : PresentSheet(param);
    SheetState& sheet = presented ? *presented.Get() : passing;
    // Taken before the mode is checked; a refused one leaves them changed.
    sheet.CurrentUIParam = param;
    sheet.CurrentPrinterName = param->pPrinterName ? param->pPrinterName : L"";
    sheet.DriverUI = driverUI;
    if (mode != OEMCUIP_DOCPROP && mode != OEMCUIP_PRNPROP)
        return InvalidParameter();
    EnsureCustomForm(sheet);
    const bool document = mode == OEMCUIP_DOCPROP;
    if (document)
        TrimDriverTree(*param);
    // The plug-in adds no items of its own.
    if (!param->pOEMOptItems)
        param->cOEMOptItems = 0;
    if (document)
        param->OEMCUIPCallback = CommitCallback;
    return S_OK;
}

HRESULT DocumentPropertySheets(PPROPSHEETUI_INFO info, LPARAM lParam, const CKZPWriterSettings&) {
    if (!info || info->Version != PROPSHEETUI_INFO_VERSION)
        return InvalidParameter();
    switch (info->Reason) {
        case PROPSHEETUI_REASON_INIT:
            if (!info->pfnComPropSheet)
                return InvalidParameter();
            info->Result = static_cast<ULONG_PTR>(AddPages(info));
            break;
        case PROPSHEETUI_REASON_GET_INFO_HEADER:
            if (lParam)
                reinterpret_cast<PPROPSHEETUI_INFO_HEADER>(lParam)->pTitle =
                    const_cast<LPTSTR>(L"KZPWRITER UI Page");
            info->Result = 1;
            break;
        case PROPSHEETUI_REASON_DESTROY:
            DestroySheet(*info);
            info->Result = 1;
            break;
        case PROPSHEETUI_REASON_SET_RESULT:
            info->Result =
                lParam ? static_cast<ULONG_PTR>(reinterpret_cast<PSETRESULT_INFO>(lParam)->Result) : 0;
            break;
        default:
            info->Result = 0;
            break;
    }
    return S_OK;
}

}  // namespace kzp
