// The list of folders: its order, what comes in through the browser and the location choice, and what a
// folder that cannot be written to leaves behind.
#include "tests/output_page/OutputPage.h"

namespace kzp::test {
namespace {

using driverhost::SheetRun;
using driverhost::SheetUser;
using Names = std::vector<std::wstring>;

struct Folders : OutputPage {
    Folders() {
        for (const wchar_t* name : {L"A", L"B", L"C", L"D", L"E", L"F", L"G"})
            all.push_back(Folder(name));
    }
    Names First(size_t count) const { return {all.begin(), all.begin() + static_cast<ptrdiff_t>(count)}; }
    // A page on folder B with that many folders in the history.
    void StoreHistory(size_t count) {
        Store(L"PathDirs", History(First(count)));
        Store(L"DefaultDir", all[1]);
    }
    static Step Browse(const std::wstring& path) {
        return [path](SheetUser& user, SheetRun& run) {
            run.AnswerNextBrowser(path);
            user.Click(IDC_BROWSE);
        };
    }
    static void Ok(SheetUser& user, SheetRun&) { user.Ok(); }

    Names all;
};

TEST_F(Folders, ListsTheHistoryInStoredOrder) {
    const std::wstring& b = all[1];
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
        {History({all[0], L"C:\\gone", b}), {all[0], L"C:\\gone", b}, 2},
        {many, Names(511, L"x"), -1},
    };
    Store(L"DefaultDir", b);
    for (const auto& expected : cases) {
        SCOPED_TRACE(testing::PrintToString(expected.stored));
        Store(L"PathDirs", expected.stored);
        Show({[&](SheetUser& user, SheetRun&) {
            EXPECT_EQ(expected.listed, Listed(user));
            EXPECT_EQ(expected.selected, SelectedIndex(user));
            user.Ok();
        }});
        EXPECT_EQ(expected.stored, Stored(L"PathDirs")) << "looking at it changes nothing";
        EXPECT_EQ(b, Stored(L"DefaultDir"));
    }
    // A thousand folders do not fit what a text setting holds: the history is reset.
    Store(L"PathDirs", many + many);
    Show({[](SheetUser& user, SheetRun&) { EXPECT_TRUE(Listed(user).empty()); }});
    EXPECT_EQ(L"", Stored(L"PathDirs"));
}

TEST_F(Folders, AChosenFolderJoinsTheHistoryAndTheOldestOfFiveLeaves) {
    for (const size_t stored : {0u, 4u, 5u, 6u}) {
        SCOPED_TRACE(stored);
        StoreHistory(stored);
        Names expected = First(stored);
        if (stored >= 5)
            expected.erase(expected.begin());  // one only, also where there are more
        expected.push_back(all[6]);
        WriteFileText(all[6] + L"\\test.kzp", "somebody's");
        Show({Browse(all[6]), [&](SheetUser& user, SheetRun&) {
                  EXPECT_EQ(expected, Listed(user));
                  EXPECT_EQ(static_cast<int>(expected.size()) - 1, SelectedIndex(user));
                  EXPECT_EQ(all[1], Stored(L"DefaultDir")) << "not before the commit";
                  user.Ok();
              }});
        EXPECT_TRUE(boxes.empty());
        EXPECT_EQ(History(expected), Stored(L"PathDirs"));
        EXPECT_EQ(all[6], Stored(L"DefaultDir"));
        EXPECT_FALSE(FileExists(all[6] + L"\\test.kzp")) << "the write test takes any file of its name along";
    }
}

TEST_F(Folders, AFolderThatIsListedIsOnlySelected) {
    StoreHistory(5);
    Show({Browse(all[3]),
          [&](SheetUser& user, SheetRun&) {
              EXPECT_EQ(First(5), Listed(user));
              EXPECT_EQ(3, SelectedIndex(user));
          },
          Ok});
    EXPECT_EQ(History(First(5)), Stored(L"PathDirs")) << "not moved to the newest place";
    EXPECT_EQ(all[3], Stored(L"DefaultDir"));

    Show({[&](SheetUser& user, SheetRun&) {
              DisableApply(user);
              user.SelectIndex(IDC_FOLDER, 4);
              EXPECT_TRUE(user.ApplyEnabled());
          },
          Ok});
    EXPECT_EQ(all[4], Stored(L"DefaultDir"));
}

TEST_F(Folders, OfTwoFoldersAddedBeforeACommitOnlyTheSecondIsKept) {
    StoreHistory(2);
    Show({Browse(all[4]), Browse(all[5]),
          [&](SheetUser& user, SheetRun&) {
              EXPECT_EQ((Names{all[0], all[1], all[4], all[5]}), Listed(user));
          },
          Ok});
    EXPECT_EQ(History({all[0], all[1], all[5]}), Stored(L"PathDirs"));
}

TEST_F(Folders, ReturningToTheUserLocationFromDocumentsTrimsAndTakesWhatIsShown) {
    StoreHistory(5);
    Show({[](SheetUser& user, SheetRun&) { user.Click(IDC_DOCUMENTS_LOCATION); },
          [&](SheetUser& user, SheetRun&) {
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
    Show({[](SheetUser& user, SheetRun&) { user.Click(IDC_USER_LOCATION); }, Ok});
    EXPECT_EQ(L"", Stored(L"PathDirs"));
    EXPECT_EQ(L"", Stored(L"DefaultDir"));
}

TEST_F(Folders, TheStoredFolderIsProvenAndListedWhenTheUserLocationIsClicked) {
    // Somebody else stored another folder while the sheet is open.
    StoreHistory(2);
    Show({[&](SheetUser& user, SheetRun&) {
              Store(L"DefaultDir", all[5]);
              user.Click(IDC_USER_LOCATION);
              EXPECT_EQ((Names{all[0], all[1], all[5]}), Listed(user));
          },
          Ok});
    EXPECT_EQ(History({all[0], all[1], all[5]}), Stored(L"PathDirs"));
    EXPECT_EQ(all[5], Stored(L"DefaultDir"));
}

TEST_F(Folders, AFolderThatCannotBeWrittenToChangesNothing) {
    StoreHistory(5);
    CreateDirectoryW((all[6] + L"\\test.kzp").c_str(), nullptr);  // in the way of the write test
    Show({Browse(all[6]),
          [&](SheetUser& user, SheetRun&) {
              EXPECT_EQ(First(5), Listed(user));
              EXPECT_EQ(1, SelectedIndex(user));
          },
          [&](SheetUser& user, SheetRun&) {
              Store(L"DefaultDir", folders.File(L"vanished"));
              user.Click(IDC_USER_LOCATION);
              EXPECT_EQ(First(5), Listed(user));
          },
          [&](SheetUser& user, SheetRun&) {
              Store(L"DefaultDir", L"Q:\\" + std::wstring(256, L'x'));
              user.Click(IDC_USER_LOCATION);
              EXPECT_TRUE(user.Enabled(IDC_FOLDER));
          },
          Ok});
    ASSERT_EQ(3u, boxes.size());
    for (const driverhost::SeenBox& box : boxes) {
        EXPECT_EQ(plugIn.ResourceText(656), box.caption);
        EXPECT_EQ(plugIn.ResourceText(701), box.text);
        EXPECT_EQ(nullptr, box.owner);
    }
    EXPECT_EQ(History(First(5)), Stored(L"PathDirs"));
    EXPECT_EQ(all[1], Stored(L"DefaultDir"));
    EXPECT_TRUE(FileExists(all[6] + L"\\test.kzp"));
}

TEST_F(Folders, ACancelledBrowserChangesNothing) {
    StoreHistory(3);
    Show({Browse(L""),
          [&](SheetUser& user, SheetRun&) {
              EXPECT_EQ(First(3), Listed(user));
              EXPECT_EQ(1, SelectedIndex(user));
          },
          Ok});
    EXPECT_TRUE(boxes.empty());
    EXPECT_EQ(History(First(3)), Stored(L"PathDirs"));
    EXPECT_EQ(all[1], Stored(L"DefaultDir"));
}

}  // namespace
}  // namespace kzp::test
