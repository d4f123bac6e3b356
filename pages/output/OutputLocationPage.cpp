#include "pages/output/OutputLocationPage.h"

#include <cwchar>

#include "core/DebugTrace.h"
#include "core/Module.h"
#include "help/Help.h"
#include "help/ResourceModule.h"
#include "pages/ControlTexts.h"
#include "pages/DriverOptions.h"
#include "pages/SheetFrame.h"
#include "pages/output/FolderHistory.h"
#include "pages/output/OutputFolder.h"
#include "resources/resource.h"
#include "settings/SettingsStore.h"
#include "support/QuietDrives.h"

namespace kzp {

namespace {

constexpr ControlText kTexts[] = {
    {IDC_BROWSE, IDS_BROWSE},
    {IDC_SOURCE_LOCATION, IDS_SOURCE_LOCATION},
    {IDC_USER_LOCATION, IDS_USER_LOCATION},
    {IDC_DOCUMENTS_LOCATION, IDS_DOCUMENTS_LOCATION},
    {IDC_LOCATION_LABEL, IDS_LOCATION_LABEL},
    {IDC_SPECIFY_LABEL, IDS_SPECIFY_LABEL},
    {IDC_PROMPT_FILE_NAME, IDS_PROMPT_FILE_NAME},
    {IDC_OUTPUT_HEADING, IDS_OUTPUT_HEADING},
    {IDC_HELP_OUTPUT, IDS_HELP_OUTPUT},
};

// Selections of the output-location item in the driver's tree.
constexpr LONG kToDocuments = 0;
constexpr LONG kToUserFolder = 1;

// The first of the plug-in's own items mirrors the choice; the driver need not pass any.
POPTITEM OutputLocationItem(const SheetState& sheet) {
    const POEMCUIPPARAM param = sheet.CurrentUIParam;
    return param && param->pOEMOptItems && param->cOEMOptItems > 0 ? param->pOEMOptItems : nullptr;
}

void EnableFolderControls(HWND page, bool enable) {
    EnableWindow(GetDlgItem(page, IDC_FOLDER), enable);
    EnableWindow(GetDlgItem(page, IDC_BROWSE), enable);
}

// Written at once; cancelling the sheet does not take it back.
void StoreDocumentsFolder(HWND page, const std::wstring& documents) {
    WriteStringSetting(kDefaultDir, documents);
    SetDlgItemTextW(page, IDC_FOLDER, L"");  // leaves the selection of a drop-down list as it is
}

// The mixed-case "No" is what is stored; readers do not mind the case.
void TakePromptChoice(SheetState& sheet, HWND page) {
    sheet.Pending.PromptFileName =
        IsDlgButtonChecked(page, IDC_PROMPT_FILE_NAME) == BST_CHECKED ? L"YES" : L"No";
}

void ShowPromptChoice(SheetState& sheet, HWND page) {
    std::wstring prompt;
    ReadStringSetting(kPromptFileName, prompt);
    const bool isNo = !IsPrefixOfYes(prompt) && IsPrefixOfNo(prompt);
    CheckDlgButton(page, IDC_PROMPT_FILE_NAME, isNo ? BST_UNCHECKED : BST_CHECKED);
    if (!isNo)
        WriteStringSetting(kPromptFileName, L"YES");
    TakePromptChoice(sheet, page);
}

// The stored folder counts only while it can be entered; the process deliberately stays in it.
bool EnterUserFolder(const std::wstring& folder, const std::wstring& documents) {
    const QuietDrives quiet;
    return folder != documents && _wchdir(folder.c_str()) == 0;
}

void ShowLocation(SheetState& sheet, HWND page) {
    EnableFolderControls(page, false);
    const std::wstring documents = DocumentsFolder();
    std::wstring folder;
    ReadStringSetting(kDefaultDir, folder);
    const bool own = EnterUserFolder(folder, documents);
    // The Tab key stops at the option that is checked, and at no other of the set.
    CheckRadioButton(page, IDC_SOURCE_LOCATION, IDC_DOCUMENTS_LOCATION,
                     own ? IDC_USER_LOCATION : IDC_DOCUMENTS_LOCATION);
    if (own)
        EnableFolderControls(page, true);
    else
        StoreDocumentsFolder(page, documents);
    ReadStringSetting(kDefaultDir, sheet.Pending.DefaultDir);
}

void ShowHistory(SheetState& sheet, HWND page) {
    std::wstring history;
    if (!ReadStringSetting(kPathDirs, history))
        return;
    sheet.Pending.PathDirs = history;
    const HWND list = GetDlgItem(page, IDC_FOLDER);
    for (const std::wstring& entry : HistoryEntries(history)) {
        const LRESULT index = SendMessageW(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry.c_str()));
        if (entry == sheet.Pending.DefaultDir)
            SendMessageW(list, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
    }
}

void OnInit(SheetState& sheet, HWND page) {
    if (!sheet.SheetPrimed)
        VisitAllTabs(sheet, GetParent(page));
    const ResModuleUse texts(g_hInstance);
    LocalisePageTitle(sheet, page, IDS_OUTPUT_PAGE_TITLE);
    LocaliseControls(sheet, page, kTexts);
    ShowPromptChoice(sheet, page);
    ShowLocation(sheet, page);
    ShowHistory(sheet, page);
}

void OnPromptClicked(SheetState& sheet, HWND page) {
    TakePromptChoice(sheet, page);
    EnableApply(GetParent(page));
}

void OnDocumentsLocation(SheetState& sheet, HWND page) {
    EnableFolderControls(page, false);
    const std::wstring documents = DocumentsFolder();
    StoreDocumentsFolder(page, documents);
    sheet.Pending.DefaultDir = documents;
    SelectOption(sheet, OutputLocationItem(sheet), kToDocuments);
    EnableApply(GetParent(page));
}

void OnSourceLocation(HWND page) {
    EnableFolderControls(page, false);
    EnableApply(GetParent(page));
}

void OnUserLocation(SheetState& sheet, HWND page) {
    EnableWindow(GetDlgItem(page, IDC_FOLDER), TRUE);
    std::wstring folder;
    if (ReadStringSetting(kDefaultDir, folder))
        ValidateOutputFolder(sheet, page, folder != DocumentsFolder() ? folder : std::wstring());
    EnableFolderControls(page, true);
    SelectOption(sheet, OutputLocationItem(sheet), kToUserFolder);
    EnableApply(GetParent(page));
}

// The Apply button stays as it is, unlike with every other choice; this is kept.
void OnBrowse(SheetState& sheet, HWND page) {
    std::wstring folder;
    BrowseForFolder(LoadText(sheet, IDS_BROWSE_TITLE).c_str(), page, folder);
    if (!folder.empty())
        ValidateOutputFolder(sheet, page, folder);
}

void OnFolderSelected(SheetState& sheet, HWND page) {
    wchar_t folder[MAX_PATH] = {};
    if (GetDlgItemTextW(page, IDC_FOLDER, folder, MAX_PATH) > 0)
        sheet.Pending.DefaultDir = folder;
    EnableApply(GetParent(page));
}

bool OnFolderNotification(SheetState& sheet, HWND page, UINT code) {
    if (code == CBN_SELCHANGE)
        OnFolderSelected(sheet, page);
    else if (code == CBN_EDITCHANGE)
        EnableApply(GetParent(page));
    else
        return false;
    return true;
}

bool OnCommand(SheetState& sheet, HWND page, int control, UINT code) {
    if (control == IDC_FOLDER)
        return OnFolderNotification(sheet, page, code);
    if (code != BN_CLICKED)
        return false;
    switch (control) {
        case IDC_PROMPT_FILE_NAME:
            OnPromptClicked(sheet, page);
            return true;
        case IDC_DOCUMENTS_LOCATION:
            OnDocumentsLocation(sheet, page);
            return true;
        case IDC_SOURCE_LOCATION:
            OnSourceLocation(page);
            return true;
        case IDC_USER_LOCATION:
            OnUserLocation(sheet, page);
            return true;
        case IDC_BROWSE:
            OnBrowse(sheet, page);
            return true;
        case IDC_HELP_OUTPUT:
            ShowHelp();
            return true;
        default:
            return false;
    }
}

INT_PTR OnMessage(SheetState& sheet, HWND page, UINT message, WPARAM wParam) {
    switch (message) {
        case WM_INITDIALOG:
            OnInit(sheet, page);
            return 0;  // the sheet keeps the keyboard focus where it is
        case WM_COMMAND:
            return OnCommand(sheet, page, LOWORD(wParam), HIWORD(wParam)) ? 1 : 0;
        default:
            return 0;
    }
}

}  // namespace

INT_PTR CALLBACK OutputLocationPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    return GuardCallback<INT_PTR>(L"OutputLocationPageProc", L"pages/output/OutputLocationPage", __LINE__, 0,
                                  [&]() -> INT_PTR {
                                      SheetState* const sheet = SheetOfPage(page, message, lParam);
                                      return sheet ? OnMessage(*sheet, page, message, wParam) : 0;
                                  });
}

}  // namespace kzp
