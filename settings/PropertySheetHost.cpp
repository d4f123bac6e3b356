#include "settings/PropertySheetHost.h"

#include "core/Module.h"
#include "pages/output/OutputLocationPage.h"
#include "pages/settings/DocumentSettingsPage.h"
#include "pages/settings/PaperForms.h"
#include "resources/resource.h"
#include "settings/CommitCallback.h"
#include "settings/SheetState.h"
#include "settings/TreeTrimming.h"

namespace kzp {

namespace {

HRESULT InvalidParameter() {
    SetLastError(ERROR_INVALID_PARAMETER);
    return E_FAIL;
}

LONG_PTR AddPage(PPROPSHEETUI_INFO info, int dialogId, DLGPROC procedure) {
    PROPSHEETPAGEW page = {};
    page.dwSize = sizeof page;
    page.hInstance = g_hInstance;
    page.pszTemplate = MAKEINTRESOURCEW(dialogId);
    page.pfnDlgProc = procedure;
    return info->pfnComPropSheet(info->hComPropSheet, CPSFUNC_ADD_PROPSHEETPAGEW,
                                 reinterpret_cast<LPARAM>(&page), 0);
}

LONG_PTR AddPages(PPROPSHEETUI_INFO info) {
    g_sheet.SettingsPageHandle = AddPage(info, IDD_DOCUMENT_SETTINGS, DocumentSettingsPageProc);
    const LONG_PTR started =
        info->pfnComPropSheet(info->hComPropSheet, CPSFUNC_SET_HSTARTPAGE, g_sheet.SettingsPageHandle, 0);
    g_sheet.OutputPageHandle = AddPage(info, IDD_OUTPUT_LOCATION, OutputLocationPageProc);
    g_sheet.ExtraPageAdded = false;
    g_sheet.SheetInfo = *info;
    return started;
}

}  // namespace

HRESULT CommonUIProp(DWORD mode, POEMCUIPPARAM param) {
    // Taken before anything is checked; a refused mode leaves them changed.
    g_sheet.CurrentUIParam = param;
    g_sheet.CurrentPrinterName = param && param->pPrinterName ? param->pPrinterName : L"";
    if (!param || (mode != OEMCUIP_DOCPROP && mode != OEMCUIP_PRNPROP))
        return InvalidParameter();
    EnsureCustomForm();
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
