#include "tools/driverhost/HostSheet.h"

#include <commctrl.h>

#include <algorithm>

#include "tools/driverhost/KeyQueue.h"
#include "tools/driverhost/Text.h"

namespace driverhost {

namespace {

// The sheet's own callback gets no parameter of ours; on one thread, one sheet opens at a time.
thread_local HostSheet* t_opening = nullptr;

// Both windows are to be seen; a narrow screen keeps the platform's place.
void PlaceBesideOwner(HWND sheet) {
    RECT owner = {};
    RECT place = {};
    if (GetWindowRect(GetWindow(sheet, GW_OWNER), &owner) && GetWindowRect(sheet, &place) &&
        owner.right + (place.right - place.left) <= GetSystemMetrics(SM_CXSCREEN))
        SetWindowPos(sheet, nullptr, owner.right + 8, owner.top, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace

HostSheet::~HostSheet() {
    std::erase(t_sheets, this);
    m_session.Helper().onAnnouncement = nullptr;
}

void HostSheet::Note(const std::wstring& event) const {
    if (onEvent)
        onEvent(event);
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
    m_session.PresentItems();
    if (m_options.extraFirstPage)
        AddPage(DriverPage(*this, false));
    AddPage(DriverPage(*this, true));
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
        throw LastError(L"the property sheet cannot be shown");
    Note(Format(L"sheet: closed with %ls", m_result == CPSUI_CANCEL ? L"Cancel" : L"OK"));
    return m_result;
}

int CALLBACK HostSheet::SheetCallback(HWND window, UINT message, LPARAM) {
    if (message == PSCB_INITIALIZED && t_opening) {
        t_opening->m_window = window;
        t_opening = nullptr;
        PlaceBesideOwner(window);
    }
    return 0;
}

HWND HostSheet::Tabs() const {
    return reinterpret_cast<HWND>(SendMessageW(m_window, PSM_GETTABCONTROL, 0, 0));
}

int HostSheet::CurrentPage() const {
    return m_window ? static_cast<int>(SendMessageW(Tabs(), TCM_GETCURSEL, 0, 0)) : -1;
}

HWND HostSheet::PageWindow(int index) const {
    return reinterpret_cast<HWND>(SendMessageW(m_window, PSM_INDEXTOHWND, static_cast<WPARAM>(index), 0));
}

std::wstring HostSheet::TabText(int index) const {
    wchar_t text[128] = {};
    TCITEMW item = {.mask = TCIF_TEXT, .pszText = text, .cchTextMax = 128};
    SendMessageW(Tabs(), TCM_GETITEMW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
    return item.pszText;
}

int HostSheet::Refused() const {
    return static_cast<int>(std::ranges::count(m_answers, LONG{CPSUICB_ACTION_NO_APPLY_EXIT}));
}

LONG HostSheet::TellCallback(WORD reason, HWND page) const {
    const LONG answer = m_session.TellCallback(reason, page);
    Note(Format(L"callback: %ls answered %ld",
                reason == CPSUICB_REASON_APPLYNOW    ? L"APPLYNOW"
                : reason == CPSUICB_REASON_SETACTIVE ? L"SETACTIVE"
                                                     : L"KILLACTIVE",
                answer));
    return answer;
}

// The driver's page decides over OK and Apply, as the plug-in's callback answers.
bool HostSheet::Apply(HWND page) {
    m_answers.push_back(TellCallback(CPSUICB_REASON_APPLYNOW, page));
    if (m_answers.back() == CPSUICB_ACTION_NO_APPLY_EXIT)
        return false;
    for (DWORD index = 0; index < m_session.Tree().Count(); ++index)
        m_session.Tree().Items()[index].Flags &= ~static_cast<DWORD>(OPTIF_CHANGED);
    if (const DWORD error = m_session.Accept())
        Note(Format(L"driver: the device mode cannot be stored: error %lu", error));
    SetResult(CPSUI_OK);
    return true;
}

}  // namespace driverhost
