// The dialog's place in the driver's page, and the notice that takes it in one restricted process.
#include "tests/advanced/FontsDialog.h"

namespace kzp::test {
namespace {

DWORD g_major, g_minor;
const wchar_t* g_program;

DWORD WINAPI TellVersion() {
    return g_minor << 8 | g_major;
}

WINBOOL WINAPI TellVersionRecord(OSVERSIONINFOW* record) {
    EXPECT_EQ(276u, record->dwOSVersionInfoSize);
    record->dwMajorVersion = g_major;
    record->dwMinorVersion = g_minor;
    return TRUE;
}

DWORD WINAPI TellProgram(HMODULE module, LPWSTR path, DWORD characters) {
    if (module)
        return GetModuleFileNameW(module, path, characters);
    const std::wstring full = std::wstring(L"C:\\Program Files\\") + g_program;
    full.copy(path, characters);
    path[full.size()] = L'\0';
    return static_cast<DWORD>(full.size());
}

TEST_F(FontsDialog, OneRestrictedProcessGetsANoticeInstead) {
    const ImportPatch version(plugIn.Module(), "GetVersion", AddressOf(&TellVersion));
    const ImportPatch record(plugIn.Module(), "GetVersionExW", AddressOf(&TellVersionRecord));
    const ImportPatch program(plugIn.Module(), "GetModuleFileNameW", AddressOf(&TellProgram));
    const struct {
        DWORD major, minor;
        const wchar_t* program;
        bool notice;
    } cases[] = {
        {6, 0, L"IEUser.exe", false}, {6, 0, L"ieuser.exe.exe", false}, {6, 1, L"ieuser.exe", false},
        {5, 1, L"ieuser.exe", false}, {10, 0, L"ieuser.exe", false},    {6, 0, L"ieuser.exe", true},
    };
    for (const auto& expected : cases) {
        SCOPED_TRACE(testing::Message()
                     << expected.major << '.' << expected.minor << ' ' << expected.program);
        g_major = expected.major;
        g_minor = expected.minor;
        g_program = expected.program;
        Open();
        for (const HWND hidden : {own, GetWindow(own, GW_CHILD), GetWindow(own, GW_HWNDNEXT)})
            EXPECT_EQ(0, GetWindowLongW(hidden, GWL_STYLE) & WS_VISIBLE) << "the page's own controls";
        EXPECT_EQ(expected.notice, !IsWindowVisible(dialog));
        if (!expected.notice)
            continue;
        const HWND notice = FindWindowExW(page, nullptr, L"static", plugIn.ResourceText(700).c_str());
        EXPECT_TRUE(IsWindowVisible(notice));
        RECT place = {};
        GetWindowRect(notice, &place);
        MapWindowPoints(nullptr, page, reinterpret_cast<POINT*>(&place), 2);
        EXPECT_TRUE(place.left == 10 && place.top == 150 && place.right == 420 && place.bottom == 200);
    }
}

}  // namespace
}  // namespace kzp::test
