// Whole registry values and keys, for tools that keep records there.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "support/RegistryKey.h"

namespace kzp::standins {

using Key = UniqueHandle<RegistryKeyTraits>;

// Empty when the key does not exist or may not be opened. The root is used afresh at each call, so that a
// process which redirects a predefined key (RegOverridePredefKey) has records of its own.
Key OpenKey(HKEY root, const std::wstring& path, REGSAM access = KEY_READ);
Key CreateKey(HKEY root, const std::wstring& path);

// Removes the key with everything below it; a missing key is fine.
void DeleteKey(HKEY root, const std::wstring& path);

struct Value {
    DWORD type = REG_NONE;
    std::vector<BYTE> bytes;

    std::wstring Text() const;  // up to the first NUL or the end of the bytes
    DWORD Dword() const;        // 0 when shorter than 4 bytes
};

// All reads take an empty key for one without values; a value of another type counts as missing.
std::optional<Value> ReadValue(const Key& key, const std::wstring& name);
std::wstring ReadText(const Key& key, const std::wstring& name, const std::wstring& missing = {});
DWORD ReadDword(const Key& key, const std::wstring& name);

// These answer a Win32 code.
LSTATUS WriteText(const Key& key, const std::wstring& name, const std::wstring& text);
LSTATUS WriteDword(const Key& key, const std::wstring& name, DWORD value);
LSTATUS WriteValue(const Key& key, const std::wstring& name, DWORD type, const void* data, size_t bytes);
LSTATUS DeleteValue(const Key& key, const std::wstring& name);

// In the registry's order.
std::vector<std::wstring> SubkeyNames(const Key& key);
std::vector<std::wstring> ValueNames(const Key& key);

// Without regard to case, as names in the registry and in the spooler are.
bool SameName(const std::wstring& left, const std::wstring& right);
bool Contains(const std::vector<std::wstring>& names, const std::wstring& name);

}  // namespace kzp::standins
