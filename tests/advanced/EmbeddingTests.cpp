// The dialog's place in the driver's page, the notice that takes it in one restricted process, and the next
// sheet.
#include "tests/advanced/FontsDialog.h"
#include "tests/support/HostedSheet.h"

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
        OpenPage();
        for (HWND child = own; child; child = GetWindow(child, GW_HWNDNEXT)) {
            // The dialog and the notice, which has a text, are what was put there.
            if (child != dialog && GetWindowTextLengthW(child) == 0) {
                EXPECT_FALSE(IsWindowVisible(child)) << "the page's own controls are hidden";
            }
        }
        EXPECT_EQ(0, GetWindowLongW(GetWindow(own, GW_CHILD), GWL_STYLE) & WS_VISIBLE)
            << "and what is in them";
        EXPECT_EQ(expected.notice, dialog == nullptr);
        if (!expected.notice) {
            EXPECT_TRUE(IsWindowVisible(dialog));
            continue;
        }
        const std::wstring text = plugIn.ResourceText(700);
        ASSERT_FALSE(text.empty());
        const HWND notice = FindWindowExW(page, nullptr, L"static", text.c_str());
        ASSERT_NE(nullptr, notice);
        EXPECT_TRUE(IsWindowVisible(notice));
        RECT place = {};
        GetWindowRect(notice, &place);
        MapWindowPoints(nullptr, page, reinterpret_cast<POINT*>(&place), 2);
        EXPECT_TRUE(place.left == 10 && place.top == 150 && place.right == 420 && place.bottom == 200);
    }
}

TEST_F(FontsDialog, EverySheetGetsItsOwnDialogAndItsPagesTheirTitles) {
    Install({L"Alpha", L"Beta", L"Gamma"});
    Store({L"Alpha"});
    for (int round = 0; round < 2; ++round) {
        SCOPED_TRACE(round);
        HostedSheet host(NoPrinter());
        host.run.Add([&](driverhost::SheetUser& user) {
            EXPECT_EQ(plugIn.ResourceText(618), host.sheet.TabText(1));
            EXPECT_EQ(plugIn.ResourceText(509), host.sheet.TabText(2));
            user.ClickTab(0);
        });
        host.run.Add([](driverhost::SheetUser& user) {
            EXPECT_TRUE(user.Visible(IDC_FONT_LIST));
            EXPECT_TRUE(user.Checked(IDC_FONTS_SELECT));
            user.CheckItem(IDC_FONT_LIST, L"Beta", true);
            user.Ok();
        });
        EXPECT_EQ(CPSUI_OK, host.run.Show());
        EXPECT_EQ((std::vector<std::wstring>{L"Alpha", L"Beta"}), StoredNames());
    }
}

}  // namespace
}  // namespace kzp::test
