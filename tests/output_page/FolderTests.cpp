// The list of folders: its order, what comes in through the browser and the location choice, and what a
// folder that cannot be written to leaves behind.
#include "tests/output_page/OutputPage.h"

namespace kzp::test {
namespace {

// As it is stored.
std::wstring History(const Names& folders) {
    std::wstring history;
    for (const std::wstring& folder : folders)
        history += folder + L";";
    return history;
}

struct Folders : OutputPage {
    // Two of them are one folder to Windows, and two to the history: there every character counts, case
    // included.
    Folders() {
        Folder(L"G");
        for (const wchar_t* name : {L"A", L"B", L"g", L"D", L"E", L"F", L"G"})
            all.push_back(Folder(name));
    }
    Names First(size_t count) const { return {all.begin(), all.begin() + static_cast<ptrdiff_t>(count)}; }
    // A page on folder B with that many folders in the history.
    void StoreHistory(size_t count) {
        Store(L"PathDirs", History(First(count)));
        Store(L"DefaultDir", all[1]);
    }
    static driverhost::SheetStep Expect(const Names& listed, int selected) {
        return [=](SheetUser& user) {
            EXPECT_EQ(listed, ListEntries(user, IDC_FOLDER));
            EXPECT_EQ(selected, SelectedIndex(user));
        };
    }
    static void ExpectStored(const Names& history, const std::wstring& folder) {
        EXPECT_EQ(History(history), Stored(L"PathDirs"));
        EXPECT_EQ(folder, Stored(L"DefaultDir"));
    }
    static std::wstring WriteTestIn(const std::wstring& folder) {
        return L"create " + folder + L"\\test.kzp C0000000 1 2 80";
    }

