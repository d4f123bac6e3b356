// The Output Location page in a real sheet, with a registry and folders of its own, and what it asks of the
// platform.
#pragma once

#include <shlobj.h>

#include <cstring>
#include <filesystem>

#include "resources/resource.h"
#include "tests/support/Files.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/SheetTest.h"

namespace kzp::test {

using driverhost::Format;
using driverhost::SheetUser;
using Names = std::vector<std::wstring>;

inline Names g_asked;  // browsers, message boxes and created files, each in a line
inline std::wstring g_chosen;

inline LPITEMIDLIST WINAPI AnswerBrowser(BROWSEINFOW* browse) {
    g_asked.push_back(Format(L"browser \"%ls\" flags %X", browse->lpszTitle, browse->ulFlags));
    EXPECT_NE(nullptr, GetDlgItem(browse->hwndOwner, IDC_BROWSE)) << "the page is the owner";
    EXPECT_EQ(nullptr, browse->pidlRoot);
    return g_chosen.empty() ? nullptr : ILCreateFromPathW(g_chosen.c_str());
}

// The browser's library is looked up when it is needed.
inline FARPROC WINAPI FindFunction(HMODULE module, LPCSTR name) {
    if (reinterpret_cast<ULONG_PTR>(name) > 0xFFFF && std::strcmp(name, "SHBrowseForFolderW") == 0)
        return reinterpret_cast<FARPROC>(AddressOf(&AnswerBrowser));
    return GetProcAddress(module, name);
}

inline int WINAPI AnswerBox(HWND owner, LPCWSTR text, LPCWSTR caption, UINT style) {
    EXPECT_EQ(nullptr, owner);
    g_asked.push_back(Format(L"box \"%ls\" %ls style %X", caption, text, style));
    return IDOK;
}

inline HANDLE WINAPI Create(LPCWSTR path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                            DWORD disposition, DWORD attributes, HANDLE pattern) {
    g_asked.push_back(Format(L"create %ls %X %X %X %X", path, access, share, disposition, attributes));
    return CreateFileW(path, access, share, security, disposition, attributes, pattern);
}

// Looks and steps.
inline int SelectedIndex(const SheetUser& user) {
    return static_cast<int>(SendMessageW(user.Find(IDC_FOLDER), CB_GETCURSEL, 0, 0));
}
inline void DisableApply(SheetUser& user) {
    EnableWindow(GetDlgItem(user.Sheet().Window(), IDC_SHEET_APPLY), FALSE);
}
inline void Tell(SheetUser& user, int control, WORD code) {  // as the control itself does
    SendMessageW(user.Sheet().PageWindow(2), WM_COMMAND, MAKEWPARAM(control, code), 0);
}
inline driverhost::SheetStep Click(int control) {
    return [control](SheetUser& user) { user.Click(control); };
}
inline void Ok(SheetUser& user) {
    user.Ok();
}
// Chooses a folder in the browser; an empty one cancels it.
inline driverhost::SheetStep Browse(const std::wstring& folder) {
    return [folder](SheetUser& user) {
        g_chosen = folder;
        DisableApply(user);
        user.Click(IDC_BROWSE);
        EXPECT_FALSE(user.ApplyEnabled()) << "browsing alone does not enable it";
    };
}

class OutputPage : public SheetTest {
  protected:
    ~OutputPage() override { std::filesystem::current_path(m_start); }  // or folders could not be removed

    // Opens a sheet on the page, plays the steps, and cancels unless they pressed OK.
    void Show(std::initializer_list<driverhost::SheetStep> steps) {
        g_asked.clear();
        HostedSheet host({.plugInItem = plugInItem});
        host.run.Add([](SheetUser& user) { user.ClickTab(2); });
        for (const driverhost::SheetStep& step : steps)
            host.run.Add(step);
        host.run.Show();
        announcements = host.session.Helper().Announcements();
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
    bool plugInItem = true;                               // whether the driver passes the plug-in's own item
    std::vector<driverhost::Announcement> announcements;  // of the latest sheet

  private:
    ImportPatch m_functions{plugIn.Module(), "GetProcAddress", AddressOf(&FindFunction)};
    ImportPatch m_boxes{plugIn.Module(), "MessageBoxW", AddressOf(&AnswerBox)};
    ImportPatch m_files{plugIn.Module(), "CreateFileW", AddressOf(&Create)};
    std::filesystem::path m_start = std::filesystem::current_path();
};

}  // namespace kzp::test
