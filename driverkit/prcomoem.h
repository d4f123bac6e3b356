// The printer driver kit's COM interfaces for UI plug-ins: what this plug-in implements (IPrintOemUI2) and
// what the core driver's user interface offers it (IPrintOemDriverUI). Only the order of the slots and the
// identifiers matter; both are the kit's.
#pragma once

#include <unknwn.h>

#include "driverkit/printoem.h"

// {7F42285E-91D5-11D1-8820-00C04FB961EC}
inline constexpr IID IID_IPrintOemCommon = {
    0x7F42285E, 0x91D5, 0x11D1, {0x88, 0x20, 0x00, 0xC0, 0x4F, 0xB9, 0x61, 0xEC}};
// {C6A7A9D0-774C-11D1-947F-00A0C90640B8}
inline constexpr IID IID_IPrintOemUI = {
    0xC6A7A9D0, 0x774C, 0x11D1, {0x94, 0x7F, 0x00, 0xA0, 0xC9, 0x06, 0x40, 0xB8}};
// {292515F9-B54B-489B-9275-BAB56821395E}
inline constexpr IID IID_IPrintOemUI2 = {
    0x292515F9, 0xB54B, 0x489B, {0x92, 0x75, 0xBA, 0xB5, 0x68, 0x21, 0x39, 0x5E}};
// {92B05D50-78BC-11D1-9480-00A0C90640B8}
inline constexpr IID IID_IPrintOemDriverUI = {
    0x92B05D50, 0x78BC, 0x11D1, {0x94, 0x80, 0x00, 0xA0, 0xC9, 0x06, 0x40, 0xB8}};
// {085CCFCA-3ADF-4C9E-B491-D851A6EDC997}
inline constexpr IID IID_IPrintCoreUI2 = {
    0x085CCFCA, 0x3ADF, 0x4C9E, {0xB4, 0x91, 0xD8, 0x51, 0xA6, 0xED, 0xC9, 0x97}};

// The helper object of the core driver's user interface; `pci` is always the sheet's OEMUIOBJ.
struct IPrintOemDriverUI : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE DrvGetDriverSetting(PVOID pci, PCSTR Feature, PVOID pOutput,
                                                          DWORD cbSize, PDWORD pcbNeeded,
                                                          PDWORD pdwOptionsReturned) = 0;
    virtual HRESULT STDMETHODCALLTYPE DrvUpgradeRegistrySetting(HANDLE hPrinter, PCSTR pFeature,
                                                                PCSTR pOption) = 0;
    // Announces that the plug-in changed the selection of one of the driver's items.
    virtual HRESULT STDMETHODCALLTYPE DrvUpdateUISetting(PVOID pci, PVOID pOptItem, DWORD dwPreviousSelection,
                                                         DWORD dwMode) = 0;
};

struct IPrintOemCommon : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetInfo(DWORD dwMode, PVOID pBuffer, DWORD cbSize,
                                              PDWORD pcbNeeded) = 0;
    virtual HRESULT STDMETHODCALLTYPE DevMode(DWORD dwMode, POEMDMPARAM pOemDMParam) = 0;
};

struct IPrintOemUI : IPrintOemCommon {
    virtual HRESULT STDMETHODCALLTYPE PublishDriverInterface(IUnknown* pIUnknown) = 0;
    virtual HRESULT STDMETHODCALLTYPE CommonUIProp(DWORD dwMode, POEMCUIPPARAM pOemCUIPParam) = 0;
    virtual HRESULT STDMETHODCALLTYPE DocumentPropertySheets(PPROPSHEETUI_INFO pPSUIInfo, LPARAM lParam) = 0;
    virtual HRESULT STDMETHODCALLTYPE DevicePropertySheets(PPROPSHEETUI_INFO pPSUIInfo, LPARAM lParam) = 0;
    virtual HRESULT STDMETHODCALLTYPE DevQueryPrintEx(POEMUIOBJ poemuiobj, PDEVQUERYPRINT_INFO pDQPInfo,
                                                      PDEVMODEW pPublicDM, PVOID pOEMDM) = 0;
    virtual HRESULT STDMETHODCALLTYPE DeviceCapabilities(POEMUIOBJ poemuiobj, HANDLE hPrinter,
                                                         PWSTR pDeviceName, WORD wCapability, PVOID pOutput,
                                                         PDEVMODEW pPublicDM, PVOID pOEMDM, DWORD dwOld,
                                                         DWORD* dwResult) = 0;
    virtual HRESULT STDMETHODCALLTYPE UpgradePrinter(DWORD dwLevel, PBYTE pDriverUpgradeInfo) = 0;
    virtual HRESULT STDMETHODCALLTYPE PrinterEvent(PWSTR pPrinterName, INT iDriverEvent, DWORD dwFlags,
                                                   LPARAM lParam) = 0;
    virtual HRESULT STDMETHODCALLTYPE DriverEvent(DWORD dwDriverEvent, DWORD dwLevel, LPBYTE pDriverInfo,
                                                  LPARAM lParam) = 0;
    virtual HRESULT STDMETHODCALLTYPE QueryColorProfile(HANDLE hPrinter, POEMUIOBJ poemuiobj,
                                                        PDEVMODEW pPublicDM, PVOID pOEMDM, ULONG ulQueryMode,
                                                        VOID* pvProfileData, ULONG* pcbProfileData,
                                                        FLONG* pflProfileData) = 0;
    virtual HRESULT STDMETHODCALLTYPE FontInstallerDlgProc(HWND hWnd, UINT usMsg, WPARAM wParam,
                                                           LPARAM lParam) = 0;
    virtual HRESULT STDMETHODCALLTYPE UpdateExternalFonts(HANDLE hPrinter, HANDLE hHeap,
                                                          PWSTR pwstrCartridges) = 0;
};

struct IPrintOemUI2 : IPrintOemUI {
    virtual HRESULT STDMETHODCALLTYPE QueryJobAttributes(HANDLE hPrinter, PDEVMODEW pDevMode, DWORD dwLevel,
                                                         LPBYTE lpAttributeInfo) = 0;
    virtual HRESULT STDMETHODCALLTYPE HideStandardUI(DWORD dwMode) = 0;
    virtual HRESULT STDMETHODCALLTYPE DocumentEvent(HANDLE hPrinter, HDC hdc, INT iEsc, ULONG cbIn,
                                                    PVOID pvIn, ULONG cbOut, PVOID pvOut, PINT piResult) = 0;
};
