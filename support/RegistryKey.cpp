#include "support/RegistryKey.h"

namespace kzp {

RegistryKey RegistryKey::Open(HKEY root, const wchar_t* path, REGSAM access) {
    RegistryKey key;
    if (RegOpenKeyExW(root, path, 0, access, key.m_key.Put()) != ERROR_SUCCESS)
        (void)key.m_key.Release();  // a failed open owns nothing, whatever it left behind
    return key;
}

RegistryKey RegistryKey::Create(HKEY root, const wchar_t* path, REGSAM access, bool* createdNew) {
    RegistryKey key;
    DWORD disposition = 0;
    const LSTATUS status = RegCreateKeyExW(root, path, 0, nullptr, REG_OPTION_NON_VOLATILE, access, nullptr,
                                           key.m_key.Put(), &disposition);
    if (status != ERROR_SUCCESS)
        (void)key.m_key.Release();
    if (createdNew)
        *createdNew = status == ERROR_SUCCESS && disposition == REG_CREATED_NEW_KEY;
    return key;
}

LSTATUS RegistryKey::Query(const wchar_t* name, void* buffer, DWORD* bytes, DWORD* type) const {
    if (!m_key)
        return ERROR_INVALID_HANDLE;
    return RegQueryValueExW(m_key.Get(), name, nullptr, type, static_cast<BYTE*>(buffer), bytes);
}

LSTATUS RegistryKey::Set(const wchar_t* name, DWORD type, const void* data, DWORD bytes) const {
    if (!m_key)
        return ERROR_INVALID_HANDLE;
    return RegSetValueExW(m_key.Get(), name, 0, type, static_cast<const BYTE*>(data), bytes);
}

}  // namespace kzp
