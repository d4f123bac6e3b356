// The delivered plug-in, loaded by path and asked for its object as the driver's user interface does.
#pragma once

#include "driverkit/prcomoem.h"

#include <string>

namespace kzp::test {

class PlugInDll {
  public:
    // Loads the DLL beside this program, or the one at `path`.
    explicit PlugInDll(const std::wstring& path = {});
    ~PlugInDll();
    PlugInDll(const PlugInDll&) = delete;
    PlugInDll& operator=(const PlugInDll&) = delete;

    HMODULE Module() const { return m_module; }

    template <class Function>
    Function Export(const char* name) const {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(m_module, name)));
    }

    HRESULT GetClassObject(REFCLSID classId, REFIID interfaceId, void** object) const;
    HRESULT CanUnloadNow() const;

    // A new plug-in object, or null; the caller releases it.
    IPrintOemUI2* Create() const;

  private:
    HMODULE m_module;
};

}  // namespace kzp::test
