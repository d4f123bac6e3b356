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

inline constexpr size_t kIntentItem = 5, kMethodItem = 6, kFontsItem = 9;
inline constexpr int kChoices[] = {IDC_FONTS_ALL, IDC_FONTS_NONE, IDC_FONTS_SELECT};

inline Names g_installed;  // what the enumeration hands out, call by call

inline int WINAPI EnumerateInstalled(HDC, LPCWSTR, FONTENUMPROCW report, LPARAM param) {
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
        OPTITEM* const items = host.session.Tree().Items();
        items[kFontsItem].Sel = fonts;
        items[kIntentItem].Sel = intent;
        items[kMethodItem].Sel = method;
        Said().clear();
        TakeApply();
        const HANDLE heap = host.session.UIParam().hOEMHeap;
        const size_t blocks = CountHeapBlocks(heap);
        host.session.TellCallback(CPSUICB_REASON_SETACTIVE, Page());
        EXPECT_EQ(blocks, CountHeapBlocks(heap)) << "texts are given back";
        dialog = FindDialog();
    }
    void Commit() {
        EnableWindow(Apply(), TRUE);
        user.Apply();
    }

    static void StoreBytes(const std::vector<BYTE>& bytes) {
        WriteValue(HKEY_CURRENT_USER, kSettingsKey, L"FONTLIST", REG_BINARY, bytes.data(), bytes.size());
    }
    static std::vector<BYTE> Records(const Names& names) {
        std::vector<BYTE> bytes(names.size() * 64);
        for (size_t record = 0; record < names.size(); ++record)
            std::memcpy(&bytes[64 * record], names[record].data(), 2 * names[record].size());
        return bytes;
    }
    static void Store(const Names& names) { StoreBytes(Records(names)); }
    static void ExpectStored(const Names& names) { EXPECT_EQ(Records(names), Setting(L"FONTLIST")->bytes); }

    HWND FindDialog() const { return FindWindowExW(Page(), nullptr, L"#32770", nullptr); }
    HWND Page() const { return host.sheet.PageWindow(0); }
    HWND Apply() const { return GetDlgItem(host.sheet.Window(), IDC_SHEET_APPLY); }
    HWND Control(int id) const { return GetDlgItem(dialog, id); }
    void Tell(int id, WORD code) const { SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, code), 0); }
    LRESULT Selection(int combo) const { return SendMessageW(Control(combo), CB_GETCURSEL, 0, 0); }
    // As from the keyboard: with its notification.
    void Choose(int combo, int index) const {
        SendMessageW(Control(combo), CB_SETCURSEL, static_cast<WPARAM>(index), 0);
        Tell(combo, CBN_SELCHANGE);
    }
    Names Listed(bool checkedOnly = false) const {
        const HWND list = Control(IDC_FONT_LIST);
        Names names;
        for (int index = 0; index < ListView_GetItemCount(list); ++index) {
            wchar_t name[64] = {};
            ListView_GetItemText(list, index, 0, name, 64);
            if (!checkedOnly || ListView_GetCheckState(list, static_cast<UINT>(index)) == 1)
                names.emplace_back(name);
        }
        return names;
    }
    // 1 unchecked, 2 checked, 0 none.
    void SetImage(int index, UINT image) const {
        ListView_SetItemState(Control(IDC_FONT_LIST), index, INDEXTOSTATEIMAGEMASK(image),
                              LVIS_STATEIMAGEMASK);
    }
    void ExpectChoice(int chosen) const {
        for (const int choice : kChoices)
            EXPECT_EQ(choice == chosen, user.Checked(choice)) << choice;
        EXPECT_EQ(chosen == IDC_FONTS_SELECT, user.Enabled(IDC_FONT_LIST));
    }

    // Whether Apply was enabled since this was asked last.
    bool TakeApply() const { return EnableWindow(Apply(), FALSE) == 0; }
    LONG ItemSelection(size_t position) { return host.session.Tree().All().at(position).Sel; }
    std::vector<driverhost::Announcement>& Said() { return host.session.Helper().Announcements(); }

    HostedSheet host;
    driverhost::SheetUser user{host.sheet};
    const ImportPatch enumeration{host.plugIn.Module(), "EnumFontFamiliesW", AddressOf(&EnumerateInstalled)};
    HWND dialog = nullptr;
};

}  // namespace kzp::test
