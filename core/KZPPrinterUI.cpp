#include "core/KZPPrinterUI.h"

#include <cstring>

#include "core/DebugTrace.h"
#include "core/DevModeOperations.h"
#include "core/Module.h"
#include "events/DocumentEvent.h"
#include "settings/PropertySheetHost.h"

namespace kzp {

namespace {

constexpr wchar_t kSourceFile[] = L"core/KZPPrinterUI";

}  // namespace

KZPPrinterUI::~KZPPrinterUI() {
    if (!m_pOemDriverUI)
        return;
    // The line number is part of the trace's fixed text.
    (void)GuardForeignFaults(L"KZPPrinterUI::~KZPPrinterUI", kSourceFile, 49, [this] {
        m_pOemDriverUI->Release();
        m_pOemDriverUI = nullptr;
        return S_OK;
    });
}

HRESULT STDMETHODCALLTYPE KZPPrinterUI::QueryInterface(REFIID riid, void** ppv) {
    if (!IsEqualIID(riid, IID_IUnknown) && !IsEqualIID(riid, IID_IPrintOemUI2)) {
        *ppv = nullptr;
        return E_NOINTERFACE;
    }
    *ppv = static_cast<IPrintOemUI2*>(this);
    AddRef();
    return S_OK;
}

ULONG STDMETHODCALLTYPE KZPPrinterUI::AddRef() {
    return m_cRef.Increment();
}

ULONG STDMETHODCALLTYPE KZPPrinterUI::Release() {
    const ULONG left = m_cRef.Decrement();
    if (left == 0)
        delete this;
    return left;
}

HRESULT STDMETHODCALLTYPE KZPPrinterUI::GetInfo(DWORD dwMode, PVOID pBuffer, DWORD cbSize, PDWORD pcbNeeded) {
    return GuardForeignFaults(L"KZPPrinterUI::GetInfo", kSourceFile, __LINE__, [&]() -> HRESULT {
        // Greater than 4 is meant: a caller that offers more than one 32-bit value is refused, a smaller size
        // is not looked at.
        if (!pBuffer || !pcbNeeded || cbSize > sizeof(DWORD))
            return E_FAIL;
        *pcbNeeded = sizeof(DWORD);
        switch (dwMode) {
            case OEMGI_GETSIGNATURE:
                std::memcpy(pBuffer, &kWriterSignature, sizeof kWriterSignature);
                return S_OK;
            case OEMGI_GETVERSION:
                std::memcpy(pBuffer, &kWriterVersion, sizeof kWriterVersion);
                return S_OK;
            default:
                return E_NOTIMPL;
        }
    });
}

HRESULT STDMETHODCALLTYPE KZPPrinterUI::DevMode(DWORD dwMode, POEMDMPARAM pOemDMParam) {
    return GuardOperation(L"KZPPrinterUI::DevMode", kSourceFile, __LINE__,
                          [&] { return kzp::DevMode(dwMode, pOemDMParam); });
}

HRESULT STDMETHODCALLTYPE KZPPrinterUI::PublishDriverInterface(IUnknown* pIUnknown) {
    return GuardOperation(L"KZPPrinterUI::PublishDriverInterface", kSourceFile, __LINE__, [&]() -> HRESULT {
        if (m_pOemDriverUI)
            return E_FAIL;
        if (!pIUnknown)
            return E_POINTER;
        // Asked twice, once for each keeper; only the second answer counts.
        (void)pIUnknown->QueryInterface(IID_IPrintOemDriverUI, reinterpret_cast<void**>(&m_pOemDriverUI));
        const HRESULT result =
            pIUnknown->QueryInterface(IID_IPrintOemDriverUI, reinterpret_cast<void**>(&m_pModuleDriverUI));
        g_pOemDriverUI = m_pModuleDriverUI;
        return result;
    });
}

HRESULT STDMETHODCALLTYPE KZPPrinterUI::CommonUIProp(DWORD dwMode, POEMCUIPPARAM pOemCUIPParam) {
    return GuardOperation(L"KZPPrinterUI::CommonUIProp", kSourceFile, __LINE__, [&]() -> HRESULT {
        if (pOemCUIPParam)
            m_settings.LoadFromPrinter(pOemCUIPParam->hPrinter);
        return kzp::CommonUIProp(dwMode, pOemCUIPParam, m_pModuleDriverUI);
    });
}

HRESULT STDMETHODCALLTYPE KZPPrinterUI::DocumentPropertySheets(PPROPSHEETUI_INFO pPSUIInfo, LPARAM lParam) {
    return GuardOperation(L"KZPPrinterUI::DocumentPropertySheets", kSourceFile, __LINE__,
                          [&] { return kzp::DocumentPropertySheets(pPSUIInfo, lParam, m_settings); });
}

HRESULT STDMETHODCALLTYPE KZPPrinterUI::DocumentEvent(HANDLE hPrinter, HDC hdc, INT iEsc, ULONG cbIn,
                                                      PVOID pvIn, ULONG cbOut, PVOID pvOut, PINT piResult) {
    return GuardOperation(L"KZPPrinterUI::DocumentEvent", kSourceFile, __LINE__, [&] {
        return kzp::DocumentEvent(hPrinter, hdc, iEsc, cbIn, pvIn, cbOut, pvOut, piResult);
    });
}

}  // namespace kzp
