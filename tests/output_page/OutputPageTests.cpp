// Where the files go and whether their name is asked for: what the page opens with, what it writes at once
// and what the driver hears; the list of folders, what comes in through the browser and the location choice,
// and what a folder that cannot be written to leaves behind.
#include <shlobj.h>

#include <cstring>
#include <filesystem>

#include "resources/resource.h"
#include "tests/support/Counters.h"
#include "tests/support/Files.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/SheetTest.h"

namespace kzp::test {
namespace {

using driverhost::Format;
using driverhost::SheetUser;
using Names = std::vector<std::wstring>;

Names g_asked;  // browsers, message boxes and created files, each in a line
std::wstring g_chosen;

LPITEMIDLIST WINAPI AnswerBrowser(BROWSEINFOW* browse) {
    g_asked.push_back(Format(L"browser \"%ls\" flags %X", browse->lpszTitle, browse->ulFlags));
    EXPECT_NE(nullptr, GetDlgItem(browse->hwndOwner, IDC_BROWSE)) << "the page is the owner";
    return g_chosen.empty() ? nullptr : ILCreateFromPathW(g_chosen.c_str());
}

// The browser's library is looked up when it is needed.
FARPROC WINAPI FindFunction(HMODULE module, LPCSTR name) {
    if (reinterpret_cast<ULONG_PTR>(name) > 0xFFFF && std::strcmp(name, "SHBrowseForFolderW") == 0)
        return reinterpret_cast<FARPROC>(AddressOf(&AnswerBrowser));
    return GetProcAddress(module, name);
}

int WINAPI AnswerBox(HWND owner, LPCWSTR text, LPCWSTR caption, UINT style) {
    EXPECT_EQ(nullptr, owner);
    g_asked.push_back(Format(L"box \"%ls\" %ls style %X", caption, text, style));
    return IDOK;
}

HANDLE WINAPI Create(LPCWSTR path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                     DWORD disposition, DWORD attributes, HANDLE pattern) {
    g_asked.push_back(Format(L"create %ls %X", path, disposition));
    return CreateFileW(path, access, share, security, disposition, attributes, pattern);
}

class OutputPage : public SheetTest {
  protected:
    ~OutputPage() override { std::filesystem::current_path(m_start); }  // or folders could not be removed

    // Opens a sheet on the page, plays the steps, and cancels unless they pressed OK.
    static void Show(std::initializer_list<driverhost::SheetStep> steps) {
        g_asked.clear();
        HostedSheet host({.plugInItem = true});
        host.run.Add([](SheetUser& user) { user.ClickTab(2); });
        for (const driverhost::SheetStep& step : steps)
            host.run.Add(step);
        host.run.Show();
    }
    static driverhost::SheetStep Click(int control) {
        return [control](SheetUser& user) { user.Click(control); };
    }
    template <class Action>
    static bool EnablesApply(SheetUser& user, Action&& action) {
        EnableWindow(GetDlgItem(user.Sheet().Window(), IDC_SHEET_APPLY), FALSE);
        action();
        return user.ApplyEnabled();
    }
    static void Tell(SheetUser& user, int control, WORD code) {  // as the control itself does
        SendMessageW(user.Sheet().PageWindow(2), WM_COMMAND, MAKEWPARAM(control, code), 0);
    }

    // Settings, as stored. An unset text is empty.
    static void Store(const wchar_t* name, const std::wstring& text) {
        WriteText(HKEY_CURRENT_USER, kSettingsKey, name, text);
    }
    static std::wstring Stored(const wchar_t* name) { return Setting(name).value_or(RegistryValue()).Text(); }

    std::wstring Folder(const std::wstring& name) const {  // makes it
        std::filesystem::create_directory(folders.File(name));
        return folders.File(name);
    }

    TemporaryFolder folders;
    driverhost::PlugIn plugIn{BesideExe(L"KZPWriterUI.dll")};

  private:
    ImportPatch m_functions{plugIn.Module(), "GetProcAddress", AddressOf(&FindFunction)};
    ImportPatch m_boxes{plugIn.Module(), "MessageBoxW", AddressOf(&AnswerBox)};
    ImportPatch m_files{plugIn.Module(), "CreateFileW", AddressOf(&Create)};
    std::filesystem::path m_start = std::filesystem::current_path();
};

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
        {L"Q:\\no such drive", false},
        {std::wstring(1000, L'x'), false},
        {DocumentsFolder(), false},
        {documents, true},                             // in other letters
        {Folder(L"\x4E2D\x6587 \x0416\x00E4"), true},  // beyond every code page
        {folders.Deep(258), true},                     // as long as a path may be without its terminator
    };
    for (const auto& expected : cases) {
        const std::wstring& stored = expected.first;
        SCOPED_TRACE(testing::PrintToString(stored));
        Store(L"DefaultDir", stored);
        Show({[&](SheetUser& user) {
            ExpectUserFolder(expected.second, user);
            const std::filesystem::path entered = std::filesystem::current_path() / L"";
            EXPECT_EQ(expected.second, entered == std::filesystem::path(stored) / L"");
            EXPECT_EQ(expected.second ? stored : DocumentsFolder(), Stored(L"DefaultDir")) << "at once";
        }});
        EXPECT_TRUE(g_asked.empty());
    }
}

