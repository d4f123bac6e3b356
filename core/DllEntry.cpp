// The DLL's entry points for the loader and for COM. The installer's actions are exported from installer/.
#include <new>

#include "core/KZPPrinterUIFactory.h"
#include "core/Module.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE hinstDLL, DWORD fdwReason, LPVOID) {
    // Only the handle is kept. Work done here would run in every program that prints, under the loader's
    // lock.
    if (fdwReason == DLL_PROCESS_ATTACH)
        kzp::g_hInstance = hinstDLL;
    return TRUE;
}

extern "C" HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID rclsid, REFIID riid, void** ppv) {
    if (!IsEqualCLSID(rclsid, CLSID_OEMUI))
        return CLASS_E_CLASSNOTAVAILABLE;
    auto* const factory = new (std::nothrow) kzp::KZPPrinterUIFactory;
    if (!factory)
        return E_OUTOFMEMORY;
    const HRESULT result = factory->QueryInterface(riid, ppv);
    factory->Release();
    return result;
}

extern "C" HRESULT STDAPICALLTYPE DllCanUnloadNow() {
    // Live objects deliberately do not count: only LockServer keeps the DLL loaded.
    return kzp::g_cServerLocks.load() != 0 ? S_FALSE : S_OK;
}
