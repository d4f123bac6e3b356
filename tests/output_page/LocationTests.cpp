// Where the files go and whether their name is asked for: what the page opens with, what it writes at once,
// and what the driver hears.
#include <algorithm>

#include "tests/output_page/OutputPage.h"
#include "tests/support/Counters.h"
#include "tests/support/SystemFolder.h"

namespace kzp::test {
namespace {

void ExpectUserFolder(bool expected, const SheetUser& user) {
    EXPECT_EQ(expected, user.Checked(IDC_USER_LOCATION));
    EXPECT_EQ(!expected, user.Checked(IDC_DOCUMENTS_LOCATION));
    EXPECT_EQ(expected, user.Enabled(IDC_FOLDER));
    EXPECT_EQ(expected, user.Enabled(IDC_BROWSE));
}

TEST_F(OutputPage, OpensOnTheStoredFolderWhileItCanBeEntered) {
    std::wstring documents = DocumentsFolder();
    CharUpperW(documents.data());
    const std::pair<std::wstring, bool> cases[] = {
        {L"", false},
        {folders.File(L"vanished"), false},
        {L"Q:\\no such drive", false},
        {std::wstring(1000, L'x'), false},
        {DocumentsFolder(), false},
        {documents, true},  // in other letters
        {Folder(L"plain"), true},
        {Folder(L"\x4E2D\x6587 \x0416\x00E4"), true},  // beyond every code page
        {folders.Deep(258), true},                     // as long as a path may be without its terminator
    };
    for (const auto& expected : cases) {
        const auto& [stored, isUserFolder] = expected;
        SCOPED_TRACE(testing::PrintToString(stored));
        Store(L"DefaultDir", stored);
        const std::filesystem::path entered =
            isUserFolder ? std::filesystem::path(stored) : std::filesystem::current_path();
        Show({[&](SheetUser& user) {
            ExpectUserFolder(expected.second, user);
            EXPECT_TRUE(std::filesystem::current_path() / L"" == entered / L"");
            EXPECT_EQ(expected.second ? expected.first : DocumentsFolder(), Stored(L"DefaultDir"))
                << "at once";
        }});
        EXPECT_TRUE(g_asked.empty());
    }
}

TEST_F(OutputPage, AsksForTheFileNameUnlessTheSettingSaysNo) {
    const struct {
        const wchar_t* stored;
        bool asks;
        const wchar_t* atOnce;
    } cases[] = {
        {L"", true, L"YES"}, {L"ye", true, L"YES"},   {L"NO", false, L"NO"},
        {L"n", false, L"n"}, {L"nope", true, L"YES"},
    };
    for (const auto& expected : cases) {
        SCOPED_TRACE(testing::PrintToString(expected.stored));
        Store(L"PROMPTFILENAME", expected.stored);
        Show({[&](SheetUser& user) {
                  EXPECT_EQ(expected.asks, user.Checked(IDC_PROMPT_FILE_NAME));
                  EXPECT_EQ(expected.atOnce, Stored(L"PROMPTFILENAME"));
              },
              Ok});
        EXPECT_EQ(expected.asks ? L"YES" : L"No", Stored(L"PROMPTFILENAME"))
            << "an unchecked box is stored as No";
    }
    Show({[](SheetUser& user) {
              DisableApply(user);
              user.Click(IDC_PROMPT_FILE_NAME);
              EXPECT_TRUE(user.ApplyEnabled());
              EXPECT_EQ(L"YES", Stored(L"PROMPTFILENAME"));
          },
          Ok});
    EXPECT_EQ(L"No", Stored(L"PROMPTFILENAME"));
}

TEST_F(OutputPage, TheChoiceOfLocationIsAnnouncedAndTheDocumentsFolderWrittenAtOnce) {
    const std::wstring mine = Folder(L"mine");
    for (const bool item : {true, false}) {
        plugInItem = item;
        Store(L"DefaultDir", mine);
        Show({[&](SheetUser& user) {
            user.Sheet().Session().Helper().Announcements().clear();
            for (const int location : {IDC_DOCUMENTS_LOCATION, IDC_USER_LOCATION}) {
                DisableApply(user);
                user.Click(location);
                EXPECT_TRUE(user.ApplyEnabled());
                ExpectUserFolder(location == IDC_USER_LOCATION, user);
                EXPECT_EQ(DocumentsFolder(), Stored(L"DefaultDir"));
            }
        }});
        // A radio button that gets the focus by a key or a program may say twice that it is pressed.
        const auto same = [](const driverhost::Announcement& one, const driverhost::Announcement& other) {
            return one.selection == other.selection;
        };
        announcements.erase(std::unique(announcements.begin(), announcements.end(), same),
                            announcements.end());
        ASSERT_EQ(item ? 2u : 0u, announcements.size());
        for (LONG selection = 0; const driverhost::Announcement& announced : announcements) {
            EXPECT_TRUE(announced.plugInItem && announced.rightSheet);
            EXPECT_EQ(selection++, announced.selection);
            EXPECT_EQ(0u, announced.previous);
            EXPECT_EQ(DWORD{OEMCUIP_DOCPROP}, announced.mode);
        }
        EXPECT_EQ(DocumentsFolder(), Stored(L"DefaultDir")) << "cancelling does not take it back";
    }

    Store(L"DefaultDir", mine);
    Show({Click(IDC_DOCUMENTS_LOCATION),
          [](SheetUser& user) {
              constexpr size_t kClicks = 64;
              const size_t blocks = CountHeapBlocks();
              for (size_t click = 0; click < kClicks; ++click)
                  Tell(user, IDC_DOCUMENTS_LOCATION, BN_CLICKED);
              EXPECT_LT(CountHeapBlocks(), blocks + kClicks / 2) << "no click leaves anything behind";
          },
          Ok});
    EXPECT_EQ(DocumentsFolder(), Stored(L"DefaultDir"));

    // The third location is not offered and has no meaning of its own; it only closes the folder controls.
    Show({[](SheetUser& user) {
        for (const int control : {IDC_FOLDER, IDC_BROWSE})
            EnableWindow(user.Find(control), TRUE);
        Tell(user, IDC_SOURCE_LOCATION, BN_CLICKED);
        ExpectUserFolder(false, user);
    }});
}

TEST_F(OutputPage, WithoutTheShellThereIsNoDocumentsFolderAndNothingToBrowse) {
    Store(L"DefaultDir", Folder(L"mine"));
    const SystemFolder withoutShell(plugIn.Module(), {{L"shell32.dll", folders.File(L"none.dll")}});
    Show({Click(IDC_BROWSE), [](SheetUser& user) { EXPECT_TRUE(user.Checked(IDC_USER_LOCATION)); },
          Click(IDC_DOCUMENTS_LOCATION)});
    EXPECT_EQ(L"", Stored(L"DefaultDir"));
    EXPECT_TRUE(g_asked.empty());
}

}  // namespace
}  // namespace kzp::test