TEST_F(OutputPage, AsksForTheFileNameUnlessTheSettingSaysNo) {
    const struct {
        const wchar_t* stored;
        bool asks;
        const wchar_t* atOnce;
    } cases[] = {{L"", true, L"YES"}, {L"NO", false, L"NO"}, {L"n", false, L"n"}, {L"nope", true, L"YES"}};
    for (const auto& expected : cases) {
        SCOPED_TRACE(testing::PrintToString(expected.stored));
        Store(L"PROMPTFILENAME", expected.stored);
        Show({[&](SheetUser& user) {
                  EXPECT_EQ(expected.asks, user.Checked(IDC_PROMPT_FILE_NAME));
                  EXPECT_EQ(expected.atOnce, Stored(L"PROMPTFILENAME"));
                  EXPECT_TRUE(EnablesApply(user, [&] { user.Click(IDC_PROMPT_FILE_NAME); }));
                  EXPECT_EQ(expected.atOnce, Stored(L"PROMPTFILENAME"));
              },
              &SheetUser::Ok});
        EXPECT_EQ(expected.asks ? L"No" : L"YES", Stored(L"PROMPTFILENAME"));
    }
}

TEST_F(OutputPage, TheChoiceOfLocationIsAnnouncedAndTheDocumentsFolderWrittenAtOnce) {
    Store(L"DefaultDir", Folder(L"mine"));
    Show({[](SheetUser& user) {
              for (const int location : {IDC_DOCUMENTS_LOCATION, IDC_USER_LOCATION}) {
                  const bool mine = location == IDC_USER_LOCATION;
                  EXPECT_TRUE(EnablesApply(user, [&] { user.Click(location); }));
                  ExpectUserFolder(mine, user);
                  EXPECT_EQ(DocumentsFolder(), Stored(L"DefaultDir"));
                  const auto& said = user.Sheet().Session().Helper().Announcements().back();
                  EXPECT_TRUE(said.plugInItem && said.rightSheet && said.selection == mine);
                  EXPECT_TRUE(said.previous == 0 && said.mode == OEMCUIP_DOCPROP);
              }
              const size_t blocks = CountHeapBlocks();
              for (int click = 0; click < 64; ++click)
                  Tell(user, IDC_DOCUMENTS_LOCATION, BN_CLICKED);
              EXPECT_LT(CountHeapBlocks(), blocks + 32) << "no click leaves anything behind";
          },
          &SheetUser::Ok});
    EXPECT_EQ(DocumentsFolder(), Stored(L"DefaultDir"));
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
    // As it is stored.
    static std::wstring History(const Names& folders) {
        std::wstring history;
        for (const std::wstring& folder : folders)
            history += folder + L";";
        return history;
    }
    // A page on folder B with that many folders in the history.
    void StoreHistory(size_t count) {
        Store(L"PathDirs", History(First(count)));
        Store(L"DefaultDir", all[1]);
    }
    static void ExpectStored(const Names& history, const std::wstring& folder) {
        EXPECT_EQ(History(history), Stored(L"PathDirs"));
        EXPECT_EQ(folder, Stored(L"DefaultDir"));
    }
    static driverhost::SheetStep Expect(const Names& listed, int selected) {
        return [=](SheetUser& user) {
            EXPECT_EQ(listed, ListEntries(user, IDC_FOLDER));
            EXPECT_EQ(selected, SendMessageW(user.Find(IDC_FOLDER), CB_GETCURSEL, 0, 0));
        };
    }
    // Chooses a folder in the browser; an empty one cancels it.
    static driverhost::SheetStep Browse(const std::wstring& folder) {
        return [folder](SheetUser& user) {
            g_chosen = folder;
            EXPECT_FALSE(EnablesApply(user, [&] { user.Click(IDC_BROWSE); })) << "browsing alone does not";
        };
    }

    Names all;
};

