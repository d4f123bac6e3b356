// The dialog's place in the driver's page, and the notice that takes it in one restricted process.
#include "tests/advanced/FontsDialog.h"

namespace kzp::test {
namespace {

DWORD g_major, g_minor;
std::wstring g_program;

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
    lstrcpynW(path, (L"C:\\Program Files\\" + g_program).c_str(), static_cast<int>(characters));
    return static_cast<DWORD>(lstrlenW(path));
}

TEST_F(FontsDialog, OneRestrictedProcessGetsANoticeInstead) {
    const ImportPatch version(host.plugIn.Module(), "GetVersion", AddressOf(&TellVersion));
    const ImportPatch record(host.plugIn.Module(), "GetVersionExW", AddressOf(&TellVersionRecord));
    const ImportPatch program(host.plugIn.Module(), "GetModuleFileNameW", AddressOf(&TellProgram));
    const struct {
        DWORD major, minor;
        const wchar_t* program;
        bool notice;
    } cases[] = {
        {6, 0, L"IEUser.exe", false}, {6, 0, L"ieuser.exe.exe", false}, {6, 1, L"ieuser.exe", false},
        {5, 1, L"ieuser.exe", false}, {10, 0, L"ieuser.exe", false},    {6, 0, L"ieuser.exe", true},
    };
    Play([&] {
        for (const auto& expected : cases) {
            SCOPED_TRACE(testing::PrintToString(expected.program) + std::to_string(expected.major));
            g_major = expected.major;
            g_minor = expected.minor;
            g_program = expected.program;
            Open();
            EXPECT_EQ(expected.notice, !IsWindowVisible(dialog));
            int shown = 0;
            for (HWND child = GetWindow(Page(), GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
                shown += (GetWindowLongW(child, GWL_STYLE) & WS_VISIBLE) != 0;
            EXPECT_EQ(shown, 1) << "the page's own controls are hidden";
        }
        const HWND notice = FindWindowExW(Page(), nullptr, L"static", host.plugIn.ResourceText(700).c_str());
        EXPECT_TRUE(IsWindowVisible(notice));
        RECT place = {};
        GetWindowRect(notice, &place);
        MapWindowPoints(nullptr, Page(), reinterpret_cast<POINT*>(&place), 2);
        EXPECT_TRUE(place.left == 10 && place.top == 150 && place.right == 420 && place.bottom == 200);
    });
}

}  // namespace
}  // namespace kzp::test
