#include "pages/output/EmbeddedDialog.h"

#include <cwchar>
#include <vector>

#include "core/Module.h"
#include "help/ResourceModule.h"
#include "pages/advanced/CAdvancedDlg.h"
#include "pages/output/OsClass.h"
#include "resources/resource.h"
#include "settings/SheetState.h"
#include "support/WindowsVersion.h"

namespace kzp {

namespace {

constexpr DWORD kModulePathCharacters = 4096;
constexpr int kNoticeCharacters = 780;
constexpr wchar_t kRestrictedProcess[] = L"ieuser.exe";

// The first child ever met in this process ends an enumeration that comes back to it.
BOOL CALLBACK HideChild(HWND child, LPARAM) {
    ShowWindow(child, SW_HIDE);
    if (child == g_sheet.FirstHiddenChild)
        return FALSE;
    if (!g_sheet.FirstHiddenChild)
        g_sheet.FirstHiddenChild = child;
    return TRUE;
}

// The comparison minds the case.
bool IsRestrictedProcess() {
    std::vector<wchar_t> path(kModulePathCharacters);
    GetModuleFileNameW(nullptr, path.data(), kModulePathCharacters - 1);
    const wchar_t* const slash = std::wcsrchr(path.data(), L'\\');
    return std::wcscmp(slash ? slash + 1 : path.data(), kRestrictedProcess) == 0;
}

int CurrentOsClass() {
    const OSVERSIONINFOW record = WindowsVersion();
    return ClassifyOs(GetVersion(), &record);
}

// The notice may be longer than what LoadResString hands out.
void ShowNotice(HWND page) {
    wchar_t text[kNoticeCharacters] = {};
    const ResModuleUse texts(g_hInstance);
    LoadStringW(texts.Get() ? texts.Get() : g_hInstance, IDS_FONTS_UNAVAILABLE, text, kNoticeCharacters);
    const HWND notice = CreateWindowExW(0, L"static", text, WS_CHILD | WS_VISIBLE, 10, 150, 410, 50, page,
                                        nullptr, g_hInstance, nullptr);
    SendMessageW(notice, WM_SETFONT, static_cast<WPARAM>(SendMessageW(page, WM_GETFONT, 0, 0)), FALSE);
}

}  // namespace

void EmbedSettingsDialog(HWND driverPage) {
    EnumChildWindows(driverPage, HideChild, 0);
    // Later systems get the dialog in that process too: this is how it is meant.
    if (CurrentOsClass() == kOsClassNt60 && IsRestrictedProcess()) {
        ShowNotice(driverPage);
        return;
    }
    ShowWindow(CAdvancedDlg::Create(driverPage), SW_SHOW);
}

}  // namespace kzp
