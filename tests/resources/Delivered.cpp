#include "tests/resources/Delivered.h"

#include "tests/support/Files.h"

namespace kzp::test {

namespace {

HMODULE LoadAsData(const wchar_t* name) {
    return LoadLibraryExW(BesideExe(name).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
}

}  // namespace

HMODULE PluginFile() {
    static const HMODULE file = LoadAsData(L"KZPWriterUI.dll");
    return file;
}

HMODULE TextsFile() {
    static const HMODULE file = LoadAsData(L"KZPWriterRes.dll");
    return file;
}

// Texts lie in blocks of 16, each one's length before it.
std::wstring TextOf(HMODULE file, UINT id, LANGID language) {
    const HRSRC block = FindResourceExW(file, RT_STRING, MAKEINTRESOURCEW(id / 16 + 1), language);
    if (!block)
        return {};
    const auto* text = static_cast<const wchar_t*>(LockResource(LoadResource(file, block)));
    for (UINT before = id % 16; before > 0; --before)
        text += 1 + *text;
    return {text + 1, *text};
}

std::vector<LANGID> LanguagesOf(HMODULE file, LPCWSTR type, int id) {
    std::vector<LANGID> found;
    EnumResourceLanguagesW(
        file, type, MAKEINTRESOURCEW(id),
        [](HMODULE, LPCWSTR, LPCWSTR, WORD language, LONG_PTR list) -> BOOL {
            reinterpret_cast<std::vector<LANGID>*>(list)->push_back(language);
            return TRUE;
        },
        reinterpret_cast<LONG_PTR>(&found));
    return found;
}

}  // namespace kzp::test
