#include "tools/standins/common/Registry.h"

#include <algorithm>
#include <cstring>
#include <cwchar>

namespace kzp::standins {

namespace {

constexpr DWORD kLongestName = 16384;  // of a value, with its terminator; keys have shorter ones

// RegEnumKeyExW and RegEnumValueW differ only in what is not wanted here.
template <class Enumerate>
std::vector<std::wstring> Names(const Key& key, Enumerate enumerate) {
    std::vector<std::wstring> names;
    std::wstring name(kLongestName, L'\0');
    for (DWORD length = kLongestName; enumerate(key.Get(), static_cast<DWORD>(names.size()), name.data(),
                                                &length, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
         length = kLongestName)
        names.push_back(name.substr(0, length));
    return names;
}

}  // namespace

Key OpenKey(HKEY root, const std::wstring& path, REGSAM access) {
    Key key;
    RegOpenKeyExW(root, path.c_str(), 0, access, key.Put());
    return key;
}

Key CreateKey(HKEY root, const std::wstring& path) {
    Key key;
    RegCreateKeyExW(root, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr,
                    key.Put(), nullptr);
    return key;
}

void DeleteKey(HKEY root, const std::wstring& path) {
    if (RegDeleteTreeW(root, path.c_str()) == ERROR_SUCCESS)
        RegDeleteKeyW(root, path.c_str());  // some platforms leave the emptied key itself
}

std::wstring Value::Text() const {
    std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
    return text.substr(0, text.find(L'\0'));
}

DWORD Value::Dword() const {
    DWORD number = 0;
    if (bytes.size() >= sizeof number)
        std::memcpy(&number, bytes.data(), sizeof number);
    return number;
}

std::optional<Value> ReadValue(const Key& key, const std::wstring& name) {
    Value value;
    // Never without room: a null buffer would make an empty value look like a size question.
    DWORD bytes = 256;
    LSTATUS status = ERROR_MORE_DATA;
    while (status == ERROR_MORE_DATA) {
        value.bytes.resize(bytes);
        status = RegQueryValueExW(key.Get(), name.c_str(), nullptr, &value.type, value.bytes.data(), &bytes);
    }
    if (status != ERROR_SUCCESS)
        return std::nullopt;
    value.bytes.resize(bytes);
    return value;
}

std::wstring ReadText(const Key& key, const std::wstring& name, const std::wstring& missing) {
    const auto value = ReadValue(key, name);
    return value && (value->type == REG_SZ || value->type == REG_EXPAND_SZ) ? value->Text() : missing;
}

DWORD ReadDword(const Key& key, const std::wstring& name) {
    const auto value = ReadValue(key, name);
    return value && value->type == REG_DWORD ? value->Dword() : 0;
}

LSTATUS WriteValue(const Key& key, const std::wstring& name, DWORD type, const void* data, size_t bytes) {
    if (!key)
        return ERROR_ACCESS_DENIED;
    return RegSetValueExW(key.Get(), name.c_str(), 0, type, static_cast<const BYTE*>(data),
                          static_cast<DWORD>(bytes));
}

LSTATUS WriteText(const Key& key, const std::wstring& name, const std::wstring& text) {
    return WriteValue(key, name, REG_SZ, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
}

LSTATUS WriteDword(const Key& key, const std::wstring& name, DWORD value) {
    return WriteValue(key, name, REG_DWORD, &value, sizeof value);
}

LSTATUS DeleteValue(const Key& key, const std::wstring& name) {
    return RegDeleteValueW(key.Get(), name.c_str());
}

std::vector<std::wstring> SubkeyNames(const Key& key) {
    return Names(key, RegEnumKeyExW);
}

std::vector<std::wstring> ValueNames(const Key& key) {
    return Names(key, RegEnumValueW);
}

bool SameName(const std::wstring& left, const std::wstring& right) {
    return _wcsicmp(left.c_str(), right.c_str()) == 0;
}

bool Contains(const std::vector<std::wstring>& names, const std::wstring& name) {
    return std::ranges::any_of(names, [&](const std::wstring& each) { return SameName(each, name); });
}

}  // namespace kzp::standins
