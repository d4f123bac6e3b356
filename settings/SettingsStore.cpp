#include "settings/SettingsStore.h"

#include <cstring>
#include <string_view>
#include <vector>

#include "support/Names.h"
#include "support/RegistryKey.h"

namespace kzp {

namespace {

constexpr size_t kStringBufferCharacters = 1024;

bool IsValidName(const std::wstring& name) {
    return !name.empty() && name.find(L'\\') == std::wstring::npos;
}

RegistryKey CreateSettingsKey(HKEY root, bool* createdNew = nullptr) {
    return RegistryKey::Create(root, kSettingsKey, KEY_READ | KEY_WRITE, createdNew);
}

// Reads one value, or stores its default: 0 for a REG_DWORD, no bytes for any other `type`. `query` reads and
// answers a Win32 code; `reset` clears the caller's output before a default is stored.
template <class Query, class Reset>
int ReadOrCreate(const std::wstring& name, DWORD type, Query&& query, Reset&& reset) {
    const HKEY root = name == kInstallDir ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
    bool createdNew = false;
    const RegistryKey key = CreateSettingsKey(root, &createdNew);
    if (!createdNew && query(key) == ERROR_SUCCESS)
        return 1;
    reset();
    const DWORD zero = 0;
    const LSTATUS stored = type == REG_DWORD ? key.Set(name.c_str(), type, &zero, sizeof zero)
                                             : key.Set(name.c_str(), type, nullptr, 0);
    // In a key that has just come into being the default's own success is not asked for.
    return createdNew || stored == ERROR_SUCCESS ? 1 : 0;
}

bool IsPrefixOf(std::wstring_view word, const std::wstring& text) {
    return text.empty() || CompareNames(word.substr(0, text.size()), text) == 0;
}

}  // namespace

int ReadStringSetting(const std::wstring& name, std::wstring& out, bool* existed) {
    out.clear();
    if (existed)
        *existed = false;
    if (!IsValidName(name))
        return 0;
    std::vector<wchar_t> text(kStringBufferCharacters);
    return ReadOrCreate(
        name, REG_SZ,
        [&](const RegistryKey& key) {
            auto bytes = static_cast<DWORD>(text.size() * sizeof(wchar_t));
            const LSTATUS status = key.Query(name.c_str(), text.data(), &bytes);
            // Stored texts need not be terminated; the last character always is the terminator here.
            text.back() = L'\0';
            if (status == ERROR_SUCCESS) {
                out = text.data();
                if (existed)
                    *existed = true;
            }
            return status;
        },
        [&] { out.clear(); });
}

int ReadDwordSetting(const std::wstring& name, DWORD& out) {
    out = 0;
    if (!IsValidName(name))
        return 0;
    return ReadOrCreate(
        name, REG_DWORD,
        [&](const RegistryKey& key) {
            DWORD bytes = sizeof out;
            return key.Query(name.c_str(), &out, &bytes);
        },
        [&] { out = 0; });
}

int ReadBinarySetting(const std::wstring& name, void* buffer, DWORD& bytes) {
    if (!IsValidName(name))
        return 0;
    return ReadOrCreate(
        name, REG_BINARY, [&](const RegistryKey& key) { return key.Query(name.c_str(), buffer, &bytes); },
        [&] { bytes = 0; });
}

int WriteStringSetting(const std::wstring& name, const std::wstring& text) {
    if (!IsValidName(name))
        return 0;
    // RegSetValueExW lengthens a text by its terminator when it finds one just behind the given bytes, and
    // looks one character back when only one byte is given. Neither may happen: between a NUL and a nonzero
    // byte the text is stored with exactly the half terminator that readers rely on.
    const size_t textBytes = text.size() * sizeof(wchar_t);
    std::vector<BYTE> block(sizeof(wchar_t) + textBytes + 2);
    std::memcpy(block.data() + sizeof(wchar_t), text.data(), textBytes);
    block.back() = 1;
    const RegistryKey key = CreateSettingsKey(HKEY_CURRENT_USER);
    return key.Set(name.c_str(), REG_SZ, block.data() + sizeof(wchar_t), static_cast<DWORD>(textBytes + 1)) ==
           ERROR_SUCCESS;
}

int WriteDwordSetting(const std::wstring& name, DWORD value) {
    if (!IsValidName(name))
        return 0;
    return CreateSettingsKey(HKEY_CURRENT_USER).SetDword(name.c_str(), value) == ERROR_SUCCESS;
}

int WriteBinarySetting(const std::wstring& name, const void* data, DWORD bytes) {
    if (!IsValidName(name))
        return 0;
    return CreateSettingsKey(HKEY_CURRENT_USER).Set(name.c_str(), REG_BINARY, data, bytes) == ERROR_SUCCESS;
}

bool IsPrefixOfYes(const std::wstring& text) {
    return IsPrefixOf(L"YES", text);
}

bool IsPrefixOfNo(const std::wstring& text) {
    return IsPrefixOf(L"NO", text);
}

}  // namespace kzp
