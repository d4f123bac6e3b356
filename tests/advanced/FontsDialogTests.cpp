// Choosing fonts and colour management in the embedded dialog: what it opens with, what a click does to the
// driver's items, and what is stored.
#include "support/SystemLibrary.h"
#include "tests/advanced/FontsDialog.h"

#include <commctrl.h>

#include <algorithm>
#include <cstring>

#include "tests/support/Counters.h"

namespace kzp::test {
namespace {

TEST_F(FontsDialog, ListsEachFamilyOnceInOrder) {
    const UniqueModule themes(LoadLibraryW(L"uxtheme.dll"));
    const auto isTextured = FindFunction<BOOL(WINAPI*)(HWND)>(themes, "IsThemeDialogTextureEnabled");
    // One call per character set for some families, as some platforms do it.
    Install({L"Zeta", L"alpha", L"Beta", L"alpha", L"Zeta", L"@Beta", L"alpha"});
    Open();
    const Names listed = Listed();
    ASSERT_EQ(4u, listed.size());
    EXPECT_EQ((Names{L"alpha", L"Beta", L"Zeta"}), Names(listed.begin() + 1, listed.end()));
    EXPECT_EQ(DWORD{LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT},
              ListView_GetExtendedListViewStyle(Control(IDC_FONT_LIST)));
    EXPECT_EQ(322, ListView_GetColumnWidth(Control(IDC_FONT_LIST), 0));
    EXPECT_TRUE(isTextured(dialog)) << "as the page around it";

    Install({});
    Open();
    EXPECT_TRUE(Listed().empty());
    EXPECT_TRUE(IsRadioChecked(IDC_FONTS_NONE)) << "nothing stored";
}

TEST_F(FontsDialog, OpensOnTheChoiceThatItemAndStoredFontsGive) {
    const Names two = {L"Beta", L"Delta"}, all = {L"Alpha", L"Beta", L"Delta"};
    const struct {
        LONG item;
        Names stored;
        int radio;
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
    Install({L"Delta", L"Alpha", L"Beta"});
    for (const auto& expected : cases) {
        SCOPED_TRACE(expected.item * 100 + static_cast<int>(expected.stored.size()));
        Store(expected.stored);
        Open(expected.item);
        for (const int radio : {IDC_FONTS_ALL, IDC_FONTS_NONE, IDC_FONTS_SELECT})
            EXPECT_EQ(radio == expected.radio, IsRadioChecked(radio)) << radio;
        EXPECT_EQ(expected.radio == IDC_FONTS_SELECT, IsWindowEnabled(Control(IDC_FONT_LIST)) != FALSE);
        EXPECT_EQ(expected.itemAfter, ItemSelection(kFontsItem));
        EXPECT_EQ(expected.checkedAfter, Listed(true));
        EXPECT_TRUE(TakeApply()) << "opening counts as a click on the choice";
        ASSERT_EQ(1u, Said().size());
        EXPECT_EQ(static_cast<int>(kFontsItem), Said()[0].position);
    }
}

TEST_F(FontsDialog, ChoicesSetTheItemAndTheCheckMarks) {
    const Names all = {L"Alpha", L"Beta", L"Delta"};
    Install(all);
    Store({L"Beta"});
    Open(2);
    Said().clear();
    TakeApply();
    const struct {
        int radio;
        LONG item;
        bool listEnabled;
        Names checked;
    } clicks[] = {
        {IDC_FONTS_ALL, 0, false, all},
        {IDC_FONTS_SELECT, 2, true, all},
        {IDC_FONTS_NONE, 1, false, {}},
        {IDC_FONTS_SELECT, 2, true, {}},
    };
    for (const auto& click : clicks) {
        SendMessageW(Control(click.radio), BM_CLICK, 0, 0);
        EXPECT_EQ(click.item, ItemSelection(kFontsItem));
        EXPECT_EQ(click.listEnabled, IsWindowEnabled(Control(IDC_FONT_LIST)) != FALSE);
        EXPECT_EQ(click.checked, Listed(true));
        EXPECT_TRUE(TakeApply());
        const driverhost::Announcement& said = Said().back();
        EXPECT_EQ(static_cast<int>(kFontsItem), said.position);
        EXPECT_EQ(click.item, said.selection);
        EXPECT_EQ(0u, said.previous);
        EXPECT_EQ(DWORD{OEMCUIP_DOCPROP}, said.mode);
        EXPECT_TRUE(said.rightSheet);
    }
    // Checking and unchecking an entry enables Apply too; nothing else does, nor is it announced.
    for (const UINT image : {2u, 1u}) {
        SetImage(1, image);
        EXPECT_TRUE(TakeApply()) << image;
    }
    for (const int button : {IDC_FONTS_ALL, IDC_FONTS_NONE, IDC_FONTS_SELECT})
        Tell(button, BN_SETFOCUS);
    for (const int list : {IDC_ICM_INTENT, IDC_ICM_METHOD})
        Tell(list, CBN_DROPDOWN);
    NMLISTVIEW change = {};
    change.uNewState = INDEXTOSTATEIMAGEMASK(2);
    for (const auto& [control, code] :
         {std::pair{IDC_ICM_METHOD, LVN_ITEMCHANGED}, {IDC_FONT_LIST, LVN_ITEMCHANGING}}) {
        change.hdr = {Control(control), static_cast<UINT_PTR>(control), static_cast<UINT>(code)};
        SendMessageW(dialog, WM_NOTIFY, static_cast<WPARAM>(control), reinterpret_cast<LPARAM>(&change));
    }
    EXPECT_FALSE(TakeApply());
    EXPECT_EQ(std::size(clicks), Said().size());
}

TEST_F(FontsDialog, ColourListsFollowTheirItemsWithTheFirstTwoMethodsSwapped) {
    const LONG swapped[] = {1, 0, 2, 3};
    for (LONG selection = 0; selection < 4; ++selection) {
        Open(1, selection % 3, selection);
        EXPECT_EQ(selection % 3, SendMessageW(Control(IDC_ICM_INTENT), CB_GETCURSEL, 0, 0));
        EXPECT_EQ(swapped[selection], SendMessageW(Control(IDC_ICM_METHOD), CB_GETCURSEL, 0, 0));
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
}

TEST_F(FontsDialog, CommitStoresTheCheckedFontsInListOrder) {
    const std::wstring longest(31, L'W');
    Install({L"Zeta", longest, L"alpha", L"Beta", L"\x4E2D\x6587 \xD83D\xDE00"});
    Store({L"Zeta", L"Vanished", L"alpha"});
    Open(2);
    const Names listed = Listed();
    SetImage(static_cast<int>(std::find(listed.begin(), listed.end(), longest) - listed.begin()), 2);
    Commit();
    EXPECT_EQ((Names{L"alpha", longest, L"Zeta"}), StoredNames()) << "a font that is gone is dropped";

    // An entry without a check box counts as chosen.
    Tell(IDC_FONTS_NONE, BN_CLICKED);
    Commit();
    EXPECT_TRUE(StoredNames().empty());
    SetImage(0, 0);
    Commit();
    EXPECT_EQ(Names{listed[0]}, StoredNames());

    // What was stored opens again.
    Tell(IDC_FONTS_ALL, BN_CLICKED);
    Commit();
    EXPECT_EQ(listed, StoredNames());
    Open(1);
    EXPECT_TRUE(IsRadioChecked(IDC_FONTS_ALL));
}

TEST_F(FontsDialog, DamagedStoredListsAreTakenAsFarAsTheyGo) {
    Install({L"Alpha", L"Beta", L"Gamma"});
    std::vector<BYTE> bytes(64 + 40);  // a record and a piece of one
    std::memcpy(bytes.data(), L"Beta", 8);
    std::memcpy(bytes.data() + 64, L"Gamma", 10);
    StoreBytes(bytes);
    Open(2);
    EXPECT_EQ(Names{L"Beta"}, Listed(true));

    // No terminator: the record ends where it ends, not where the next one does.
    bytes.assign(128, 'x');
    std::memcpy(bytes.data() + 64, L"Gamma", 12);
    StoreBytes(bytes);
    Open(2);
    EXPECT_EQ(Names{L"Gamma"}, Listed(true));

    // Longer than all listed fonts together: unreadable, and reset as unreadable settings are.
    StoreBytes(std::vector<BYTE>(size_t{4} * 64, 'x'));
    Open(0);
    EXPECT_TRUE(IsRadioChecked(IDC_FONTS_NONE));
    EXPECT_TRUE(StoredNames().empty());
}

TEST_F(FontsDialog, FewerDriverItemsThanPositionsAreLeftAlone) {
    Install({L"Alpha", L"Beta"});
    for (const DWORD items : {0u, 5u, 6u, 9u}) {
        SCOPED_TRACE(items);
        Store({L"Alpha"});
        Open(7, 2, 3, items);
        EXPECT_TRUE(IsRadioChecked(IDC_FONTS_SELECT)) << "without its item the stored list decides";
        for (const int radio : {IDC_FONTS_ALL, IDC_FONTS_NONE, IDC_FONTS_SELECT})
            Tell(radio, BN_CLICKED);
        Choose(IDC_ICM_METHOD, 1);
        Choose(IDC_ICM_INTENT, 1);
        const Names selections = {std::to_wstring(ItemSelection(kIntentItem)),
                                  std::to_wstring(ItemSelection(kMethodItem)),
                                  std::to_wstring(ItemSelection(kFontsItem))};
        EXPECT_EQ((Names{items > kIntentItem ? L"1" : L"2", items > kMethodItem ? L"0" : L"3", L"7"}),
                  selections);
        for (const driverhost::Announcement& said : Said())
            EXPECT_LT(said.position, static_cast<int>(items));
        SetImage(1, 2);
        Commit();
        EXPECT_EQ(Names{L"Beta"}, StoredNames());
    }
}

TEST_F(FontsDialog, WithoutADialogTheCommitKeepsWhatIsStored) {
    Install({L"Alpha"});
    const Names kept = {L"Alpha", L"Beta", L"Gamma"};
    for (const bool opened : {false, true}) {
        if (opened) {
            Open();
            Close();
        } else {
            session = std::make_unique<driverhost::DocumentSession>(plugIn, NoPrinter());
            session->PresentItems();
        }
        Store(kept);
        Commit();
        EXPECT_EQ(kept, StoredNames()) << "nor does a dialog that is gone";
    }
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
    const ImportPatch get(plugIn.Module(), "GetDC", AddressOf(&CountDevice));
    const ImportPatch release(plugIn.Module(), "ReleaseDC", AddressOf(&CountRelease));
    Install({L"Alpha"});
    constexpr size_t kRounds = 16;
    size_t blocks = 0;
    for (size_t round = 0; round < 2 * kRounds; ++round) {
        Open();
        Close();
        if (round == kRounds - 1)
            blocks = CountHeapBlocks();
    }
    EXPECT_LT(CountHeapBlocks(), blocks + kRounds / 2);
    EXPECT_EQ(0, g_devices);
}

}  // namespace
}  // namespace kzp::test
