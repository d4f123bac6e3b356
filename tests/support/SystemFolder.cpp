#include "tests/support/SystemFolder.h"

#include <gtest/gtest.h>

#include <cwchar>

#include "tests/support/Files.h"

namespace kzp::test {

namespace {

SystemFolder::Libraries g_libraries;

// Asked for here, for the patched module may be this program.
decltype(&LoadLibraryExW) g_load = nullptr;

HMODULE WINAPI Load(LPCWSTR name, HANDLE file, DWORD flags) {
    EXPECT_TRUE(std::wcschr(name, L'\\') || flags == LOAD_LIBRARY_SEARCH_SYSTEM32)
        << "searched for elsewhere";
    const auto found = g_libraries.find(name);
    if (flags == LOAD_LIBRARY_SEARCH_SYSTEM32 && found != g_libraries.end())
        return g_load(found->second.c_str(), file, LOAD_WITH_ALTERED_SEARCH_PATH);
    return g_load(name, file, flags);
}

}  // namespace

SystemFolder::Libraries SystemFolder::StandIns() {
    Libraries libraries;
    for (const wchar_t* const name : {L"winspool.drv", L"printui.dll"})
        libraries[name] = BesideExe(name);
    return libraries;
}

SystemFolder::SystemFolder(HMODULE module, const Libraries& libraries)
    : m_patch(module, "LoadLibraryExW", AddressOf(Load)) {
    g_libraries = libraries;
    g_load = m_patch.Original<decltype(&LoadLibraryExW)>();
}

SystemFolder::~SystemFolder() {
    g_libraries.clear();
}

}  // namespace kzp::test
