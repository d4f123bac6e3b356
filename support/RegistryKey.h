// A registry key with its type, byte count and access in plain sight. It has no opinion on defaults or on
// types: what a missing, over-long or oddly typed value means is decided by the code that owns the value.
#pragma once

#include <windows.h>

#include "support/UniqueHandle.h"

namespace kzp {

struct RegistryKeyTraits {
    using Type = HKEY;
    static Type Empty() { return nullptr; }
    static void Close(Type key) { RegCloseKey(key); }
};

class RegistryKey {
  public:
    // The key is empty when it cannot be opened; the later calls then fail with ERROR_INVALID_HANDLE.
    static RegistryKey Open(HKEY root, const wchar_t* path, REGSAM access);

    // Opens or creates a non-volatile key. `createdNew`, when wanted, tells whether the key did not exist
    // before.
    static RegistryKey Create(HKEY root, const wchar_t* path, REGSAM access, bool* createdNew = nullptr);

    explicit operator bool() const { return static_cast<bool>(m_key); }

    // Fills `buffer` with at most `*bytes` bytes of whatever type is stored; `*bytes` becomes the stored
    // size. Answers a Win32 code, ERROR_MORE_DATA when the value is longer. A text need not be terminated:
    // RegQueryValueExW hands out the stored bytes as they are. `type`, when wanted, becomes the stored type.
    LSTATUS Query(const wchar_t* name, void* buffer, DWORD* bytes, DWORD* type = nullptr) const;

    // Stores `bytes` bytes under `name`; answers a Win32 code.
    LSTATUS Set(const wchar_t* name, DWORD type, const void* data, DWORD bytes) const;

    LSTATUS SetDword(const wchar_t* name, DWORD value) const {
        return Set(name, REG_DWORD, &value, sizeof value);
    }

  private:
    UniqueHandle<RegistryKeyTraits> m_key;
};

}  // namespace kzp
