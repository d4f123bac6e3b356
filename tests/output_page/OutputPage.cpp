#include "tests/output_page/OutputPage.h"

#include "tools/driverhost/Text.h"

namespace kzp::test {

using driverhost::SheetUser;

OutputPage::OutputPage()
    : plugIn(driverhost::BesideProgram(L"KZPWriterUI.dll")), m_startFolder(CurrentFolder()) {}

OutputPage::~OutputPage() {
    SetCurrentDirectoryW(m_startFolder.c_str());  // or the folders could not be removed
}

void OutputPage::Show(std::initializer_list<Step> steps) {
    driverhost::SessionOptions options = NoPrinter();
    options.plugInItem = plugInItem;
    HostedSheet host(std::move(options));
    host.run.Add([](SheetUser& user) { user.ClickTab(2); });
    for (const Step& step : steps)
        host.run.Add([&host, step](SheetUser& user) { step(user, host.run); });
    try {
        host.run.Show();
    } catch (const driverhost::HostError& error) {
        ADD_FAILURE() << driverhost::Utf8(error.text);
    }
    boxes = host.run.Boxes();
    announcements = host.session.Helper().Announcements();
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
    return ListEntries(user, IDC_FOLDER);
}

int SelectedIndex(const SheetUser& user) {
    return static_cast<int>(SendMessageW(user.Find(IDC_FOLDER), CB_GETCURSEL, 0, 0));
}

void DisableApply(SheetUser& user) {
    EnableWindow(GetDlgItem(user.Sheet().Window(), IDC_SHEET_APPLY), FALSE);
}

}  // namespace kzp::test
