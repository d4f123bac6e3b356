#include "tools/driverhost/HostSheet.h"

#include <commctrl.h>

#include "tools/driverhost/DriverPage.h"
#include "tools/driverhost/KeyQueue.h"
#include "tools/driverhost/Text.h"

namespace driverhost {

namespace {

const wchar_t* ReasonName(WORD reason) {
    switch (reason) {
        case CPSUICB_REASON_SEL_CHANGED:
            return L"SEL_CHANGED";
        case CPSUICB_REASON_APPLYNOW:
            return L"APPLYNOW";
        case CPSUICB_REASON_SETACTIVE:
            return L"SETACTIVE";
        case CPSUICB_REASON_KILLACTIVE:
            return L"KILLACTIVE";
        default:
            return L"?";
    }
}

// The sheet's own callback gets no parameter of ours; on one thread, one sheet opens at a time.
thread_local HostSheet* t_opening = nullptr;

}  // namespace

HostSheet::HostSheet(DocumentSession& session, SheetOptions options)
    : m_session(session), m_options(options) {
    PROPSHEETUI_INFO& info = m_info[0];
    info.cbSize = sizeof info;
    info.Version = PROPSHEETUI_INFO_VERSION;
    info.Flags = PSUIINFO_UNICODE;
    info.hComPropSheet = reinterpret_cast<HANDLE>(NewHandle());
    info.pfnComPropSheet = SheetFunction;
    info.lParamInit = reinterpret_cast<LPARAM>(&session.SheetParam());
    t_sheets.push_back(this);
    session.Helper().onAnnouncement = [this](const Announcement& call) { Note(Describe(call)); };
}

HostSheet::~HostSheet() {
    std::erase(t_sheets, this);
    m_session.Helper().onAnnouncement = nullptr;
}

void HostSheet::Note(const std::wstring& event) {
    m_events.push_back(event);
    if (onEvent)
        onEvent(event);
}

void HostSheet::AddDriverPages() {
    if (m_options.extraFirstPage)
        AddPage(ExtraPage(*this));
    AddPage(DriverPage(*this));
    m_driverPages = m_pages.size();
}

HRESULT HostSheet::TellPlugIn(WORD reason, LPARAM lParam) {
    if (!m_hasGroup)
        return S_FALSE;
    PROPSHEETUI_INFO& info = m_info[0];
    info.Reason = reason;
    info.Result = 0;
    return m_session.Mode() == OEMCUIP_DOCPROP ? m_session.Object()->DocumentPropertySheets(&info, lParam)
                                               : m_session.Object()->DevicePropertySheets(&info, lParam);
}

std::vector<HPROPSHEETPAGE> HostSheet::CreatePages() {
    std::vector<HPROPSHEETPAGE> pages;
    for (Page& page : m_pages) {
        if (!page.title.empty()) {
            page.page.dwFlags |= PSP_USETITLE;
            page.page.pszTitle = page.title.c_str();
        }
        pages.push_back(CreatePropertySheetPageW(&page.page));
        if (!pages.back())
            throw HostError{L"a page of the sheet cannot be created"};
    }
    return pages;
}

LONG HostSheet::Show(HWND owner) {
    m_owner = owner;
    m_session.PresentItems();
    AddDriverPages();
    const HRESULT added = TellPlugIn(PROPSHEETUI_REASON_INIT, m_info[0].lParamInit);
    Note(Format(L"plug-in: INIT answers 0x%08lX, result %ld", added, static_cast<LONG>(m_info[0].Result)));
    m_hasGroup = SUCCEEDED(added);
    // Title and buttons are asked of the sheet's root, which is the driver itself.
    const std::wstring title =
        m_session.PrinterName() +
        (m_session.Mode() == OEMCUIP_DOCPROP ? L" Document Properties" : L" Properties");
    std::vector<HPROPSHEETPAGE> pages = CreatePages();
    PROPSHEETHEADERW header = {};
    header.dwSize = sizeof header;
    header.dwFlags = PSH_USECALLBACK | PSH_NOCONTEXTHELP | (m_options.applyButton ? 0 : PSH_NOAPPLYNOW);
    header.hwndParent = owner;
    header.hInstance = GetModuleHandleW(nullptr);
    header.pszCaption = title.c_str();
    header.nPages = static_cast<UINT>(pages.size());
    header.nStartPage = static_cast<UINT>(m_startPage);
    header.phpage = pages.data();
    header.pfnCallback = SheetCallback;

    m_result = CPSUI_CANCEL;
    t_opening = this;
    const KeyQueue keys;
    const INT_PTR closed = PropertySheetW(&header);
    t_opening = nullptr;
    m_window = nullptr;
    TellPlugIn(PROPSHEETUI_REASON_DESTROY, 0);
    if (closed < 0)
        throw HostError{
            Format(L"the property sheet cannot be shown: %ls", Win32Error(GetLastError()).c_str())};
    Note(Format(L"sheet: closed with %ls", m_result == CPSUI_CANCEL ? L"Cancel" : L"OK"));
    return m_result;
}

int CALLBACK HostSheet::SheetCallback(HWND window, UINT message, LPARAM) {
    if (message != PSCB_INITIALIZED || !t_opening)
        return 0;
    HostSheet& self = *t_opening;
    self.m_window = window;
    t_opening = nullptr;
    self.PlaceBesideOwner();
    return 0;
}

// Both windows are to be seen; a narrow screen keeps the platform's place.
void HostSheet::PlaceBesideOwner() {
    RECT owner = {};
    RECT sheet = {};
    if (!m_owner || !GetWindowRect(m_owner, &owner) || !GetWindowRect(m_window, &sheet))
        return;
    if (owner.right + (sheet.right - sheet.left) <= GetSystemMetrics(SM_CXSCREEN))
        SetWindowPos(m_window, nullptr, owner.right + 8, owner.top, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

HWND HostSheet::Tabs() const {
    return m_window ? reinterpret_cast<HWND>(SendMessageW(m_window, PSM_GETTABCONTROL, 0, 0)) : nullptr;
}

int HostSheet::PageCount() const {
    return static_cast<int>(m_pages.size());
}

int HostSheet::CurrentPage() const {
    const HWND tabs = Tabs();
    return tabs ? static_cast<int>(SendMessageW(tabs, TCM_GETCURSEL, 0, 0)) : -1;
}

HWND HostSheet::PageWindow(int index) const {
    return m_window ? reinterpret_cast<HWND>(
                          SendMessageW(m_window, PSM_INDEXTOHWND, static_cast<WPARAM>(index), 0))
                    : nullptr;
}

std::wstring HostSheet::TabText(int index) const {
    wchar_t text[128] = {};
    TCITEMW item = {};
    item.mask = TCIF_TEXT;
    item.pszText = text;
    item.cchTextMax = 128;
    if (const HWND tabs = Tabs())
        SendMessageW(tabs, TCM_GETITEMW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
    return item.pszText;
}

LONG HostSheet::TellCallback(WORD reason, HWND page, POPTITEM current, LONG oldSelection) {
    const LONG answer = m_session.TellCallback(reason, page, current, oldSelection);
    m_callbacks.push_back({reason, answer});
    Note(Format(L"callback: %ls answered %ld", ReasonName(reason), answer));
    return answer;
}

// The driver's page decides over OK and Apply, as the plug-in's callback answers.
bool HostSheet::Apply(HWND page) {
    const LONG answer = TellCallback(CPSUICB_REASON_APPLYNOW, page);
    if (answer == CPSUICB_ACTION_NO_APPLY_EXIT) {
        ++m_refused;
        return false;
    }
    ++m_applied;
    for (DWORD index = 0; index < m_session.Tree().Count(); ++index)
        m_session.Tree().Items()[index].Flags &= ~static_cast<DWORD>(OPTIF_CHANGED);
    if (answer == CPSUICB_ACTION_OPTIF_CHANGED || answer == CPSUICB_ACTION_REINIT_ITEMS)
        RefreshTree();
    if (const DWORD error = m_session.Accept())
        Note(Format(L"driver: the device mode cannot be stored: %ls", Win32Error(error).c_str()));
    SetResult(CPSUI_OK);
    return true;
}

}  // namespace driverhost
