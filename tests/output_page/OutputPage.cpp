#include "tests/output_page/OutputPage.h"

#include <shlobj.h>

#include "tools/driverhost/Text.h"

namespace kzp::test {

using driverhost::SheetUser;

OutputPage::OutputPage()
    : plugIn(driverhost::BesideProgram(L"KZPWriterUI.dll")), m_startFolder(CurrentFolder()) {}

OutputPage::~OutputPage() {
    SetCurrentDirectoryW(m_startFolder.c_str());  // or the folders could not be removed
}

void OutputPage::Show(std::initializer_list<Step> steps) {
    driverhost::SessionOptions options;
    options.needsPrinter = false;
    options.plugInItem = plugInItem;
    session = std::make_unique<driverhost::DocumentSession>(plugIn, std::move(options));
    driverhost::HostSheet sheet(*session);
    driverhost::SheetRun run(sheet);
    run.Add([](SheetUser& user) { user.ClickTab(2); });
    for (const Step& step : steps)
        run.Add([&run, step](SheetUser& user) { step(user, run); });
    try {
        run.Show();
    } catch (const driverhost::HostError& error) {
        ADD_FAILURE() << driverhost::Utf8(error.text);
    }
    boxes = run.Boxes();
}

void OutputPage::Store(const wchar_t* name, const std::wstring& text) {
    WriteText(HKEY_CURRENT_USER, kSettingsKey, name, text);
}

std::wstring OutputPage::Stored(const wchar_t* name) {
    const auto value = ReadValue(HKEY_CURRENT_USER, kSettingsKey, name);
    return value ? value->Text() : std::wstring();
}

std::wstring OutputPage::Folder(const std::wstring& name) const {
    const std::wstring path = folders.File(name);
    CreateDirectoryW(path.c_str(), nullptr);
    return path;
}

std::wstring OutputPage::Documents() {
    wchar_t path[MAX_PATH] = {};
    LPITEMIDLIST items = nullptr;
    if (SUCCEEDED(SHGetSpecialFolderLocation(nullptr, CSIDL_PERSONAL, &items))) {
        SHGetPathFromIDListW(items, path);
        CoTaskMemFree(items);
    }
    return path;
}

std::wstring OutputPage::CurrentFolder() {
    wchar_t path[1024] = {};
    GetCurrentDirectoryW(1024, path);
    return path;
}

std::wstring OutputPage::History(const std::vector<std::wstring>& folders) {
    std::wstring history;
    for (const std::wstring& folder : folders)
        history += folder + L";";
    return history;
}

std::vector<std::wstring> Listed(const SheetUser& user) {
    const HWND list = user.Find(IDC_FOLDER);
    std::vector<std::wstring> entries;
    for (WPARAM index = 0; index < static_cast<WPARAM>(SendMessageW(list, CB_GETCOUNT, 0, 0)); ++index) {
        std::wstring text(static_cast<size_t>(SendMessageW(list, CB_GETLBTEXTLEN, index, 0)), L'\0');
        SendMessageW(list, CB_GETLBTEXT, index, reinterpret_cast<LPARAM>(text.data()));
        entries.push_back(text);
    }
    return entries;
}

int SelectedIndex(const SheetUser& user) {
    return static_cast<int>(SendMessageW(user.Find(IDC_FOLDER), CB_GETCURSEL, 0, 0));
}

void DisableApply(SheetUser& user) {
    EnableWindow(GetDlgItem(user.Sheet().Window(), IDC_SHEET_APPLY), FALSE);
}

}  // namespace kzp::test
