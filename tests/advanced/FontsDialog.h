// The font dialog within the driver's page of a real sheet, opened anew as often as a test wants it.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <cstring>

#include "resources/resource.h"
#include "tests/support/Counters.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/SheetTest.h"

namespace kzp::test {

using Names = std::vector<std::wstring>;

inline constexpr int kIntentItem = 5, kMethodItem = 6, kFontsItem = 9;

inline Names g_installed;  // what the enumeration hands out, call by call
inline HDC g_device;       // that was asked for it

inline int WINAPI EnumerateInstalled(HDC device, LPCWSTR, FONTENUMPROCW report, LPARAM param) {
    g_device = device;
    for (const std::wstring& family : g_installed) {
        LOGFONTW font = {};
        family.copy(font.lfFaceName, LF_FACESIZE - 1);
        const TEXTMETRICW metrics = {};
        report(&font, &metrics, TRUETYPE_FONTTYPE, param);
    }
    return 1;
}

class FontsDialog : public SheetTest {
  protected:
    FontsDialog() { g_installed = {L"Delta", L"Alpha", L"Beta"}; }

    // Plays a test in an open sheet with the driver's page in front.
    void Play(const std::function<void()>& test) {
        host.run.Add([](driverhost::SheetUser& hands) { hands.ClickTab(0); });
        host.run.Add([&](driverhost::SheetUser&) { test(); });
        host.run.Show();
    }
    // The dialog anew, on these selections of its items.
    void Open(LONG fonts = 0, LONG intent = 0, LONG method = 0) {
        DestroyWindow(FindDialog());
        ItemSelection(kFontsItem) = fonts;
        ItemSelection(kIntentItem) = intent;
        ItemSelection(kMethodItem) = method;
        Said().clear();
        TakeApply();
        const size_t blocks = CountHeapBlocks(host.session.UIParam().hOEMHeap);
        host.session.TellCallback(CPSUICB_REASON_SETACTIVE, Page());
        EXPECT_EQ(blocks, CountHeapBlocks(host.session.UIParam().hOEMHeap)) << "texts are given back";
        EXPECT_EQ(nullptr, WindowFromDC(g_device)) << "the device context, too";
        dialog = FindDialog();
    }
    static std::vector<BYTE> Records(const Names& names) {
        std::vector<BYTE> bytes(names.size() * 64);
        for (size_t record = 0; record < names.size(); ++record)
            std::memcpy(&bytes[64 * record], names[record].data(), 2 * names[record].size());
        return bytes;
    }
    static void Store(const std::vector<BYTE>& bytes) {
        WriteValue(HKEY_CURRENT_USER, kSettingsKey, L"FONTLIST", REG_BINARY, bytes.data(), bytes.size());
    }
    void ExpectCommitted(const Names& names) {
        host.session.TellCallback(CPSUICB_REASON_APPLYNOW, Page());
        EXPECT_EQ(Records(names), Setting(L"FONTLIST")->bytes);
    }

    std::wstring Text(int id) const { return host.plugIn.ResourceText(static_cast<UINT>(id)); }
    HWND Page() const { return host.sheet.PageWindow(0); }
    HWND FindDialog() const { return FindWindowExW(Page(), nullptr, L"#32770", nullptr); }
    HWND Control(int id) const { return GetDlgItem(dialog, id); }
    void Tell(int id, WORD code) const { SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, code), 0); }
    // As from the keyboard: with its notification. The list is hidden.
    void Choose(int combo, int index) const {
        SendMessageW(Control(combo), CB_SETCURSEL, static_cast<WPARAM>(index), 0);
        Tell(combo, CBN_SELCHANGE);
    }
    void ExpectChoice(int chosen) const {
        for (const int choice : {IDC_FONTS_ALL, IDC_FONTS_NONE, IDC_FONTS_SELECT})
            EXPECT_EQ(choice == chosen, user.Checked(choice)) << choice;
        EXPECT_EQ(chosen == IDC_FONTS_SELECT, user.Enabled(IDC_FONT_LIST));
    }

    // Whether Apply was enabled since this was asked last.
    bool TakeApply() const {
        return EnableWindow(GetDlgItem(host.sheet.Window(), IDC_SHEET_APPLY), FALSE) == 0;
    }
    LONG& ItemSelection(int position) { return host.session.Tree().Items()[position].Sel; }
    std::vector<driverhost::Announcement>& Said() { return host.session.Helper().Announcements(); }

    HostedSheet host;
    driverhost::SheetUser user{host.sheet};
    const ImportPatch enumeration{host.plugIn.Module(), "EnumFontFamiliesW", AddressOf(&EnumerateInstalled)};
    HWND dialog = nullptr;
};

}  // namespace kzp::test
