#include "tests/output_page/OutputPage.h"

#include <shlobj.h>

#include <cstring>

#include "tools/driverhost/Text.h"

namespace kzp::test {

using driverhost::Format;

namespace {

Names g_asked;
std::wstring g_chosen;

LPITEMIDLIST WINAPI AnswerBrowser(BROWSEINFOW* browse) {
    g_asked.push_back(Format(L"browser \"%ls\" flags %X", browse->lpszTitle, browse->ulFlags));
    EXPECT_NE(nullptr, GetDlgItem(browse->hwndOwner, IDC_BROWSE)) << "the page is the owner";
    EXPECT_EQ(nullptr, browse->pidlRoot);
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
    g_asked.push_back(Format(L"create %ls %X %X %X %X", path, access, share, disposition, attributes));
    return CreateFileW(path, access, share, security, disposition, attributes, pattern);
}

}  // namespace

OutputPage::OutputPage()
    : plugIn(driverhost::BesideProgram(L"KZPWriterUI.dll")),
      m_functions(plugIn.Module(), "GetProcAddress", AddressOf(&FindFunction)),
      m_boxes(plugIn.Module(), "MessageBoxW", AddressOf(&AnswerBox)),
      m_files(plugIn.Module(), "CreateFileW", AddressOf(&Create)) {}

OutputPage::~OutputPage() {
    std::filesystem::current_path(m_startFolder);  // or the folders could not be removed
}

void OutputPage::Show(std::initializer_list<driverhost::SheetStep> steps) {
    g_asked.clear();
    driverhost::SessionOptions options = NoPrinter();
    options.plugInItem = plugInItem;
    HostedSheet host(std::move(options));
    host.run.Add([](SheetUser& user) { user.ClickTab(2); });
    for (const driverhost::SheetStep& step : steps)
        host.run.Add(step);
    try {
        host.run.Show();
    } catch (const driverhost::HostError& error) {
        ADD_FAILURE() << error.what();
    }
    announcements = host.session.Helper().Announcements();
}

driverhost::SheetStep OutputPage::Browse(const std::wstring& folder) {
    return [folder](SheetUser& user) {
        g_chosen = folder;
        DisableApply(user);
        user.Click(IDC_BROWSE);
        EXPECT_FALSE(user.ApplyEnabled()) << "browsing alone does not enable it";
    };
}

void OutputPage::Store(const wchar_t* name, const std::wstring& text) {
    WriteText(HKEY_CURRENT_USER, kSettingsKey, name, text);
}

std::wstring OutputPage::Stored(const wchar_t* name) {
    const auto value = ReadValue(HKEY_CURRENT_USER, kSettingsKey, name);
    return value ? value->Text() : std::wstring();
}

std::wstring OutputPage::Folder(const std::wstring& name) const {
    std::wstring path = folders.File(name);
    CreateDirectoryW(path.c_str(), nullptr);
    return path;
}

std::wstring OutputPage::History(const Names& folders) {
    std::wstring history;
    for (const std::wstring& folder : folders)
        history += folder + L";";
    return history;
}

Names& OutputPage::Asked() {
    return g_asked;
}

int SelectedIndex(const SheetUser& user) {
    return static_cast<int>(SendMessageW(user.Find(IDC_FOLDER), CB_GETCURSEL, 0, 0));
}

void DisableApply(SheetUser& user) {
    EnableWindow(GetDlgItem(user.Sheet().Window(), IDC_SHEET_APPLY), FALSE);
}

void Tell(SheetUser& user, int control, WORD code) {
    SendMessageW(user.Sheet().PageWindow(2), WM_COMMAND, MAKEWPARAM(control, code), 0);
}

}  // namespace kzp::test
