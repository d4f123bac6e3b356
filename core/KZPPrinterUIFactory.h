// The class factory that DllGetClassObject hands to the core driver.
#pragma once

#include <unknwn.h>

#include "core/ComCount.h"

namespace kzp {

// Born with one reference for its creator. Live factories do not keep the DLL loaded; only LockServer does.
class KZPPrinterUIFactory final : public IClassFactory {
  public:
    virtual ~KZPPrinterUIFactory() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    // Aggregation is refused with CLASS_E_NOAGGREGATION; on success the caller owns the object's only
    // reference.
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* pUnkOuter, REFIID riid, void** ppv) override;
    HRESULT STDMETHODCALLTYPE LockServer(WINBOOL fLock) override;

  private:
    ComCount m_cRef;
};

}  // namespace kzp
