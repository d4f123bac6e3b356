#include "help/Help.h"

#include <windows.h>

#include <string>

#include "help/HtmlHelp.h"
#include "support/RegistryKey.h"

namespace kzp {

namespace {

constexpr wchar_t kHelpTopic[] = L"::/kzp-writer-2d.htm";

// 256 bytes, not characters, are offered: a path of more than 127 characters is deliberately not read.
constexpr DWORD kHelpPathBytes = 256;

}  // namespace

void ShowHelp() {
    wchar_t path[MAX_PATH] = {};
    DWORD bytes = kHelpPathBytes;
    const RegistryKey key = RegistryKey::Open(HKEY_LOCAL_MACHINE, kProductKey, KEY_READ);
    if (key.Query(kHelpFilePath, path, &bytes) != ERROR_SUCCESS)
        path[0] = L'\0';
    HtmlHelpW(nullptr, (std::wstring(path) + kHelpTopic).c_str(), HH_DISPLAY_TOPIC, 0);
}

}  // namespace kzp
