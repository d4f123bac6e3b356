// Where the files go and whether their name is asked for: what the page opens with, what it writes at once,
// and what the driver hears.
#include "tests/output_page/OutputPage.h"
#include "tests/support/SystemFolder.h"

namespace kzp::test {
namespace {

using driverhost::SheetRun;
using driverhost::SheetUser;

TEST_F(OutputPage, OpensOnTheStoredFolderWhileItCanBeEntered) {
    // As long as a path may be without its terminator; and beyond every code page.
    std::wstring longest = folders.Path();
    while (longest.size() < 258) {
        longest += L"\\" + std::wstring(std::min<size_t>(200, 258 - longest.size()), L'x');
        CreateDirectoryW(longest.c_str(), nullptr);
    }
    const struct {
        std::wstring stored;
        bool isUserFolder;
    } cases[] = {
        {L"", false},
        {folders.File(L"vanished"), false},
        {L"Q:\\no such drive", false},
        {std::wstring(1000, L'x'), false},
        {DocumentsFolder(), false},
        {Folder(L"plain"), true},
        {Folder(L"\x4E2D\x6587 \x0416\x00E4"), true},
        {longest, CreateDirectoryW(longest.c_str(), nullptr) || GetLastError() == ERROR_ALREADY_EXISTS},
    };
    for (const auto& expected : cases) {
        SCOPED_TRACE(testing::PrintToString(expected.stored));
        Store(L"DefaultDir", expected.stored);
        const std::wstring before = CurrentFolder();
        Show({[&](SheetUser& user, SheetRun&) {
            EXPECT_EQ(expected.isUserFolder, user.Checked(IDC_USER_LOCATION));
            EXPECT_EQ(!expected.isUserFolder, user.Checked(IDC_DOCUMENTS_LOCATION));
            EXPECT_EQ(expected.isUserFolder, user.Enabled(IDC_FOLDER));
            EXPECT_EQ(expected.isUserFolder, user.Enabled(IDC_BROWSE));
            EXPECT_EQ(expected.isUserFolder ? expected.stored : before, CurrentFolder());
            EXPECT_EQ(expected.isUserFolder ? expected.stored : DocumentsFolder(), Stored(L"DefaultDir"))
                << "at once";
        }});
        EXPECT_TRUE(boxes.empty());
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
        SCOPED_TRACE(testing::PrintToString(std::wstring(expected.stored)));
        Store(L"PROMPTFILENAME", expected.stored);
        Show({[&](SheetUser& user, SheetRun&) {
            EXPECT_EQ(expected.asks, user.Checked(IDC_PROMPT_FILE_NAME));
            EXPECT_EQ(expected.atOnce, Stored(L"PROMPTFILENAME"));
            user.Ok();
        }});
        EXPECT_EQ(expected.asks ? L"YES" : L"No", Stored(L"PROMPTFILENAME"))
            << "an unchecked box is stored as No";
    }
    Show({[](SheetUser& user, SheetRun&) {
        DisableApply(user);
        user.Check(IDC_PROMPT_FILE_NAME, false);
        EXPECT_TRUE(user.ApplyEnabled());
        EXPECT_EQ(L"YES", Stored(L"PROMPTFILENAME"));
        user.Ok();
    }});
    EXPECT_EQ(L"No", Stored(L"PROMPTFILENAME"));
}

TEST_F(OutputPage, TheChoiceOfLocationIsAnnouncedAndTheDocumentsFolderWrittenAtOnce) {
    const std::wstring mine = Folder(L"mine");
    Store(L"DefaultDir", mine);
    for (const bool item : {true, false}) {
        plugInItem = item;
        Show({[](SheetUser& user, SheetRun&) {
            user.Sheet().Session().Helper().Announcements().clear();
            DisableApply(user);
            user.Click(IDC_DOCUMENTS_LOCATION);
            EXPECT_TRUE(user.ApplyEnabled());
            EXPECT_FALSE(user.Enabled(IDC_FOLDER));
            EXPECT_FALSE(user.Enabled(IDC_BROWSE));
            EXPECT_EQ(DocumentsFolder(), Stored(L"DefaultDir"));
            DisableApply(user);
            user.Click(IDC_USER_LOCATION);
            EXPECT_TRUE(user.ApplyEnabled());
            EXPECT_TRUE(user.Enabled(IDC_FOLDER));
            EXPECT_TRUE(user.Enabled(IDC_BROWSE));
        }});
        ASSERT_EQ(item ? 2u : 0u, announcements.size());
        for (size_t index = 0; index < announcements.size(); ++index) {
            EXPECT_TRUE(announcements[index].plugInItem);
            EXPECT_TRUE(announcements[index].rightSheet);
            EXPECT_EQ(static_cast<LONG>(index), announcements[index].selection);
            EXPECT_EQ(0u, announcements[index].previous);
            EXPECT_EQ(DWORD{OEMCUIP_DOCPROP}, announcements[index].mode);
        }
        EXPECT_EQ(DocumentsFolder(), Stored(L"DefaultDir")) << "cancelling does not take it back";
        Store(L"DefaultDir", mine);
    }
}

TEST_F(OutputPage, WithoutTheShellThereIsNoDocumentsFolderAndNothingToBrowse) {
    const std::wstring mine = Folder(L"mine");
    Store(L"DefaultDir", mine);
    const SystemFolder withoutShell(plugIn.Module(), {{L"shell32.dll", folders.File(L"none.dll")}});
    Show({[&](SheetUser& user, SheetRun&) {
        user.Click(IDC_BROWSE);
        EXPECT_TRUE(user.Checked(IDC_USER_LOCATION));
        user.Click(IDC_DOCUMENTS_LOCATION);
        EXPECT_EQ(L"", Stored(L"DefaultDir"));
    }});
    EXPECT_TRUE(boxes.empty());
}

TEST_F(OutputPage, TextsComeFromTheResourceModule) {
    const struct {
        int control;
        UINT text;
    } texts[] = {
        {IDC_BROWSE, 506}, {IDC_USER_LOCATION, 503}, {IDC_PROMPT_FILE_NAME, 507}, {IDC_HELP_OUTPUT, 3052}};
    Show({[&](SheetUser& user, SheetRun&) {
        for (const auto& expected : texts)
            EXPECT_EQ(plugIn.ResourceText(expected.text), user.Text(expected.control)) << expected.control;
        // The third location has no meaning of its own and is not offered; it only closes the folder
        // controls.
        EXPECT_FALSE(user.Visible(IDC_SOURCE_LOCATION));
        EnableWindow(user.Find(IDC_FOLDER), TRUE);
        SendMessageW(GetParent(user.Find(IDC_SOURCE_LOCATION)), WM_COMMAND, IDC_SOURCE_LOCATION, 0);
        EXPECT_FALSE(user.Enabled(IDC_FOLDER));
    }});
}

}  // namespace
}  // namespace kzp::test
