#include "tools/driverhost/PlugIn.h"

#include "support/SystemLibrary.h"
#include "tools/driverhost/Text.h"

namespace driverhost {

std::wstring BesideProgram(const wchar_t* name) {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return std::filesystem::path(path).replace_filename(name);
}

HMODULE PlugIn::Module() const {
    if (!m_module)
        m_module.Reset(LoadLibraryExW(m_path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
    if (!m_module)
        throw LastError(L"cannot load " + m_path.wstring());
    return m_module.Get();
}

ComRef<IPrintOemUI2> PlugIn::CreateObject() const {
    using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
    if (!m_factory) {
        Module();
        const auto getClassObject = kzp::FindFunction<GetClassObject>(m_module, "DllGetClassObject");
        if (!getClassObject || FAILED(getClassObject(CLSID_OEMUI, IID_IClassFactory, m_factory.Put())))
            throw HostError{m_path.wstring() + L" does not serve the class of UI plug-ins"};
    }
    ComRef<IPrintOemUI2> object;
    const HRESULT result = m_factory->CreateInstance(nullptr, IID_IPrintOemUI2, object.Put());
    if (FAILED(result))
        throw HostError{Format(L"CreateInstance(IID_IPrintOemUI2) answers 0x%08lX", result)};
    return object;
}

std::wstring PlugIn::ResourceText(UINT id) const {
    const auto path = std::filesystem::path(m_path).replace_filename(L"KZPWriterRes.dll");
    const kzp::UniqueModule texts(LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    wchar_t text[260] = {};
    if (texts)
        LoadStringW(texts.Get(), id, text, 260);
    return text;
}

DWORD PlugInInfo(IPrintOemUI2* object, DWORD mode) {
    DWORD value = 0;
    DWORD needed = 0;
    const HRESULT result = object->GetInfo(mode, &value, sizeof value, &needed);
    if (FAILED(result))
        throw HostError{Format(L"GetInfo(%lu) answers 0x%08lX", mode, result)};
    return value;
}

}  // namespace driverhost
