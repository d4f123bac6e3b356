#include "pages/advanced/CAdvancedDlg.h"

#include <commctrl.h>

#include <memory>
#include <vector>

#include "core/DebugTrace.h"
#include "core/Module.h"
#include "help/Help.h"
#include "help/ResourceModule.h"
#include "pages/ControlTexts.h"
#include "pages/DriverOptions.h"
#include "pages/SheetFrame.h"
#include "pages/advanced/FontList.h"
#include "resources/resource.h"
#include "settings/SettingsStore.h"

namespace kzp {

namespace {

// Where the driven items stand among the driver's. Nothing but the position tells them: what stands there is
// up to the core driver and its configuration.
constexpr DWORD kIntentPosition = 5;
constexpr DWORD kMethodPosition = 6;
constexpr DWORD kFontsPosition = 9;

constexpr UINT kIntentCount = 3;
constexpr UINT kMethodCount = 4;
constexpr int kFontColumnWidth = 322;  // pixels

// A new item state from here on counts as a change of a check box. 11 is how it is kept: a state with an
// image is 0x1000 or more, one without rarely above 3 (selected and focused).
constexpr UINT kFirstCheckState = 11;

// The first two methods stand in the driver's item the other way round; the same in both directions.
LONG SwapMethod(LONG method) {
    return method == 0 ? 1 : method == 1 ? 0 : method;
}

// A themed page is painted with the tab's texture, and the dialog within it otherwise would not be.
void TakeTabTexture(HWND dialog) {
    constexpr DWORD kEnableTab = 6;  // ETDT_ENABLETAB
    using EnableTexture = HRESULT(WINAPI*)(HWND, DWORD);
    const HMODULE themes = GetModuleHandleW(L"uxtheme.dll");
    const auto enable = themes ? reinterpret_cast<EnableTexture>(reinterpret_cast<void*>(
                                     GetProcAddress(themes, "EnableThemeDialogTexture")))
                               : nullptr;
    if (enable)
        (void)enable(dialog, kEnableTab);
}

std::vector<FontRecord> ReadFontList(size_t most) {
    // A stored list that is longer than the installed fonts is reset by the read itself. The buffer is never
    // null, for a null one asks for the size alone.
    std::vector<FontRecord> records(most + 1);
    auto bytes = static_cast<DWORD>(most * sizeof(FontRecord));
    if (!ReadBinarySetting(kFontList, records.data(), bytes))
        bytes = 0;
    records.resize(bytes / sizeof(FontRecord));
    return records;
}

}  // namespace

HWND CAdvancedDlg::Create(SheetState& sheet, HWND driverPage) {
    std::unique_ptr<CAdvancedDlg> dialog(new CAdvancedDlg(UseSheet(sheet)));
    return CreateDialogParamW(g_hInstance, MAKEINTRESOURCEW(IDD_ADVANCED), driverPage, Procedure,
                              reinterpret_cast<LPARAM>(&dialog));
}

CAdvancedDlg* CAdvancedDlg::Of(HWND window) {
    return reinterpret_cast<CAdvancedDlg*>(GetWindowLongPtrW(window, DWLP_USER));
}

INT_PTR CALLBACK CAdvancedDlg::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return GuardCallback<INT_PTR>(
        L"CAdvancedDlg::Procedure", L"pages/advanced/CAdvancedDlg", __LINE__, 0, [&]() -> INT_PTR {
            if (message == WM_INITDIALOG) {
                // From here on the window owns the object.
                auto* const created = reinterpret_cast<std::unique_ptr<CAdvancedDlg>*>(lParam)->release();
                created->m_window = window;
                SetWindowLongPtrW(window, DWLP_USER, reinterpret_cast<LONG_PTR>(created));
            }
            CAdvancedDlg* const dialog = Of(window);
            return dialog ? dialog->OnMessage(message, wParam, lParam) : 0;
        });
}

INT_PTR CAdvancedDlg::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG:
            OnInitDialog();
            return 0;  // the sheet keeps the keyboard focus where it is
        case WM_DESTROY:
            OnDestroy();
            return 1;
        case WM_NCDESTROY:
            SetWindowLongPtrW(m_window, DWLP_USER, 0);
            delete this;
            return 0;
        case WM_COMMAND:
            return OnCommand(LOWORD(wParam), HIWORD(wParam)) ? 1 : 0;
        case WM_NOTIFY: {
            const auto* const change = reinterpret_cast<const NMLISTVIEW*>(lParam);
            if (change->hdr.idFrom != IDC_FONT_LIST || change->hdr.code != LVN_ITEMCHANGED)
                return 0;
            // Where the dialog itself changes many entries, it enables Apply once, with the choice.
            if (change->uNewState >= kFirstCheckState && !m_fonts.IsChanging())
                EnableApply();
            return 1;
        }
        default:
            return 0;
    }
}

void CAdvancedDlg::OnInitDialog() {
    TakeTabTexture(m_window);
    SetPageTitle(Sheet().SettingsPageHandle, IDS_SETTINGS_PAGE_TITLE);
    SetPageTitle(Sheet().OutputPageHandle, IDS_OUTPUT_PAGE_TITLE);
    FillColourLists();
    FillFontList();
    // A dialog that could not be filled has no fonts to store.
    Sheet().FontsDialog = m_window;
}

void CAdvancedDlg::SetPageTitle(LONG_PTR page, UINT text) const {
    const PROPSHEETUI_INFO& info = Sheet().SheetInfo;
    const std::wstring title = LoadText(Sheet(), text);
    if (info.pfnComPropSheet && page != 0 && !title.empty())
        info.pfnComPropSheet(info.hComPropSheet, CPSFUNC_SET_PSUIPAGE_TITLEW, page,
                             reinterpret_cast<LPARAM>(title.c_str()));
}

