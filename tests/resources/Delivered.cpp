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

std::wstring TextOf(HMODULE file, UINT id) {
    wchar_t text[1024];
    return {text, static_cast<size_t>(LoadStringW(file, id, text, 1024))};
}

std::string Narrow(const std::wstring& text) {
    std::string narrow;
    for (const wchar_t c : text)
        narrow += static_cast<char>(c);
    return narrow;
}

}  // namespace kzp::test
