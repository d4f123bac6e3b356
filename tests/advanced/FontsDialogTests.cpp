// Choosing fonts and colour management in the dialog: what it opens with, what a click does to the driver's
// items, and what is stored.
#include "support/SystemLibrary.h"
#include "tests/advanced/FontsDialog.h"

namespace kzp::test {
namespace {

TEST_F(FontsDialog, ListsEachFamilyOnceInOrder) {
    const UniqueModule themes(LoadLibraryW(L"uxtheme.dll"));
    const auto isTextured = FindFunction<BOOL(WINAPI*)(HWND)>(themes, "IsThemeDialogTextureEnabled");
    Play([&] {
        // One call per character set for some families, as some platforms do it.
        g_installed = {L"Zeta", L"alpha", L"Beta", L"alpha", L"Zeta", L"@Beta", L"alpha"};
        Open();
        Names listed = Listed();
        EXPECT_EQ(1, std::erase(listed, L"@Beta"));
        EXPECT_EQ((Names{L"alpha", L"Beta", L"Zeta"}), listed);
        EXPECT_EQ(DWORD{LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT},
                  ListView_GetExtendedListViewStyle(Control(IDC_FONT_LIST)));
        EXPECT_EQ(322, ListView_GetColumnWidth(Control(IDC_FONT_LIST), 0));
        EXPECT_TRUE(isTextured(dialog)) << "as the page around it";

        g_installed.clear();
        Open();
        EXPECT_TRUE(Listed().empty());
        ExpectChoice(IDC_FONTS_NONE);
    });
}

TEST_F(FontsDialog, OpensOnTheChoiceThatItemAndStoredFontsGive) {
    const Names two = {L"Beta", L"Delta"}, all = {L"Alpha", L"Beta", L"Delta"};
    const struct {
        LONG item;
        Names stored;
        int choice;
        LONG itemAfter;
        Names checkedAfter;
    } cases[] = {
        {0, {}, IDC_FONTS_NONE, 1, {}},      // the stored list overrides a stored "all" ...
        {1, all, IDC_FONTS_ALL, 0, all},     // ... and a stored "none"
        {0, two, IDC_FONTS_SELECT, 2, two},  //
        {1, two, IDC_FONTS_SELECT, 2, two},  //
        {2, {}, IDC_FONTS_SELECT, 2, {}},    // but not "select"
        {2, all, IDC_FONTS_SELECT, 2, all},
        {7, two, IDC_FONTS_SELECT, 2, two},
        {1, {L"Gone", L"bETA", L""}, IDC_FONTS_ALL, 0, all},  // counted, not looked at
        {2, {L"Gone", L"bETA", L""}, IDC_FONTS_SELECT, 2, {L"Beta"}},
    };
    Play([&] {
        for (const auto& [item, stored, choice, itemAfter, checkedAfter] : cases) {
            SCOPED_TRACE(item * 100 + static_cast<int>(stored.size()));
            Store(stored);
            Open(item);
            ExpectChoice(choice);
            EXPECT_EQ(itemAfter, ItemSelection(kFontsItem));
            EXPECT_EQ(checkedAfter, Listed(true));
            EXPECT_TRUE(TakeApply()) << "opening counts as a click on the choice";
            ASSERT_EQ(1u, Said().size());
            EXPECT_EQ(static_cast<int>(kFontsItem), Said()[0].position);
        }
    });
}

TEST_F(FontsDialog, ChoicesSetTheItemAndTheCheckMarks) {
    const Names all = {L"Alpha", L"Beta", L"Delta"};
    const struct {
        int choice;
        LONG item;
        Names checked;
    } clicks[] = {{IDC_FONTS_ALL, 0, all},
                  {IDC_FONTS_SELECT, 2, all},
                  {IDC_FONTS_NONE, 1, {}},
                  {IDC_FONTS_SELECT, 2, {}}};
    Store({L"Beta"});
    Play([&] {
        Open(2);
        for (const auto& [choice, item, checked] : clicks) {
            TakeApply();
            user.Click(choice);
            ExpectChoice(choice);
            EXPECT_EQ(item, ItemSelection(kFontsItem));
            EXPECT_EQ(checked, Listed(true));
            EXPECT_TRUE(TakeApply());
            const driverhost::Announcement& said = Said().back();
            EXPECT_EQ(static_cast<int>(kFontsItem), said.position);
            EXPECT_EQ(item, said.selection);
            EXPECT_EQ(0u, said.previous);
            EXPECT_EQ(DWORD{OEMCUIP_DOCPROP}, said.mode);
            EXPECT_TRUE(said.rightSheet);
        }
        // Checking and unchecking an entry enables Apply too; nothing else does, nor is it announced.
        Said().clear();
        for (const UINT image : {2u, 1u}) {
            SetImage(1, image);
            EXPECT_TRUE(TakeApply()) << image;
        }
        for (const int choice : kChoices)
            Tell(choice, BN_SETFOCUS);
        for (const int list : {IDC_ICM_INTENT, IDC_ICM_METHOD})
            Tell(list, CBN_DROPDOWN);
        NMLISTVIEW change = {};
        change.uNewState = INDEXTOSTATEIMAGEMASK(2);
        for (const auto& [control, code] :
             {std::pair{IDC_ICM_METHOD, LVN_ITEMCHANGED}, {IDC_FONT_LIST, LVN_ITEMCHANGING}}) {
            change.hdr = {Control(control), static_cast<UINT_PTR>(control), static_cast<UINT>(code)};
            SendMessageW(dialog, WM_NOTIFY, change.hdr.idFrom, reinterpret_cast<LPARAM>(&change));
        }
        EXPECT_FALSE(TakeApply());
        EXPECT_TRUE(Said().empty());
    });
}

TEST_F(FontsDialog, ColourListsFollowTheirItemsWithTheFirstTwoMethodsSwapped) {
    const LONG swapped[] = {1, 0, 2, 3};
    Play([&] {
        for (LONG selection = 0; selection < 4; ++selection) {
            Open(1, selection % 3, selection);
            EXPECT_EQ(selection % 3, Selection(IDC_ICM_INTENT));
            EXPECT_EQ(swapped[selection], Selection(IDC_ICM_METHOD));
            EXPECT_EQ(host.plugIn.ResourceText(IDS_ICM_INTENT_FIRST), ListEntries(user, IDC_ICM_INTENT)[0]);
            TakeApply();
            Choose(IDC_ICM_METHOD, selection);
            EXPECT_TRUE(TakeApply());
            EXPECT_EQ(swapped[selection], ItemSelection(kMethodItem));
            EXPECT_EQ(static_cast<int>(kMethodItem), Said().back().position);
            Choose(IDC_ICM_INTENT, 2);
            EXPECT_TRUE(TakeApply());
            EXPECT_EQ(2, ItemSelection(kIntentItem));
            EXPECT_EQ(static_cast<int>(kIntentItem), Said().back().position);
        }
    });
}

TEST_F(FontsDialog, CommitStoresTheCheckedFontsInListOrder) {
    const std::wstring longest(31, L'W');
    g_installed = {L"Zeta", longest, L"alpha", L"Beta", L"\x4E2D\x6587 \xD83D\xDE00"};
    Play([&] {
        Store({L"Zeta", L"Vanished", L"alpha"});
        Open(2);
        user.CheckItem(IDC_FONT_LIST, longest, true);
        Commit();
        ExpectStored({L"alpha", longest, L"Zeta"});  // a font that is gone is dropped

        // An entry without a check box counts as chosen.
        user.Click(IDC_FONTS_NONE);
        Commit();
        ExpectStored({});
        SetImage(0, 0);
        Commit();
        ExpectStored({Listed()[0]});

        // What was stored opens again.
        user.Click(IDC_FONTS_ALL);
        Commit();
        ExpectStored(Listed());
        Open(1);
        ExpectChoice(IDC_FONTS_ALL);

        // Without a dialog nothing is stored.
        DestroyWindow(dialog);
        Store({L"Kept"});
        Commit();
        ExpectStored({L"Kept"});
    });
}

TEST_F(FontsDialog, NeverShownKeepsWhatIsStored) {
    Store({L"Alpha", L"Gone"});
    host.session.PresentItems();
    host.session.TellCallback(CPSUICB_REASON_APPLYNOW, nullptr);
    ExpectStored({L"Alpha", L"Gone"});
}

TEST_F(FontsDialog, DamagedStoredListsAreTakenAsFarAsTheyGo) {
    Play([&] {
        std::vector<BYTE> bytes = Records({L"Beta", L"Delta"});
        bytes.resize(64 + 40);  // a record and a piece of one
        StoreBytes(bytes);
        Open(2);
        EXPECT_EQ(Names{L"Beta"}, Listed(true));

        // No terminator: the record ends where it ends, not where the next one does.
        bytes = Records({std::wstring(32, L'x'), L"Delta"});
        StoreBytes(bytes);
        Open(2);
        EXPECT_EQ(Names{L"Delta"}, Listed(true));

        // Longer than all listed fonts together: unreadable, and reset as unreadable settings are.
        StoreBytes(std::vector<BYTE>(size_t{4} * 64, 'x'));
        Open(0);
        ExpectChoice(IDC_FONTS_NONE);
        ExpectStored({});
    });
}

TEST_F(FontsDialog, FewerDriverItemsThanPositionsAreLeftAlone) {
    Play([&] {
        for (const DWORD items : {0u, 5u, 6u, 9u}) {
            SCOPED_TRACE(items);
            Store({L"Alpha"});
            host.session.UIParam().cDrvOptItems = items;
            Open(7, 2, 3);
            ExpectChoice(IDC_FONTS_SELECT);  // without its item the stored list decides
            for (const int choice : kChoices)
                Tell(choice, BN_CLICKED);
            Choose(IDC_ICM_METHOD, 1);
            Choose(IDC_ICM_INTENT, 1);
            EXPECT_EQ(items > kIntentItem ? 1 : 2, ItemSelection(kIntentItem));
            EXPECT_EQ(items > kMethodItem ? 0 : 3, ItemSelection(kMethodItem));
            EXPECT_EQ(7, ItemSelection(kFontsItem));
            for (const driverhost::Announcement& said : Said())
                EXPECT_LT(said.position, static_cast<int>(items));
        }
    });
}

int g_devices = 0;

int WINAPI CountRelease(HWND window, HDC device) {
    --g_devices;
    return ReleaseDC(window, device);
}

HDC WINAPI CountDevice(HWND window) {
    ++g_devices;
    return GetDC(window);
}

TEST_F(FontsDialog, LeavesNothingBehind) {
    const ImportPatch get(host.plugIn.Module(), "GetDC", AddressOf(&CountDevice));
    const ImportPatch release(host.plugIn.Module(), "ReleaseDC", AddressOf(&CountRelease));
    constexpr size_t kRounds = 16;
    Play([&] {
        size_t blocks = 0;
        for (size_t round = 0; round < 2 * kRounds; ++round) {
            Open();
            if (round == kRounds - 1)
                blocks = CountHeapBlocks();
        }
        EXPECT_LT(CountHeapBlocks(), blocks + kRounds / 2);
        EXPECT_EQ(0, g_devices);
    });
}

}  // namespace
}  // namespace kzp::test