TEST_F(Folders, AreListedInStoredOrder) {
    const std::wstring &b = all[1], other = folders.File(L"b");
    for (const Names& listed : {Names{b, L"C:\\gone", other}, Names{L"", L"", b}}) {
        const std::wstring stored = History(listed) + other;  // no separator, no entry
        Store(L"PathDirs", stored);
        Store(L"DefaultDir", b);
        Show({Expect(listed, listed[0] == b ? 0 : 2), &SheetUser::Ok});
        EXPECT_EQ(stored, Stored(L"PathDirs")) << "looking at it changes nothing";
        EXPECT_EQ(b, Stored(L"DefaultDir"));
    }
}

TEST_F(Folders, ThatAreChosenJoinTheHistoryAndTheOldestOfFiveLeaves) {
    const std::wstring browser = L"browser \"" + plugIn.ResourceText(IDS_BROWSE_TITLE) + L"\" flags 1";
    for (const size_t stored : {0u, 4u, 5u, 6u}) {
        SCOPED_TRACE(stored);
        StoreHistory(stored);
        Names expected = First(stored);
        if (stored >= 5)
            expected.erase(expected.begin());  // one only, also where there are more
        expected.push_back(all[6]);
        WriteFileText(all[6] + L"\\test.kzp", "somebody's");
        Show({Browse(all[6]), Expect(expected, static_cast<int>(expected.size()) - 1),
              [&](SheetUser&) { EXPECT_EQ(all[1], Stored(L"DefaultDir")) << "not before the commit"; },
              &SheetUser::Ok});
        EXPECT_EQ((Names{browser, L"create " + all[6] + L"\\test.kzp 2"}), g_asked);
        ExpectStored(expected, all[6]);
        EXPECT_FALSE(FileExists(all[6] + L"\\test.kzp")) << "the write test takes any file of its name along";
    }
    // Of two that are added before a commit only the second is kept.
    StoreHistory(2);
    Show({Browse(all[4]), Browse(all[5]), Expect({all[0], all[1], all[4], all[5]}, 3), &SheetUser::Ok});
    ExpectStored({all[0], all[1], all[5]}, all[5]);
}

TEST_F(Folders, ThatAreListedAreOnlySelected) {
    StoreHistory(5);
    Show({Browse(all[3]), Browse(L""), Expect(First(5), 3), &SheetUser::Ok});
    ExpectStored(First(5), all[3]);  // not moved to the newest place

    Show({[&](SheetUser& user) {
              EXPECT_TRUE(EnablesApply(user, [&] { Tell(user, IDC_FOLDER, CBN_EDITCHANGE); }));
              EXPECT_TRUE(EnablesApply(user, [&] { user.SelectIndex(IDC_FOLDER, 4); }));
          },
          &SheetUser::Ok});
    ExpectStored(First(5), all[4]);
}

TEST_F(Folders, ReturningToTheUserLocationTakesWhatIsShownOrStored) {
    StoreHistory(5);
    const Names left = {all[1], all[2], all[3], all[4]};
    Show({Click(IDC_DOCUMENTS_LOCATION), Expect(First(5), 1),  // a drop-down list keeps its selection
          Click(IDC_USER_LOCATION), [&](SheetUser& user) { EXPECT_EQ(left, ListEntries(user, IDC_FOLDER)); },
          &SheetUser::Ok});
    ExpectStored(left, all[1]);

    // Somebody else stored another folder while the sheet is open: it is proven and listed.
    Show({[&](SheetUser&) { Store(L"DefaultDir", all[5]); }, Click(IDC_USER_LOCATION), &SheetUser::Ok});
    EXPECT_EQ(Names{L"create " + all[5] + L"\\test.kzp 2"}, g_asked);
    ExpectStored({all[1], all[2], all[3], all[4], all[5]}, all[5]);
}

TEST_F(Folders, ThatCannotBeWrittenToChangeNothing) {
    StoreHistory(5);
    std::filesystem::create_directory(all[6] + L"\\test.kzp");  // in the way of the write test
    const std::wstring box =
        Format(L"box \"%ls\" %ls style 40030", plugIn.ResourceText(IDS_FOLDER_ERROR_CAPTION).c_str(),
               plugIn.ResourceText(IDS_FOLDER_ERROR_TEXT).c_str());
    Show({Browse(all[6]),
          [&](SheetUser& user) {
              for (const std::wstring& folder : {folders.File(L"vanished"), std::wstring(300, L'x')}) {
                  EXPECT_EQ(box, g_asked.back());
                  Store(L"DefaultDir", folder);
                  user.Click(IDC_USER_LOCATION);
              }
              EXPECT_EQ(7u, g_asked.size()) << "a browser, and a box for each file";
          },
          Expect(First(5), 1), &SheetUser::Ok});
    ExpectStored(First(5), all[1]);
}

}  // namespace
}  // namespace kzp::test
