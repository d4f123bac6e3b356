// Choosing fonts and colour management in the embedded dialog: what it opens with, what a click does to the
// driver's items, and what is stored.
#include "tests/advanced/FontsDialog.h"

#include <algorithm>
#include <cstring>

#include "tests/support/HostedSheet.h"

namespace kzp::test {
namespace {

using Names = std::vector<std::wstring>;
using driverhost::DriverTree;
using driverhost::SessionOptions;

SessionOptions WithSelections(LONG fonts, LONG intent = 0, LONG method = 0) {
    SessionOptions options;
    options.features = DriverTree::Standard(L"Help item");
    options.features->Items()[kFontsItem].Sel = fonts;
    options.features->Items()[kIntentItem].Sel = intent;
    options.features->Items()[kMethodItem].Sel = method;
    return options;
}

TEST_F(FontsDialog, ListsEachFamilyOnceInOrder) {
    // One call per character set for some families, as some platforms do it.
    Install({L"Zeta", L"alpha", L"Beta", L"alpha", L"Zeta", L"@Beta", L"alpha"});
    Open();
    const Names listed = Listed();
    ASSERT_EQ(4u, listed.size());
    EXPECT_EQ((Names{L"alpha", L"Beta", L"Zeta"}), Names(listed.begin() + 1, listed.end()));

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
        Open(WithSelections(expected.item));
        for (const int radio : {IDC_FONTS_ALL, IDC_FONTS_NONE, IDC_FONTS_SELECT})
            EXPECT_EQ(radio == expected.radio, IsRadioChecked(radio)) << radio;
        EXPECT_EQ(expected.radio == IDC_FONTS_SELECT, IsWindowEnabled(Control(IDC_FONT_LIST)) != FALSE);
        EXPECT_EQ(expected.itemAfter, ItemSelection(kFontsItem));
        EXPECT_EQ(expected.checkedAfter, CheckedNames());
        EXPECT_TRUE(IsApplyEnabled()) << "opening counts as a click on the choice";
        ASSERT_EQ(1u, session->Helper().Announcements().size());
        EXPECT_EQ(static_cast<int>(kFontsItem), session->Helper().Announcements()[0].position);
    }
}

TEST_F(FontsDialog, ChoicesSetTheItemAndTheCheckMarks) {
    const Names all = {L"Alpha", L"Beta", L"Delta"};
    Install(all);
    Store({L"Beta"});
    Open(WithSelections(2));
    session->Helper().Announcements().clear();
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
        EnableWindow(apply, FALSE);
        Click(click.radio);
        EXPECT_EQ(click.item, ItemSelection(kFontsItem));
        EXPECT_EQ(click.listEnabled, IsWindowEnabled(Control(IDC_FONT_LIST)) != FALSE);
        EXPECT_EQ(click.checked, CheckedNames());
        EXPECT_TRUE(IsApplyEnabled());
        const driverhost::Announcement& said = session->Helper().Announcements().back();
        EXPECT_EQ(static_cast<int>(kFontsItem), said.position);
        EXPECT_EQ(click.item, said.selection);
        EXPECT_EQ(0u, said.previous);
        EXPECT_EQ(DWORD{OEMCUIP_DOCPROP}, said.mode);
        EXPECT_TRUE(said.rightSheet);
    }
    EXPECT_EQ(std::size(clicks), session->Helper().Announcements().size());

    // Checking an entry enables Apply too.
    EnableWindow(apply, FALSE);
    SetImage(1, 2);
    EXPECT_TRUE(IsApplyEnabled());
}

TEST_F(FontsDialog, ColourListsFollowTheirItemsWithTheFirstTwoMethodsSwapped) {
    const LONG swapped[] = {1, 0, 2, 3};
    for (LONG selection = 0; selection < 4; ++selection) {
        Open(WithSelections(1, selection % 3, selection));
        EXPECT_EQ(3, SendMessageW(Control(IDC_ICM_INTENT), CB_GETCOUNT, 0, 0));
        EXPECT_EQ(4, SendMessageW(Control(IDC_ICM_METHOD), CB_GETCOUNT, 0, 0));
        EXPECT_EQ(selection % 3, SendMessageW(Control(IDC_ICM_INTENT), CB_GETCURSEL, 0, 0));
        EXPECT_EQ(swapped[selection], SendMessageW(Control(IDC_ICM_METHOD), CB_GETCURSEL, 0, 0));
        wchar_t first[64] = {};
        SendMessageW(Control(IDC_ICM_METHOD), CB_GETLBTEXT, 0, reinterpret_cast<LPARAM>(first));
        EXPECT_EQ(plugIn.ResourceText(456), first);

        EnableWindow(apply, FALSE);
        Choose(IDC_ICM_METHOD, selection);
        EXPECT_EQ(swapped[selection], ItemSelection(kMethodItem));
        EXPECT_EQ(static_cast<int>(kMethodItem), session->Helper().Announcements().back().position);
        Choose(IDC_ICM_INTENT, 2);
        EXPECT_EQ(2, ItemSelection(kIntentItem));
        EXPECT_EQ(static_cast<int>(kIntentItem), session->Helper().Announcements().back().position);
        EXPECT_TRUE(IsApplyEnabled());
    }
}