// A text that is missing leaves an empty entry, for positions are selections.
void CAdvancedDlg::FillList(HWND list, UINT firstText, UINT count) const {
    const OEMCUIPPARAM* const param = Sheet().CurrentUIParam;
    const HMODULE module = param ? static_cast<HMODULE>(param->hModule) : g_hInstance;
    const ResModuleUse texts(module);
    for (UINT text = firstText; text < firstText + count; ++text)
        SendMessageW(list, CB_ADDSTRING, 0,
                     reinterpret_cast<LPARAM>(LoadText(Sheet(), text, module).c_str()));
}

POPTITEM CAdvancedDlg::ItemAt(DWORD position) const {
    return DriverItemAt(Sheet().CurrentUIParam, position);
}

void CAdvancedDlg::FillColourLists() {
    const HWND intents = GetDlgItem(m_window, IDC_ICM_INTENT);
    const HWND methods = GetDlgItem(m_window, IDC_ICM_METHOD);
    FillList(intents, IDS_ICM_INTENT_FIRST, kIntentCount);
    FillList(methods, IDS_ICM_METHOD_FIRST, kMethodCount);
    if (const OPTITEM* const intent = ItemAt(kIntentPosition))
        SendMessageW(intents, CB_SETCURSEL, static_cast<WPARAM>(intent->Sel), 0);
    if (const OPTITEM* const method = ItemAt(kMethodPosition))
        SendMessageW(methods, CB_SETCURSEL, static_cast<WPARAM>(SwapMethod(method->Sel)), 0);
}

void CAdvancedDlg::FillFontList() {
    m_fonts.Attach(GetDlgItem(m_window, IDC_FONT_LIST), kFontColumnWidth);
    const HDC device = GetDC(m_fonts.Window());
    m_fonts.Add(InstalledFontFamilies(device));
    ReleaseDC(m_fonts.Window(), device);

    std::vector<std::wstring> listed(static_cast<size_t>(m_fonts.Count()));
    for (size_t index = 0; index < listed.size(); ++index)
        listed[index] = m_fonts.Text(static_cast<int>(index));
    const std::vector<FontRecord> stored = ReadFontList(listed.size());

    // The choice is made as if the user had clicked it: the driver's item and the Apply button follow already
    // now.
    const OPTITEM* const item = ItemAt(kFontsPosition);
    const FontChoice choice = ChooseFonts(item ? item->Sel : kAllFonts, stored.size(), listed.size());
    CheckRadioButton(m_window, IDC_FONTS_ALL, IDC_FONTS_SELECT, IDC_FONTS_ALL + choice);
    TakeChoice(choice);

    const NameIndex index(listed);
    const CCheckListViewCtrl::ManyChanges changes(m_fonts);
    for (const FontRecord& record : stored) {
        if (const int found = index.Find(FaceNameOf(record)); found >= 0)
            m_fonts.Check(found);
    }
}

// The page that is activated next gets a dialog again.
void CAdvancedDlg::OnDestroy() {
    Sheet().SheetPrimed = false;
    if (Sheet().FontsDialog == m_window)
        Sheet().FontsDialog = nullptr;
}

bool CAdvancedDlg::OnCommand(int control, UINT code) {
    const bool isList = control == IDC_ICM_INTENT || control == IDC_ICM_METHOD;
    if (code != (isList ? CBN_SELCHANGE : BN_CLICKED))
        return false;
    switch (control) {
        case IDC_FONTS_ALL:
            TakeChoice(kAllFonts);
            return true;
        case IDC_FONTS_NONE:
            TakeChoice(kNoFonts);
            return true;
        case IDC_FONTS_SELECT:
            TakeChoice(kSelectedFonts);
            return true;
        case IDC_ICM_INTENT:
            OnIntentChosen();
            return true;
        case IDC_ICM_METHOD:
            OnMethodChosen();
            return true;
        case IDC_HELP_ADVANCED:
            ShowHelp();
            return true;
        default:
            return false;
    }
}

// Only "Select fonts" leaves the check marks as they are, and lets the user at them.
void CAdvancedDlg::TakeChoice(FontChoice choice) {
    EnableWindow(m_fonts.Window(), choice == kSelectedFonts);
    if (choice != kSelectedFonts)
        m_fonts.CheckAll(choice == kAllFonts);
    SelectOption(Sheet(), ItemAt(kFontsPosition), choice);
    EnableApply();
}

void CAdvancedDlg::OnIntentChosen() {
    SelectOption(Sheet(), ItemAt(kIntentPosition), Selection(IDC_ICM_INTENT));
    EnableApply();
}

void CAdvancedDlg::OnMethodChosen() {
    SelectOption(Sheet(), ItemAt(kMethodPosition), SwapMethod(Selection(IDC_ICM_METHOD)));
    EnableApply();
}

LONG CAdvancedDlg::Selection(int list) const {
    return static_cast<LONG>(SendDlgItemMessageW(m_window, list, CB_GETCURSEL, 0, 0));
}

void CAdvancedDlg::EnableApply() const {
    kzp::EnableApply(GetParent(GetParent(m_window)));
}

void CAdvancedDlg::SaveFontList() const {
    std::vector<FontRecord> records;
    const int count = m_fonts.Count();
    for (int index = 0; index < count; ++index) {
        if (m_fonts.IsChecked(index))
            records.push_back(MakeFontRecord(m_fonts.Text(index)));
    }
    WriteBinarySetting(kFontList, records.data(), static_cast<DWORD>(records.size() * sizeof(FontRecord)));
}

void SaveFontList(const SheetState& sheet) {
    if (const CAdvancedDlg* const dialog = CAdvancedDlg::Of(sheet.FontsDialog))
        dialog->SaveFontList();
}

}  // namespace kzp
