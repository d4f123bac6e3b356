#include "tests/support/ScratchRegistry.h"

#include <gtest/gtest.h>

#include <cstring>

namespace kzp::test {

namespace {

constexpr wchar_t kScratchRoot[] = L"Software\\KZP Tests";

void Redirect(HKEY predefined, const std::wstring& path) {
    HKEY key = nullptr;
    ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                                             nullptr, &key, nullptr));
    ASSERT_EQ(ERROR_SUCCESS, RegOverridePredefKey(predefined, key));
    RegCloseKey(key);
}

}  // namespace

ScratchRegistry::ScratchRegistry(DWORD owner)
    : m_own(owner == GetCurrentProcessId()),
      m_path(std::wstring(kScratchRoot) + L"\\" + std::to_wstring(owner)) {
    if (m_own)
        RegDeleteTreeW(HKEY_CURRENT_USER, m_path.c_str());
    Redirect(HKEY_LOCAL_MACHINE, m_path + L"\\Machine");
    Redirect(HKEY_CURRENT_USER, m_path + L"\\User");
}

ScratchRegistry::~ScratchRegistry() {
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    if (!m_own)
        return;
    RegDeleteTreeW(HKEY_CURRENT_USER, m_path.c_str());
    RegDeleteKeyW(HKEY_CURRENT_USER, m_path.c_str());
}

void DeleteScratchRegistry(DWORD processId) {
    const std::wstring path = std::wstring(kScratchRoot) + L"\\" + std::to_wstring(processId);
    RegDeleteTreeW(HKEY_CURRENT_USER, path.c_str());
    RegDeleteKeyW(HKEY_CURRENT_USER, path.c_str());
}

void ScratchRegistry::RefuseUserKeys() {
    // A volatile key takes no lasting ones.
    HKEY key = nullptr;
    ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(HKEY_CURRENT_USER, L"Volatile", 0, nullptr, REG_OPTION_VOLATILE,
                                             KEY_ALL_ACCESS, nullptr, &key, nullptr));
    ASSERT_EQ(ERROR_SUCCESS, RegOverridePredefKey(HKEY_CURRENT_USER, key));
    RegCloseKey(key);
}

std::wstring RegistryValue::Text() const {
    std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
    return text.substr(0, text.find(L'\0'));
}

DWORD RegistryValue::Dword() const {
    DWORD value = 0;
    if (bytes.size() >= sizeof value)
        std::memcpy(&value, bytes.data(), sizeof value);
    return value;
}

std::optional<RegistryValue> ReadValue(HKEY root, const wchar_t* path, const wchar_t* name) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, path, 0, KEY_READ, &key) != ERROR_SUCCESS)
        return std::nullopt;
    RegistryValue value{REG_NONE, std::vector<std::uint8_t>(1 << 20)};
    auto size = static_cast<DWORD>(value.bytes.size());
    const LSTATUS status = RegQueryValueExW(key, name, nullptr, &value.type, value.bytes.data(), &size);
    RegCloseKey(key);
    if (status != ERROR_SUCCESS)
        return std::nullopt;
    value.bytes.resize(size);
    return value;
}

bool KeyExists(HKEY root, const wchar_t* path) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, path, 0, KEY_READ, &key) != ERROR_SUCCESS)
        return false;
    RegCloseKey(key);
    return true;
}

void WriteValue(HKEY root, const wchar_t* path, const wchar_t* name, DWORD type, const void* data,
                size_t bytes) {
    HKEY key = nullptr;
    ASSERT_EQ(ERROR_SUCCESS,
              RegCreateKeyExW(root, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr));
    EXPECT_EQ(ERROR_SUCCESS,
              RegSetValueExW(key, name, 0, type, static_cast<const BYTE*>(data), static_cast<DWORD>(bytes)));
    RegCloseKey(key);
}

void WriteText(HKEY root, const wchar_t* path, const wchar_t* name, const std::wstring& text) {
    WriteValue(root, path, name, REG_SZ, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
}

void WriteDword(HKEY root, const wchar_t* path, const wchar_t* name, DWORD value) {
    WriteValue(root, path, name, REG_DWORD, &value, sizeof value);
}

}  // namespace kzp::test
