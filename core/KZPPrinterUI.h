// The plug-in object: what the core driver's user interface talks to. Its identity, its counting, what it
// tells of itself, the helper interface and the operations that it does not support live here; the others are
// handed to the rooms that tell their stories.
#pragma once

#include "core/ComCount.h"
#include "core/KZPPrivateDevMode.h"
#include "driverkit/prcomoem.h"
#include "settings/CKZPWriterSettings.h"

namespace kzp {

// One object per session of the driver's user interface, born with one reference for its creator. Operations
// are called on the driver's own threads. No exception of C++ leaves any of them, and none at all leaves
// GetInfo or the release of the driver's helper.
class KZPPrinterUI final : public IPrintOemUI2 {
  public:
    KZPPrinterUI() = default;
    virtual ~KZPPrinterUI();
    KZPPrinterUI(const KZPPrinterUI&) = delete;
    KZPPrinterUI& operator=(const KZPPrinterUI&) = delete;

    // Accepts IID_IUnknown and IID_IPrintOemUI2 alone; the older IID_IPrintOemUI is refused like any other.
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    // Signature and version, 4 bytes each. E_FAIL for a missing pointer, for `cbSize` above 4 and for a
    // buffer that cannot be written; E_NOTIMPL, with `*pcbNeeded` set, for every other mode.
    HRESULT STDMETHODCALLTYPE GetInfo(DWORD dwMode, PVOID pBuffer, DWORD cbSize, PDWORD pcbNeeded) override;
    HRESULT STDMETHODCALLTYPE DevMode(DWORD dwMode, POEMDMPARAM pOemDMParam) override;

    // Takes the driver's helper interface, for this object and for the module. E_FAIL once the object has it.
    HRESULT STDMETHODCALLTYPE PublishDriverInterface(IUnknown* pIUnknown) override;
    HRESULT STDMETHODCALLTYPE CommonUIProp(DWORD dwMode, POEMCUIPPARAM pOemCUIPParam) override;
    HRESULT STDMETHODCALLTYPE DocumentPropertySheets(PPROPSHEETUI_INFO pPSUIInfo, LPARAM lParam) override;

    // The operations down to HideStandardUI answer E_NOTIMPL, look at nothing and write nothing.
    HRESULT STDMETHODCALLTYPE DevicePropertySheets(PPROPSHEETUI_INFO, LPARAM) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DevQueryPrintEx(POEMUIOBJ, PDEVQUERYPRINT_INFO, PDEVMODEW, PVOID) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE DeviceCapabilities(POEMUIOBJ, HANDLE, PWSTR, WORD, PVOID, PDEVMODEW, PVOID,
                                                 DWORD, DWORD*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE UpgradePrinter(DWORD, PBYTE) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE PrinterEvent(PWSTR, INT, DWORD, LPARAM) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DriverEvent(DWORD, DWORD, LPBYTE, LPARAM) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE QueryColorProfile(HANDLE, POEMUIOBJ, PDEVMODEW, PVOID, ULONG, VOID*, ULONG*,
                                                FLONG*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE FontInstallerDlgProc(HWND, UINT, WPARAM, LPARAM) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE UpdateExternalFonts(HANDLE, HANDLE, PWSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE QueryJobAttributes(HANDLE, PDEVMODEW, DWORD, LPBYTE) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE HideStandardUI(DWORD) override { return E_NOTIMPL; }

    HRESULT STDMETHODCALLTYPE DocumentEvent(HANDLE hPrinter, HDC hdc, INT iEsc, ULONG cbIn, PVOID pvIn,
                                            ULONG cbOut, PVOID pvOut, PINT piResult) override;

  private:
    ComCount m_cRef;
    IPrintOemDriverUI* m_pOemDriverUI = nullptr;
    IPrintOemDriverUI* m_pModuleDriverUI = nullptr;  // what this object gave the module; never released
    CKZPWriterSettings m_settings;
};

}  // namespace kzp
