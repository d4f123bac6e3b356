#include "tools/driverhost/PlugIn.h"

#include "tools/driverhost/Text.h"

namespace driverhost {

namespace {

std::wstring FolderOf(const std::wstring& path) {
    return path.substr(0, path.find_last_of(L"\\/") + 1);
}

std::wstring FullPath(const std::wstring& path) {
    wchar_t full[MAX_PATH] = {};
    const DWORD length = GetFullPathNameW(path.c_str(), MAX_PATH, full, nullptr);
    return length > 0 && length < MAX_PATH ? full : path;
}

}  // namespace

std::wstring BesideProgram(const wchar_t* name) {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return FolderOf(path) + name;
}

PlugIn::PlugIn(const std::wstring& path) : m_path(FullPath(path)) {}

HMODULE PlugIn::Module() const {
    if (!m_module)
        m_module.Reset(LoadLibraryExW(m_path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
    if (!m_module)
        throw HostError{Format(L"cannot load %ls: %ls", m_path.c_str(), Win32Error(GetLastError()).c_str())};
    return m_module.Get();
}

ComRef<IPrintOemUI2> PlugIn::CreateObject() const {
    if (!m_factory) {
        using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
        const auto getClassObject = reinterpret_cast<GetClassObject>(
            reinterpret_cast<void*>(GetProcAddress(Module(), "DllGetClassObject")));
        if (!getClassObject || FAILED(getClassObject(CLSID_OEMUI, IID_IClassFactory, m_factory.Put())))
            throw HostError{Format(L"%ls does not serve the class of UI plug-ins", m_path.c_str())};
    }
    ComRef<IPrintOemUI2> object;
    const HRESULT result = m_factory->CreateInstance(nullptr, IID_IPrintOemUI2, object.Put());
    if (FAILED(result))
        throw HostError{Format(L"CreateInstance(IID_IPrintOemUI2) answers 0x%08lX", result)};
    return object;
}

std::wstring PlugIn::ResourceText(UINT id) const {
    const std::wstring path = FolderOf(m_path) + L"KZPWriterRes.dll";
    const kzp::UniqueModule texts(LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    wchar_t text[260] = {};
    const int length = texts ? LoadStringW(texts.Get(), id, text, 260) : 0;
    return std::wstring(text, static_cast<size_t>(length));
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
