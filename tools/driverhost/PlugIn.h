// The delivered plug-in, loaded by path and created as the core driver's user interface does it.
#pragma once

#include <filesystem>
#include <string>

#include "driverkit/prcomoem.h"
#include "support/UniqueHandle.h"

namespace driverhost {

template <class Interface>
struct ComTraits {
    using Type = Interface*;
    static Type Empty() { return nullptr; }
    static void Close(Type object) { object->Release(); }
};

// One reference to a COM object.
template <class Interface>
struct ComRef : kzp::UniqueHandle<ComTraits<Interface>> {
    Interface* operator->() const { return this->Get(); }
    void** Put() { return reinterpret_cast<void**>(kzp::UniqueHandle<ComTraits<Interface>>::Put()); }
};

// The folder of the running program with `name` appended.
std::wstring BesideProgram(const wchar_t* name);

// One use of the plug-in: the DLL stays loaded from the first call on until the object goes. HostError when
// it cannot be loaded or does not serve the class of UI plug-ins.
class PlugIn {
  public:
    PlugIn() : PlugIn(BesideProgram(L"KZPWriterUI.dll")) {}
    explicit PlugIn(const std::filesystem::path& path) : m_path(std::filesystem::absolute(path)) {}

    ComRef<IPrintOemUI2> CreateObject() const;
    HMODULE Module() const;
    template <class Function>
    Function Export(const char* name) const {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(Module(), name)));
    }
    const std::filesystem::path& Path() const { return m_path; }

    // A text of the resource module that stands beside the plug-in; empty when either is missing.
    std::wstring ResourceText(UINT id) const;

  private:
    std::filesystem::path m_path;
    mutable kzp::UniqueModule m_module;
    mutable ComRef<IClassFactory> m_factory;  // behind the module: given back before it is unloaded
};

// A GetInfo answer of four bytes; HostError when the plug-in refuses it.
DWORD PlugInInfo(IPrintOemUI2* object, DWORD mode);

}  // namespace driverhost
