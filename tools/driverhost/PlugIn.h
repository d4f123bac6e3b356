// The delivered plug-in, loaded by path and created as the core driver's user interface does it.
#pragma once

#include <string>
#include <utility>

#include "driverkit/prcomoem.h"
#include "support/UniqueHandle.h"

namespace driverhost {

// One reference to a COM object.
template <class Interface>
class ComRef {
  public:
    ComRef() = default;
    ComRef(ComRef&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    ComRef& operator=(ComRef&& other) noexcept {
        std::swap(m_object, other.m_object);
        return *this;
    }
    ~ComRef() {
        if (m_object)
            m_object->Release();
    }
    explicit operator bool() const { return m_object != nullptr; }
    Interface* Get() const { return m_object; }
    Interface* operator->() const { return m_object; }
    // For a call that hands out a reference; to be used on an empty one.
    void** Put() { return reinterpret_cast<void**>(&m_object); }

  private:
    Interface* m_object = nullptr;
};

// The folder of the running program with `name` appended.
std::wstring BesideProgram(const wchar_t* name);

// One use of the plug-in: the DLL stays loaded from the first call on until the object goes. HostError when
// it cannot be loaded or does not serve the class of UI plug-ins.
class PlugIn {
  public:
    explicit PlugIn(const std::wstring& path);

    ComRef<IPrintOemUI2> CreateObject() const;
    HMODULE Module() const;
    const std::wstring& Path() const { return m_path; }

    // A text of the resource module that stands beside the plug-in; empty when either is missing.
    std::wstring ResourceText(UINT id) const;

  private:
    std::wstring m_path;
    mutable kzp::UniqueModule m_module;
    mutable ComRef<IClassFactory> m_factory;  // behind the module: given back before it is unloaded
};

// A GetInfo answer of four bytes; HostError when the plug-in refuses it.
DWORD PlugInInfo(IPrintOemUI2* object, DWORD mode);

}  // namespace driverhost
