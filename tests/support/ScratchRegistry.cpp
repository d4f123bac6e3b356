#include "tests/support/ScratchRegistry.h"

#include <gtest/gtest.h>

namespace kzp::test {

namespace {

void Redirect(HKEY predefined, const std::wstring& path) {
    ASSERT_EQ(ERROR_SUCCESS,
              RegOverridePredefKey(predefined, standins::CreateKey(HKEY_CURRENT_USER, path).Get()));
}

}  // namespace

ScratchRegistry::ScratchRegistry() {
    standins::DeleteKey(HKEY_CURRENT_USER, m_path);  // what a process that was ended left behind
    Redirect(HKEY_LOCAL_MACHINE, m_path + L"\\Machine");
    Redirect(HKEY_CURRENT_USER, m_path + L"\\User");
}

ScratchRegistry::~ScratchRegistry() {
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    standins::DeleteKey(HKEY_CURRENT_USER, m_path);
}

void ScratchRegistry::RefuseUserKeys() {
    // A volatile key takes no lasting ones.
    HKEY key = nullptr;
    ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(HKEY_CURRENT_USER, L"Volatile", 0, nullptr, REG_OPTION_VOLATILE,
                                             KEY_ALL_ACCESS, nullptr, &key, nullptr));
    ASSERT_EQ(ERROR_SUCCESS, RegOverridePredefKey(HKEY_CURRENT_USER, key));
    RegCloseKey(key);
}

std::optional<RegistryValue> ReadValue(HKEY root, const wchar_t* path, const wchar_t* name) {
    return standins::ReadValue(standins::OpenKey(root, path), name);
}

bool KeyExists(HKEY root, const wchar_t* path) {
    return static_cast<bool>(standins::OpenKey(root, path));
}

void WriteValue(HKEY root, const wchar_t* path, const wchar_t* name, DWORD type, const void* data,
                size_t bytes) {
    EXPECT_EQ(ERROR_SUCCESS, standins::WriteValue(standins::CreateKey(root, path), name, type, data, bytes));
}

void WriteText(HKEY root, const wchar_t* path, const wchar_t* name, const std::wstring& text) {
    WriteValue(root, path, name, REG_SZ, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
}

void WriteDword(HKEY root, const wchar_t* path, const wchar_t* name, DWORD value) {
    WriteValue(root, path, name, REG_DWORD, &value, sizeof value);
}

}  // namespace kzp::test
