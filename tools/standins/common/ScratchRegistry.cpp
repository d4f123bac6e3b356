#include "tools/standins/common/ScratchRegistry.h"

#include <cstdlib>

namespace kzp::standins {

namespace {

void Redirect(HKEY predefined, const Key& key) {
    if (RegOverridePredefKey(predefined, key.Get()) != ERROR_SUCCESS || !key)
        std::abort();
}

}  // namespace

ScratchRegistry::ScratchRegistry() {
    DeleteKey(HKEY_CURRENT_USER, m_path);  // what a process that was ended left behind
    Join(m_path);
}

ScratchRegistry::~ScratchRegistry() {
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    DeleteKey(HKEY_CURRENT_USER, m_path);
}

void ScratchRegistry::Join(const std::wstring& path) {
    Redirect(HKEY_LOCAL_MACHINE, CreateKey(HKEY_CURRENT_USER, path + L"\\Machine"));
    Redirect(HKEY_CURRENT_USER, CreateKey(HKEY_CURRENT_USER, path + L"\\User"));
}

void ScratchRegistry::RefuseUserKeys() {
    // A volatile key takes no lasting ones.
    Key key;
    RegCreateKeyExW(HKEY_CURRENT_USER, L"Volatile", 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr,
                    key.Put(), nullptr);
    Redirect(HKEY_CURRENT_USER, key);
}

std::optional<Value> ReadValue(HKEY root, const wchar_t* path, const wchar_t* name) {
    return ReadValue(OpenKey(root, path), name);
}

bool KeyExists(HKEY root, const wchar_t* path) {
    return static_cast<bool>(OpenKey(root, path));
}

void WriteValue(HKEY root, const wchar_t* path, const wchar_t* name, DWORD type, const void* data,
                size_t bytes) {
    if (WriteValue(CreateKey(root, path), name, type, data, bytes) != ERROR_SUCCESS)
        std::abort();
}

void WriteText(HKEY root, const wchar_t* path, const wchar_t* name, const std::wstring& text) {
    WriteValue(root, path, name, REG_SZ, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
}

void WriteDword(HKEY root, const wchar_t* path, const wchar_t* name, DWORD value) {
    WriteValue(root, path, name, REG_DWORD, &value, sizeof value);
}

}  // namespace kzp::standins
