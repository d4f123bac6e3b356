#include "pages/output/OutputFolder.h"

#include <algorithm>

#include "pages/ControlTexts.h"
#include "pages/output/FolderHistory.h"
#include "resources/resource.h"
#include "settings/SettingsStore.h"
#include "support/QuietDrives.h"
#include "support/Shell.h"
#include "support/UniqueHandle.h"

namespace kzp {

namespace {

// The shell takes item lists from the process heap, where a fixed block is its own global handle: the
// global-memory functions free it, and OLE's allocator need not be asked for.
struct ItemListTraits {
    using Type = LPITEMIDLIST;
    static Type Empty() { return nullptr; }
    static void Close(Type items) {
        const HGLOBAL block = GlobalHandle(items);
        GlobalUnlock(block);
        GlobalFree(block);
    }
};
using UniqueItemList = UniqueHandle<ItemListTraits>;

std::wstring PathOf(const UniqueItemList& items) {
    wchar_t path[MAX_PATH] = {};
    return items && shell::GetPath(items.Get(), path) ? path : L"";
}

// Whatever file of that name is there is deliberately overwritten, and gone afterwards. The separator is
// always added; two in a row do no harm.
bool CanCreateFileIn(const std::wstring& folder) {
    const QuietDrives quiet;
    const std::wstring path = folder + L"\\test.kzp";
    UniqueFile file(CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file)
        return false;
    file.Reset();
    (void)DeleteFileW(path.c_str());
    return true;
}

void TellFolderIsUnusable(const SheetState& sheet) {
    MessageBoxW(nullptr, LoadText(sheet, IDS_FOLDER_ERROR_TEXT).c_str(),
                LoadText(sheet, IDS_FOLDER_ERROR_CAPTION).c_str(), MB_ICONEXCLAMATION | MB_OK | MB_TOPMOST);
}

std::wstring ListEntry(HWND list, int index) {
    // The length may be more than what the text then has, never less.
    const LRESULT room = SendMessageW(list, CB_GETLBTEXTLEN, static_cast<WPARAM>(index), 0);
    std::wstring text(room > 0 ? static_cast<size_t>(room) : 0, L'\0');
    const LRESULT length =
        SendMessageW(list, CB_GETLBTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()));
    text.resize(length > 0 ? std::min(text.size(), static_cast<size_t>(length)) : 0);
    return text;
}

int ListCount(HWND list) {
    return static_cast<int>(SendMessageW(list, CB_GETCOUNT, 0, 0));
}

// Index of the first entry that equals `folder` in every character; the count when there is none. Folders
// that differ in case alone are deliberately two entries.
int FindInList(HWND list, const std::wstring& folder) {
    const int count = ListCount(list);
    int index = 0;
    while (index < count && ListEntry(list, index) != folder)
        ++index;
    return index;
}

// Adds `folder` to the stored history and to the list; both lose the oldest entry when the history is full.
// The history is taken from the store each time, not from what is pending: of two folders that are added
// before a commit only the second is in the history to come, while the list shows both.
void AddToHistory(SheetState& sheet, HWND list, const std::wstring& folder) {
    std::wstring history;
    ReadStringSetting(kPathDirs, history);
    if (IsHistoryFull(history)) {
        const int oldest = FindInList(list, DropOldest(history));
        SendMessageW(list, CB_DELETESTRING, static_cast<WPARAM>(oldest), 0);  // the count itself is refused
    }
    if (!folder.empty()) {
        AppendFolder(history, folder);
        SendMessageW(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(folder.c_str()));
    }
    sheet.Pending.PathDirs = history;
}

}  // namespace

std::wstring DocumentsFolder() {
    UniqueItemList items;
    if (FAILED(shell::GetSpecialFolder(CSIDL_PERSONAL, items.Put())))
        return {};
    return PathOf(items);
}

int BrowseForFolder(PCWSTR title, HWND owner, std::wstring& folder) {
    folder.clear();
    BROWSEINFOW browse = {};
    wchar_t displayName[MAX_PATH] = {};
    browse.hwndOwner = owner;
    browse.pszDisplayName = displayName;
    browse.lpszTitle = title;
    browse.ulFlags = BIF_RETURNONLYFSDIRS;
    const UniqueItemList chosen(shell::BrowseForFolder(browse));
    if (!chosen)
        return 1;
    folder = PathOf(chosen);
    return 0;
}

int ValidateOutputFolder(SheetState& sheet, HWND page, const std::wstring& folder) {
    if (!folder.empty() && !CanCreateFileIn(folder)) {
        TellFolderIsUnusable(sheet);
        return 0;
    }
    // A drop-down list does not show a text that is set this way; nothing depends on it.
    SetDlgItemTextW(page, IDC_FOLDER, folder.c_str());
    if (IsDlgButtonChecked(page, IDC_USER_LOCATION) != BST_CHECKED)
        return 1;

    const HWND list = GetDlgItem(page, IDC_FOLDER);
    int index = FindInList(list, folder);
    if (index == ListCount(list)) {
        AddToHistory(sheet, list, folder);
        index = ListCount(list) - 1;
    }
    if (folder.empty()) {
        wchar_t shown[MAX_PATH] = {};
        GetDlgItemTextW(page, IDC_FOLDER, shown, MAX_PATH);
        sheet.Pending.DefaultDir = shown;
    } else {
        SendMessageW(list, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
        sheet.Pending.DefaultDir = folder;
    }
    return 1;
}

}  // namespace kzp