TEST_F(FontsDialog, CommitStoresTheCheckedFontsInListOrder) {
    const std::wstring longest(31, L'W');
    Install({L"Zeta", longest, L"alpha", L"Beta", L"\x4E2D\x6587 \xD83D\xDE00"});
    Store({L"Zeta", L"Vanished", L"alpha"});
    Open(WithSelections(2));
    const Names listed = Listed();
    SetImage(static_cast<int>(std::find(listed.begin(), listed.end(), longest) - listed.begin()), 2);
    Commit();
    EXPECT_EQ((Names{L"alpha", longest, L"Zeta"}), StoredNames()) << "a font that is gone is dropped";

    // An entry without a check box counts as chosen.
    Click(IDC_FONTS_NONE);
    Commit();
    EXPECT_TRUE(StoredNames().empty());
    SetImage(0, 0);
    Commit();
    EXPECT_EQ(Names{listed[0]}, StoredNames());

    // What was stored opens again.
    Click(IDC_FONTS_ALL);
    Commit();
    EXPECT_EQ(listed, StoredNames());
    Open(WithSelections(1));
    EXPECT_TRUE(IsRadioChecked(IDC_FONTS_ALL));
}

TEST_F(FontsDialog, DamagedStoredListsAreTakenAsFarAsTheyGo) {
    Install({L"Alpha", L"Beta", L"Gamma"});
    std::vector<BYTE> bytes(64 + 40);  // a record and a piece of one
    std::memcpy(bytes.data(), L"Beta", 8);
    std::memcpy(bytes.data() + 64, L"Gamma", 10);
    StoreBytes(bytes);
    Open(WithSelections(2));
    EXPECT_EQ(Names{L"Beta"}, CheckedNames());

    // No terminator: the record ends where it ends, not where the next one does.
    bytes.assign(128, 'x');
    std::memcpy(bytes.data() + 64, L"Gamma", 12);
    StoreBytes(bytes);
    Open(WithSelections(2));
    EXPECT_EQ(Names{L"Gamma"}, CheckedNames());

    // Longer than all listed fonts together: unreadable, and reset as unreadable settings are.
    StoreBytes(std::vector<BYTE>(size_t{4} * 64, 'x'));
    Open(WithSelections(0));
    EXPECT_TRUE(IsRadioChecked(IDC_FONTS_NONE));
    EXPECT_TRUE(StoredBytes().empty());
}

TEST_F(FontsDialog, FewerDriverItemsThanPositionsAreLeftAlone) {
    Install({L"Alpha", L"Beta"});
    for (const DWORD items : {0u, 5u, 6u, 9u}) {
        SCOPED_TRACE(items);
        Store({L"Alpha"});
        SessionOptions options;
        options.firstItems = items;
        Open(std::move(options));
        EXPECT_TRUE(IsRadioChecked(IDC_FONTS_SELECT)) << "without its item the stored list decides";
        for (const int radio : {IDC_FONTS_ALL, IDC_FONTS_NONE, IDC_FONTS_SELECT})
            Click(radio);
        Choose(IDC_ICM_METHOD, 1);
        Choose(IDC_ICM_INTENT, 1);
        for (const driverhost::Announcement& said : session->Helper().Announcements())
            EXPECT_LT(said.position, static_cast<int>(items));
        SetImage(1, 2);
        Commit();
        EXPECT_EQ(Names{L"Beta"}, StoredNames());
    }
}

TEST_F(FontsDialog, WithoutADialogTheCommitKeepsWhatIsStored) {
    Install({L"Alpha"});
    Store({L"Alpha", L"Beta", L"Gamma"});
    const std::vector<BYTE> before = StoredBytes();
    session = std::make_unique<driverhost::DocumentSession>(plugIn, NoPrinter());
    session->PresentItems();
    Commit();
    EXPECT_EQ(before, StoredBytes());

    Store({L"Alpha"});
    Open();
    Close();
    const std::vector<BYTE> closed = StoredBytes();
    Commit();
    EXPECT_EQ(closed, StoredBytes()) << "nor does a dialog that is gone";
}

}  // namespace
}  // namespace kzp::test
