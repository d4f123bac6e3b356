#include "help/HtmlHelp.h"

#include "support/RegistryKey.h"
#include "support/SystemLibrary.h"

namespace kzp {

namespace {

using HtmlHelpEntry = HWND(WINAPI*)(HWND, LPCWSTR, UINT, DWORD_PTR);

// What was found at the first call.
struct HelpControl {
    HtmlHelpEntry entry = nullptr;
    bool missing = false;
};
constinit HelpControl g_helpControl;

constexpr wchar_t kControlKey[] = L"CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}\\InprocServer32";
constexpr wchar_t kControlName[] = L"hhctrl.ocx";

// The control exports its Unicode entry by this ordinal.
constexpr WORD kHtmlHelpWOrdinal = 15;

UniqueModule LoadRegisteredControl() {
    // One character more than is offered, so that an unterminated text is terminated.
    wchar_t stored[MAX_PATH + 1] = {};
    DWORD bytes = MAX_PATH * sizeof(wchar_t);
    const RegistryKey key = RegistryKey::Open(HKEY_CLASSES_ROOT, kControlKey, KEY_READ);
    DWORD type = REG_NONE;
    if (key.Query(nullptr, stored, &bytes, &type) != ERROR_SUCCESS ||
        (type != REG_SZ && type != REG_EXPAND_SZ))
        return {};
    if (type == REG_SZ)
        return LoadSystemLibrary(stored);
    wchar_t expanded[MAX_PATH] = {};
    const DWORD length = ExpandEnvironmentStringsW(stored, expanded, MAX_PATH);
    return length != 0 && length <= MAX_PATH ? LoadSystemLibrary(expanded) : UniqueModule();
}

HtmlHelpEntry FindEntry() {
    UniqueModule control = LoadRegisteredControl();
    if (!control)
        control = LoadSystemLibrary(kControlName);
    const auto entry = FindFunction<HtmlHelpEntry>(control, MAKEINTRESOURCEA(kHtmlHelpWOrdinal));
    // It stays for as long as the program runs: its windows and threads outlive the call and the plug-in.
    if (entry)
        (void)control.Release();
    return entry;
}

}  // namespace

HWND HtmlHelpW(HWND caller, const wchar_t* file, UINT command, DWORD_PTR data) {
    if (g_helpControl.missing)
        return nullptr;
    if (!g_helpControl.entry)
        g_helpControl.entry = FindEntry();
    g_helpControl.missing = !g_helpControl.entry;
    return g_helpControl.missing ? nullptr : g_helpControl.entry(caller, file, command, data);
}

}  // namespace kzp
