#include "tools/standins/common/Registry.h"

#include <cstring>
#include <cwchar>

namespace kzp::standins {

namespace {

constexpr size_t kLongestName = 16384;  // of a value, with its terminator; keys have shorter ones

std::wstring TextOf(const std::vector<BYTE>& bytes) {
    std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
    return text;
}

}  // namespace

Key OpenKey(HKEY root, const std::wstring& path, REGSAM access) {
    HKEY key = nullptr;
    return Key(RegOpenKeyExW(root, path.c_str(), 0, access, &key) == ERROR_SUCCESS ? key : nullptr);
}

Key CreateKey(HKEY root, const std::wstring& path) {
    HKEY key = nullptr;
    return Key(RegCreateKeyExW(root, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS,
                               nullptr, &key, nullptr) == ERROR_SUCCESS
                   ? key
                   : nullptr);
}

void DeleteKey(HKEY root, const std::wstring& path) {
    if (RegDeleteTreeW(root, path.c_str()) == ERROR_SUCCESS)
        RegDeleteKeyW(root, path.c_str());  // some platforms leave the emptied key itself
}

std::wstring Value::Text() const {
    const std::wstring text = TextOf(bytes);
    return text.substr(0, text.find(L'\0'));
}

DWORD Value::Dword() const {
    DWORD number = 0;
    if (bytes.size() >= sizeof number)
        std::memcpy(&number, bytes.data(), sizeof number);
    return number;
}

std::optional<Value> ReadValue(const Key& key, const std::wstring& name) {
    if (!key)
        return std::nullopt;
    Value value;
    DWORD bytes = 0;
    LSTATUS status = RegQueryValueExW(key.Get(), name.c_str(), nullptr, &value.type, nullptr, &bytes);
    while (status == ERROR_SUCCESS || status == ERROR_MORE_DATA) {
        // One byte more than needed: a null buffer would make an empty value look like a size question.
        value.bytes.resize(bytes + 1);
        DWORD got = bytes;
        status = RegQueryValueExW(key.Get(), name.c_str(), nullptr, &value.type, value.bytes.data(), &got);
        if (status == ERROR_SUCCESS) {
            value.bytes.resize(got);
            return value;
        }
        bytes = got;
    }
    return std::nullopt;
}

std::wstring ReadText(const Key& key, const std::wstring& name, const std::wstring& missing) {
    const auto value = ReadValue(key, name);
    if (!value || (value->type != REG_SZ && value->type != REG_EXPAND_SZ))
        return missing;
    return value->Text();
}

DWORD ReadDword(const Key& key, const std::wstring& name, DWORD missing) {
    const auto value = ReadValue(key, name);
    if (!value || value->type != REG_DWORD || value->bytes.size() != sizeof(DWORD))
        return missing;
    return value->Dword();
}

std::vector<std::wstring> ReadTexts(const Key& key, const std::wstring& name) {
    std::vector<std::wstring> texts;
    const auto value = ReadValue(key, name);
    if (!value || value->type != REG_MULTI_SZ)
        return texts;
    const std::wstring all = TextOf(value->bytes);
    for (size_t start = 0; start < all.size() && all[start];) {
        texts.push_back(all.substr(start, all.find(L'\0', start) - start));
        start += texts.back().size() + 1;
    }
    return texts;
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
    return key ? RegDeleteValueW(key.Get(), name.c_str()) : ERROR_FILE_NOT_FOUND;
}

std::vector<std::wstring> SubkeyNames(const Key& key) {
    std::vector<std::wstring> names;
    std::wstring name(kLongestName, L'\0');
    DWORD length = kLongestName;
    for (DWORD index = 0; key && RegEnumKeyExW(key.Get(), index, name.data(), &length, nullptr, nullptr,
                                               nullptr, nullptr) == ERROR_SUCCESS;
         ++index, length = kLongestName)
        names.push_back(name.substr(0, length));
    return names;
}

std::vector<std::wstring> ValueNames(const Key& key) {
    std::vector<std::wstring> names;
    std::wstring name(kLongestName, L'\0');
    DWORD length = kLongestName;
    for (DWORD index = 0; key && RegEnumValueW(key.Get(), index, name.data(), &length, nullptr, nullptr,
                                               nullptr, nullptr) == ERROR_SUCCESS;
         ++index, length = kLongestName)
        names.push_back(name.substr(0, length));
    return names;
}

bool SameName(const std::wstring& left, const std::wstring& right) {
    return _wcsicmp(left.c_str(), right.c_str()) == 0;
}

}  // namespace kzp::standins
