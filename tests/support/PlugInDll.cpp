#include "tests/support/PlugInDll.h"

#include <gtest/gtest.h>

#include "tests/support/Files.h"

namespace kzp::test {

PlugInDll::PlugInDll(const std::wstring& path)
    : m_module(LoadLibraryW((path.empty() ? BesideExe(L"KZPWriterUI.dll") : path).c_str())) {
    EXPECT_NE(nullptr, m_module) << "the plug-in does not load: " << GetLastError();
}

PlugInDll::~PlugInDll() {
    if (m_module)
        FreeLibrary(m_module);
}

HRESULT PlugInDll::GetClassObject(REFCLSID classId, REFIID interfaceId, void** object) const {
    return Export<HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**)>("DllGetClassObject")(
        classId, interfaceId, object);
}

HRESULT PlugInDll::CanUnloadNow() const {
    return Export<HRESULT(STDAPICALLTYPE*)()>("DllCanUnloadNow")();
}

IPrintOemUI2* PlugInDll::Create() const {
    IClassFactory* factory = nullptr;
    if (FAILED(GetClassObject(CLSID_OEMUI, IID_IClassFactory, reinterpret_cast<void**>(&factory))))
        return nullptr;
    IPrintOemUI2* object = nullptr;
    factory->CreateInstance(nullptr, IID_IPrintOemUI2, reinterpret_cast<void**>(&object));
    factory->Release();
    return object;
}

}  // namespace kzp::test
