#include "pages/output/EmbeddedDialog.h"

#include <atomic>
#include <cwchar>
#include <vector>

#include "core/Module.h"
#include "help/ResourceModule.h"
#include "pages/advanced/CAdvancedDlg.h"
#include "pages/output/OsClass.h"
#include "resources/resource.h"
#include "support/WindowsVersion.h"

namespace kzp {

namespace {

constexpr DWORD kModulePathCharacters = 4096;
constexpr int kNoticeCharacters = 780;
constexpr wchar_t kRestrictedProcess[] = L"ieuser.exe";

// The first child that any sheet of this process has hidden.
constinit std::atomic<HWND> g_firstHiddenChild = nullptr;

// The first child ever met ends an enumeration that comes back to it. A page meets its own first child once,
// so this stops only where a sheet's page is activated again unprimed, or a later window got that handle;
// kept.
BOOL CALLBACK HideChild(HWND child, LPARAM) {
    ShowWindow(child, SW_HIDE);
    HWND first = nullptr;
    return g_firstHiddenChild.compare_exchange_strong(first, child) || child != first;
}

// The comparison minds the case.
bool IsRestrictedProcess() {
    std::vector<wchar_t> path(kModulePathCharacters);
    GetModuleFileNameW(nullptr, path.data(), kModulePathCharacters - 1);
    const wchar_t* const slash = std::wcsrchr(path.data(), L'\\');
    return std::wcscmp(slash ? slash + 1 : path.data(), kRestrictedProcess) == 0;
}

int CurrentOsClass() {
    return ClassifyOs(GetVersion(), WindowsVersion());
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

void EmbedSettingsDialog(SheetState& sheet, HWND driverPage) {
    EnumChildWindows(driverPage, HideChild, 0);
    // Later systems get the dialog in that process too: this is how it is meant.
    if (CurrentOsClass() == kOsClassNt60 && IsRestrictedProcess()) {
        ShowNotice(driverPage);
        return;
    }
    ShowWindow(CAdvancedDlg::Create(sheet, driverPage), SW_SHOW);
}

}  // namespace kzp