    Names all;
};

TEST_F(Folders, AreListedInStoredOrder) {
    const std::wstring &b = all[1], other = folders.File(L"b");
    std::wstring many;
    for (int entry = 0; entry < 511; ++entry)
        many += L"x;";
    const struct {
        std::wstring stored;
        Names listed;
        int selected;
    } cases[] = {
        {History(First(3)), First(3), 1},
        {b, {}, -1},  // no separator, no entry
        {History({all[2]}) + b, {all[2]}, -1},
        {L";;" + History({b}), {L"", L"", b}, 2},
        {History({b, L"C:\\gone", other}), {b, L"C:\\gone", other}, 0},
        {many, Names(511, L"x"), -1},
    };
    Store(L"DefaultDir", b);
    for (const auto& [stored, listed, selected] : cases) {
        SCOPED_TRACE(testing::PrintToString(stored));
        Store(L"PathDirs", stored);
        Show({Expect(listed, selected), Ok});
        EXPECT_EQ(stored, Stored(L"PathDirs")) << "looking at it changes nothing";
        EXPECT_EQ(b, Stored(L"DefaultDir"));
    }
    // A thousand folders do not fit what a text setting holds: the history is reset.
    Store(L"PathDirs", many + many);
    Show({Expect({}, -1)});
    EXPECT_EQ(L"", Stored(L"PathDirs"));
}

TEST_F(Folders, ThatAreChosenJoinTheHistoryAndTheOldestOfFiveLeaves) {
    const std::wstring browser = L"browser \"" + plugIn.ResourceText(800) + L"\" flags 1";
    for (const size_t stored : {0u, 4u, 5u, 6u}) {
        SCOPED_TRACE(stored);
        StoreHistory(stored);
        Names expected = First(stored);
        if (stored >= 5)
            expected.erase(expected.begin());  // one only, also where there are more
        expected.push_back(all[6]);
        WriteFileText(all[6] + L"\\test.kzp", "somebody's");
        Show({Browse(all[6]), Expect(expected, static_cast<int>(expected.size()) - 1),
              [&](SheetUser&) { EXPECT_EQ(all[1], Stored(L"DefaultDir")) << "not before the commit"; }, Ok});
        EXPECT_EQ((Names{browser, WriteTestIn(all[6])}), g_asked);
        ExpectStored(expected, all[6]);
        EXPECT_FALSE(FileExists(all[6] + L"\\test.kzp")) << "the write test takes any file of its name along";
    }
    // Of two that are added before a commit only the second is kept.
    StoreHistory(2);
    Show({Browse(all[4]), Browse(all[5]), Expect({all[0], all[1], all[4], all[5]}, 3), Ok});
    ExpectStored({all[0], all[1], all[5]}, all[5]);
}

TEST_F(Folders, ThatAreListedAreOnlySelected) {
    StoreHistory(5);
    Show({Browse(all[3]), Browse(L""), Expect(First(5), 3), Ok});
    ExpectStored(First(5), all[3]);  // not moved to the newest place

    Show({[&](SheetUser& user) {
              DisableApply(user);
              Tell(user, IDC_FOLDER, CBN_DROPDOWN);
              EXPECT_FALSE(user.ApplyEnabled());
              Tell(user, IDC_FOLDER, CBN_EDITCHANGE);
              EXPECT_TRUE(user.ApplyEnabled());
              DisableApply(user);
              user.SelectIndex(IDC_FOLDER, 4);
              EXPECT_TRUE(user.ApplyEnabled());
          },
          Ok});
    ExpectStored(First(5), all[4]);
}

TEST_F(Folders, ReturningToTheUserLocationFromDocumentsTrimsAndTakesWhatIsShown) {
    StoreHistory(5);
    const Names left = {all[1], all[2], all[3], all[4]};
    Show({Click(IDC_DOCUMENTS_LOCATION), Expect(First(5), 1),  // a drop-down list keeps its selection
          Click(IDC_USER_LOCATION), [&](SheetUser& user) { EXPECT_EQ(left, ListEntries(user, IDC_FOLDER)); },
          Ok});
    ExpectStored(left, all[1]);

    // With nothing shown there is nothing to take.
    Store(L"PathDirs", L"");
    Store(L"DefaultDir", L"");
    Show({Click(IDC_USER_LOCATION), Ok});
    ExpectStored({}, L"");
}

TEST_F(Folders, ThatAreStoredAreProvenAndListedWhenTheUserLocationIsClicked) {
    // Somebody else stored another folder while the sheet is open.
    std::wstring documents = DocumentsFolder();
    CharUpperW(documents.data());
    for (const std::wstring& stored : {all[5], documents}) {
        StoreHistory(2);
        Show({[&](SheetUser&) { Store(L"DefaultDir", stored); }, Click(IDC_USER_LOCATION),
              Expect({all[0], all[1], stored}, 2), Ok});
        EXPECT_EQ(Names{WriteTestIn(stored)}, g_asked);
        ExpectStored({all[0], all[1], stored}, stored);
    }
}

TEST_F(Folders, ThatCannotBeWrittenToChangeNothing) {
    StoreHistory(5);
    std::filesystem::create_directory(all[6] + L"\\test.kzp");  // in the way of the write test
    const std::wstring box = Format(L"box \"%ls\" %ls style 40030", plugIn.ResourceText(656).c_str(),
                                    plugIn.ResourceText(701).c_str());
    const Names unusable = {folders.File(L"vanished"), L"Q:\\" + std::wstring(256, L'x')};
    Show({Browse(all[6]),
          [&](SheetUser& user) {
              for (const std::wstring& folder : unusable) {
                  Store(L"DefaultDir", folder);
                  user.Click(IDC_USER_LOCATION);
                  EXPECT_EQ(box, g_asked.back());
              }
              EXPECT_EQ(7u, g_asked.size()) << "a browser, and a box for each file";
              EXPECT_TRUE(user.Enabled(IDC_FOLDER));
          },
          Expect(First(5), 1), Ok});
    ExpectStored(First(5), all[1]);
    EXPECT_TRUE(FileExists(all[6] + L"\\test.kzp"));
}

}  // namespace
}  // namespace kzp::test
