// The delivered plug-in, loaded by path, with all that it exports.
#pragma once

#include "tools/driverhost/PlugIn.h"

namespace kzp::test {

struct PlugInDll : driverhost::PlugIn {
    explicit PlugInDll(const std::wstring& path = driverhost::BesideProgram(L"KZPWriterUI.dll"))
        : PlugIn(path) {
        (void)Module();  // loads it
    }

    template <class Function>
    Function Export(const char* name) const {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(Module(), name)));
    }

    // A new plug-in object, which the caller releases.
    IPrintOemUI2* Create() const {
        const driverhost::ComRef<IPrintOemUI2> object = CreateObject();
        object->AddRef();
        return object.Get();
    }
};

}  // namespace kzp::test
