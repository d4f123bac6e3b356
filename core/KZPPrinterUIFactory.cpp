#include "core/KZPPrinterUIFactory.h"

#include <new>

#include "core/KZPPrinterUI.h"
#include "core/Module.h"

namespace kzp {

HRESULT STDMETHODCALLTYPE KZPPrinterUIFactory::QueryInterface(REFIID riid, void** ppv) {
    if (!IsEqualIID(riid, IID_IUnknown) && !IsEqualIID(riid, IID_IClassFactory)) {
        *ppv = nullptr;
        return E_NOINTERFACE;
    }
    *ppv = static_cast<IClassFactory*>(this);
    AddRef();
    return S_OK;
}

ULONG STDMETHODCALLTYPE KZPPrinterUIFactory::AddRef() {
    return m_cRef.Increment();
}

ULONG STDMETHODCALLTYPE KZPPrinterUIFactory::Release() {
    const ULONG left = m_cRef.Decrement();
    if (left == 0)
        delete this;
    return left;
}

HRESULT STDMETHODCALLTYPE KZPPrinterUIFactory::CreateInstance(IUnknown* pUnkOuter, REFIID riid, void** ppv) {
    if (pUnkOuter)
        return CLASS_E_NOAGGREGATION;
    auto* const object = new (std::nothrow) KZPPrinterUI;
    if (!object)
        return E_OUTOFMEMORY;
    const HRESULT result = object->QueryInterface(riid, ppv);
    object->Release();
    return result;
}

HRESULT STDMETHODCALLTYPE KZPPrinterUIFactory::LockServer(WINBOOL fLock) {
    if (fLock)
        ++g_cServerLocks;
    else
        --g_cServerLocks;
    return S_OK;
}

}  // namespace kzp
