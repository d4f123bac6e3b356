// Choosing fonts and colour management in the dialog: what it opens with, what a click does to the driver's
// items, what is stored; and the notice that takes its place in one restricted process.
#include "support/SystemLibrary.h"
#include "tests/advanced/FontsDialog.h"

namespace kzp::test {
namespace {

TEST_F(FontsDialog, OpensOnTheChoiceThatItemAndStoredFontsGive) {
    const Names all = {L"Alpha", L"Beta", L"Delta"};
    const auto two = Records({L"Beta", L"Delta"}), three = Records({L"Gone", L"bETA", L""});
    const std::vector<BYTE> cut(two.begin(), two.end() - 1), four(size_t{4} * 64, 'x');
    const struct {
        std::vector<BYTE> stored;
        LONG item;
        int choice;
        Names checkedAfter;
    } cases[] = {
        {{}, 0, IDC_FONTS_NONE, {}},     // the stored list overrides a stored "all" ...
        {three, 1, IDC_FONTS_ALL, all},  // ... and a stored "none": it is counted, not looked at
        {two, 0, IDC_FONTS_SELECT, {L"Beta", L"Delta"}},
        {{}, 2, IDC_FONTS_SELECT, {}},  // but not "select"
        {three, 2, IDC_FONTS_SELECT, {L"Beta"}},
        {cut, 2, IDC_FONTS_SELECT, {L"Beta"}},
        {four, 0, IDC_FONTS_NONE, {}},  // more than are installed: unreadable
    };
    Play([&] {
        for (const auto& [stored, item, choice, checkedAfter] : cases) {
            SCOPED_TRACE(item * 1000 + static_cast<int>(stored.size()));
            Store(stored);
            Open(item);
            ExpectChoice(choice);
            EXPECT_EQ(choice - IDC_FONTS_ALL, ItemSelection(kFontsItem));
            EXPECT_TRUE(TakeApply()) << "opening counts as a click on the choice";
            ASSERT_EQ(1u, Said().size());
            EXPECT_EQ(kFontsItem, Said()[0].position);
            ExpectCommitted(checkedAfter);
        }
    });
}

TEST_F(FontsDialog, ChoicesSetTheItemAndTheCheckMarks) {
    const Names all = {L"Alpha", L"Beta", L"Delta"};
    const std::pair<int, Names> clicks[] = {
        {IDC_FONTS_ALL, all}, {IDC_FONTS_SELECT, all}, {IDC_FONTS_NONE, {}}, {IDC_FONTS_SELECT, {}}};
    Play([&] {
        Open(2);
        for (const auto& [choice, checked] : clicks) {
            const LONG item = choice - IDC_FONTS_ALL;
            TakeApply();
            user.Click(choice);
            EXPECT_TRUE(TakeApply());
            ExpectChoice(choice);
            EXPECT_EQ(item, ItemSelection(kFontsItem));
            EXPECT_TRUE(Said().back().position == kFontsItem && Said().back().selection == item);
            ExpectCommitted(checked);
        }
        // Checking and unchecking an entry enables Apply too; nothing else does, nor is it announced.
        Said().clear();
        for (const bool checked : {true, false}) {
            user.CheckItem(IDC_FONT_LIST, L"Beta", checked);
            EXPECT_TRUE(TakeApply()) << checked;
        }
        Tell(IDC_ICM_METHOD, CBN_DROPDOWN);
        NMLISTVIEW change = {};
        change.hdr = {nullptr, IDC_ICM_METHOD, static_cast<UINT>(LVN_ITEMCHANGED)};
        change.uNewState = INDEXTOSTATEIMAGEMASK(2);
        SendMessageW(dialog, WM_NOTIFY, IDC_ICM_METHOD, reinterpret_cast<LPARAM>(&change));
        EXPECT_FALSE(TakeApply());
        EXPECT_TRUE(Said().empty());
    });
}

TEST_F(FontsDialog, ColourListsFollowTheirItemsWithTheFirstTwoMethodsSwapped) {
    const LONG swapped[] = {1, 0, 2, 3};
    Play([&] {
        for (int method = 0; method < 4; ++method) {
            const int intent = method % 3;
            Open(1, intent, swapped[method]);
            EXPECT_EQ(Text(IDS_ICM_INTENT_FIRST + intent), user.Text(IDC_ICM_INTENT));
            EXPECT_EQ(Text(IDS_ICM_METHOD_FIRST + method), user.Text(IDC_ICM_METHOD));
            TakeApply();
            Choose(IDC_ICM_METHOD, 3 - method);
            EXPECT_TRUE(TakeApply());
            EXPECT_EQ(kMethodItem, Said().back().position);
            EXPECT_EQ(swapped[3 - method], ItemSelection(kMethodItem));
            Choose(IDC_ICM_INTENT, 2 - intent);
            EXPECT_TRUE(TakeApply());
            EXPECT_EQ(kIntentItem, Said().back().position);
            EXPECT_EQ(2 - intent, ItemSelection(kIntentItem));
        }
    });
}

TEST_F(FontsDialog, CommitStoresTheCheckedFontsInListOrder) {
    const UniqueModule themes(LoadLibraryW(L"uxtheme.dll"));
    const auto isTextured = FindFunction<BOOL(WINAPI*)(HWND)>(themes, "IsThemeDialogTextureEnabled");
    const std::wstring longest(31, L'W'), foreign = L"\x4E2D\x6587 \xD83D\xDE00";
    // One call per character set for some families, as some platforms do it.
    g_installed = {L"Zeta", longest, L"alpha", L"Beta", L"alpha", foreign, L"Zeta"};
    Store(Records({L"Zeta", L"Vanished", L"alpha"}));
    Play([&] {
        Open(2);
        EXPECT_TRUE(isTextured(dialog)) << "as the page around it";
        EXPECT_EQ(322, ListView_GetColumnWidth(Control(IDC_FONT_LIST), 0));
        user.CheckItem(IDC_FONT_LIST, longest, true);
        ExpectCommitted({L"alpha", longest, L"Zeta"});  // a font that is gone is dropped
        user.Click(IDC_FONTS_ALL);
        ExpectCommitted({L"alpha", L"Beta", longest, L"Zeta", foreign});
        Open(1);
        ExpectChoice(IDC_FONTS_ALL);

        g_installed.clear();
        Open();
        ExpectChoice(IDC_FONTS_NONE);

        // Without a dialog nothing is stored.
        DestroyWindow(dialog);
        Store(Records({L"Kept"}));
        ExpectCommitted({L"Kept"});
    });
}

TEST_F(FontsDialog, FewerDriverItemsThanPositionsAreLeftAlone) {
    Store(Records({L"Alpha"}));
    Play([&] {
        for (const int items : {0, 5, 6, 9}) {
            SCOPED_TRACE(items);
            host.session.UIParam().cDrvOptItems = static_cast<DWORD>(items);
            Open(7, 2, 3);
            ExpectChoice(IDC_FONTS_SELECT);  // without its item the stored list decides
            user.Click(IDC_FONTS_ALL);
            Choose(IDC_ICM_METHOD, 1);
            Choose(IDC_ICM_INTENT, 1);
            EXPECT_EQ(items > kIntentItem ? 1 : 2, ItemSelection(kIntentItem));
            EXPECT_EQ(items > kMethodItem ? 0 : 3, ItemSelection(kMethodItem));
            EXPECT_EQ(7, ItemSelection(kFontsItem));
        }
    });
}

TEST_F(FontsDialog, LeavesNothingBehind) {
    Play([&] {
        size_t blocks = 0;
        for (int round = 0; round < 32; ++round) {
            if (round == 16)
                blocks = CountHeapBlocks();
            Open();
        }
        EXPECT_LT(CountHeapBlocks(), blocks + 8);
    });
}

std::wstring g_program;

WINBOOL WINAPI TellWindows60(OSVERSIONINFOW* record) {
    record->dwMajorVersion = 6;
    return TRUE;
}

DWORD WINAPI TellProgram(HMODULE module, LPWSTR path, DWORD characters) {
    if (module)
        return GetModuleFileNameW(module, path, characters);
    path[g_program.copy(path, characters - 1)] = L'\0';
    return static_cast<DWORD>(g_program.size());
}

TEST_F(FontsDialog, OneRestrictedProcessGetsANoticeInstead) {
    const ImportPatch version(host.plugIn.Module(), "GetVersionExW", AddressOf(&TellWindows60));
    const ImportPatch program(host.plugIn.Module(), "GetModuleFileNameW", AddressOf(&TellProgram));
    Play([&] {
        for (const bool notice : {false, true}) {
            g_program = notice ? L"C:\\ie\\ieuser.exe" : L"C:\\ie\\IEUser.exe";
            Open();
            EXPECT_EQ(notice, !IsWindowVisible(dialog));
            int shown = 0;
            for (HWND child = GetWindow(Page(), GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
                shown += IsWindowVisible(child) != FALSE;
            EXPECT_EQ(1, shown) << "the page's own controls are hidden";
        }
        const std::wstring text = Text(IDS_FONTS_UNAVAILABLE);
        EXPECT_TRUE(IsWindowVisible(FindWindowExW(Page(), nullptr, L"static", text.c_str())));
    });
}

}  // namespace
}  // namespace kzp::test
