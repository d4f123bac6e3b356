#include "tests/support/Files.h"

#include <gtest/gtest.h>
#include <shlobj.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace kzp::test {

TemporaryFolder::TemporaryFolder() {
    static int count = 0;
    wchar_t temporary[MAX_PATH] = {};
    GetTempPathW(MAX_PATH, temporary);
    m_path = std::wstring(temporary) + L"kzp" + std::to_wstring(GetCurrentProcessId()) + L"-" +
             std::to_wstring(++count);
    std::filesystem::create_directories(m_path);
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::wstring TemporaryFolder::Take(const std::wstring& name, const std::wstring& as) const {
    std::wstring target = File(as.empty() ? name : as);
    EXPECT_TRUE(CopyFileW(BesideExe(name).c_str(), target.c_str(), FALSE)) << GetLastError();
    return target;
}

std::wstring TemporaryFolder::Deep(size_t length) const {
    std::wstring path = m_path;
    while (path.size() < length) {
        path += L"\\" + std::wstring(std::min<size_t>(100, length - path.size() - 1), L'x');
        CreateDirectoryW((L"\\\\?\\" + path).c_str(), nullptr);
    }
    return path;
}

std::wstring DocumentsFolder() {
    // By its item list, as the plug-in asks for it: Wine may end that path in a backslash, and no other.
    wchar_t path[MAX_PATH] = {};
    LPITEMIDLIST items = nullptr;
    if (SUCCEEDED(SHGetSpecialFolderLocation(nullptr, CSIDL_PERSONAL, &items))) {
        SHGetPathFromIDListW(items, path);
        CoTaskMemFree(items);
    }
    return path;
}

bool FileExists(const std::wstring& path) {
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

void WriteFileText(const std::wstring& path, const std::string& text) {
    std::ofstream(std::filesystem::path(path), std::ios::binary) << text;
}

}  // namespace kzp::test
