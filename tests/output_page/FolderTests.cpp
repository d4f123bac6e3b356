// The list of folders: its order, what comes in through the browser and the location choice, and what a
// folder that cannot be written to leaves behind.
#include "tests/output_page/OutputPage.h"
#include "tools/driverhost/Text.h"

namespace kzp::test {
namespace {

Names Listed(const SheetUser& user) {
    return ListEntries(user, IDC_FOLDER);
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
    static std::wstring WriteTestIn(const std::wstring& folder) {
        return L"create " + folder + L"\\test.kzp C0000000 1 2 80";
    }

    Names all;
};

TEST_F(Folders, ListsTheHistoryInStoredOrder) {
    const std::wstring& b = all[1];
    const std::wstring other = folders.File(L"b");
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
    for (const auto& expected : cases) {
        SCOPED_TRACE(testing::PrintToString(expected.stored));
        Store(L"PathDirs", expected.stored);
        Show({[&](SheetUser& user) {
            EXPECT_EQ(expected.listed, Listed(user));
            EXPECT_EQ(expected.selected, SelectedIndex(user));
            user.Ok();
        }});
        EXPECT_EQ(expected.stored, Stored(L"PathDirs")) << "looking at it changes nothing";
        EXPECT_EQ(b, Stored(L"DefaultDir"));
    }
    // A thousand folders do not fit what a text setting holds: the history is reset.
    Store(L"PathDirs", many + many);
    Show({[](SheetUser& user) { EXPECT_TRUE(Listed(user).empty()); }});
    EXPECT_EQ(L"", Stored(L"PathDirs"));
}

TEST_F(Folders, AChosenFolderJoinsTheHistoryAndTheOldestOfFiveLeaves) {
    const std::wstring browser = L"browser \"" + plugIn.ResourceText(800) + L"\" flags 1";
    for (const size_t stored : {0u, 4u, 5u, 6u}) {
        SCOPED_TRACE(stored);
        StoreHistory(stored);
        Names expected = First(stored);
        if (stored >= 5)
            expected.erase(expected.begin());  // one only, also where there are more
        expected.push_back(all[6]);
        WriteFileText(all[6] + L"\\test.kzp", "somebody's");
        Show({Browse(all[6]), [&](SheetUser& user) {
                  EXPECT_EQ(expected, Listed(user));
                  EXPECT_EQ(static_cast<int>(expected.size()) - 1, SelectedIndex(user));
                  EXPECT_EQ(all[1], Stored(L"DefaultDir")) << "not before the commit";
                  user.Ok();
              }});
        EXPECT_EQ((Names{browser, WriteTestIn(all[6])}), Asked());
        EXPECT_EQ(History(expected), Stored(L"PathDirs"));
        EXPECT_EQ(all[6], Stored(L"DefaultDir"));
        EXPECT_FALSE(FileExists(all[6] + L"\\test.kzp")) << "the write test takes any file of its name along";
    }
}

TEST_F(Folders, ThatAreListedAreOnlySelected) {
    StoreHistory(5);
    Show({Browse(all[3]), Browse(L""),
          [&](SheetUser& user) {
              EXPECT_EQ(First(5), Listed(user));
              EXPECT_EQ(3, SelectedIndex(user));
          },
          Ok});
    EXPECT_EQ(History(First(5)), Stored(L"PathDirs")) << "not moved to the newest place";
    EXPECT_EQ(all[3], Stored(L"DefaultDir"));

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
    EXPECT_EQ(all[4], Stored(L"DefaultDir"));
}

TEST_F(Folders, OfTwoAddedBeforeACommitOnlyTheSecondIsKept) {
    StoreHistory(2);
    Show({Browse(all[4]), Browse(all[5]),
          [&](SheetUser& user) { EXPECT_EQ((Names{all[0], all[1], all[4], all[5]}), Listed(user)); }, Ok});
    EXPECT_EQ(History({all[0], all[1], all[5]}), Stored(L"PathDirs"));
}

TEST_F(Folders, ReturningToTheUserLocationFromDocumentsTrimsAndTakesWhatIsShown) {
    StoreHistory(5);
    Show({[](SheetUser& user) { user.Click(IDC_DOCUMENTS_LOCATION); },
          [&](SheetUser& user) {
              EXPECT_EQ(1, SelectedIndex(user)) << "a drop-down list keeps its selection";
              user.Click(IDC_USER_LOCATION);
              EXPECT_EQ((Names{all[1], all[2], all[3], all[4]}), Listed(user));
          },
          Ok});
    EXPECT_EQ(History({all[1], all[2], all[3], all[4]}), Stored(L"PathDirs"));
    EXPECT_EQ(all[1], Stored(L"DefaultDir"));

    // With nothing shown there is nothing to take.
    Store(L"PathDirs", L"");
    Store(L"DefaultDir", L"");
    Show({[](SheetUser& user) { user.Click(IDC_USER_LOCATION); }, Ok});
    EXPECT_EQ(L"", Stored(L"PathDirs"));
    EXPECT_EQ(L"", Stored(L"DefaultDir"));
}

TEST_F(Folders, TheStoredOneIsProvenAndListedWhenTheUserLocationIsClicked) {
    // Somebody else stored another folder while the sheet is open.
    std::wstring documents = DocumentsFolder();
    CharUpperW(documents.data());
    for (const std::wstring& stored : {all[5], documents}) {
        StoreHistory(2);
        Show({[&](SheetUser& user) {
                  Store(L"DefaultDir", stored);
                  user.Click(IDC_USER_LOCATION);
                  EXPECT_EQ((Names{all[0], all[1], stored}), Listed(user));
              },
              Ok});
        EXPECT_EQ(Names{WriteTestIn(stored)}, Asked());
        EXPECT_EQ(History({all[0], all[1], stored}), Stored(L"PathDirs"));
        EXPECT_EQ(stored, Stored(L"DefaultDir"));
    }
}

TEST_F(Folders, ThatCannotBeWrittenToChangeNothing) {
    StoreHistory(5);
    CreateDirectoryW((all[6] + L"\\test.kzp").c_str(), nullptr);  // in the way of the write test
    const std::wstring box = driverhost::Format(
        L"box \"%ls\" %ls style 40030", plugIn.ResourceText(656).c_str(), plugIn.ResourceText(701).c_str());
    const Names unusable = {folders.File(L"vanished"), L"Q:\\" + std::wstring(256, L'x')};
    Show({Browse(all[6]),
          [&](SheetUser& user) {
              for (const std::wstring& folder : unusable) {
                  Store(L"DefaultDir", folder);
                  user.Click(IDC_USER_LOCATION);
                  EXPECT_EQ(box, Asked().back());
              }
              EXPECT_EQ(6, std::ssize(Asked()) - 1) << "a browser, and a box for each file";
              EXPECT_EQ(First(5), Listed(user));
              EXPECT_EQ(1, SelectedIndex(user));
              EXPECT_TRUE(user.Enabled(IDC_FOLDER));
          },
          Ok});
    EXPECT_EQ(History(First(5)), Stored(L"PathDirs"));
    EXPECT_EQ(all[1], Stored(L"DefaultDir"));
    EXPECT_TRUE(FileExists(all[6] + L"\\test.kzp"));
}

}  // namespace
}  // namespace kzp::test
