// What the sheet answers to a plug-in that adds, names and orders its pages.
#include <algorithm>
#include <atomic>
#include <cstring>

#include "tools/driverhost/HostSheet.h"
#include "tools/driverhost/Text.h"

#include <commctrl.h>

namespace driverhost {

thread_local std::vector<HostSheet*> t_sheets;

namespace {

// Handles of groups and pages are no addresses: to whoever takes one for a pointer it is a fault.
LONG_PTR NewHandle() {
    static std::atomic<LONG_PTR> last = 0x451;
    return last += 2;
}

}  // namespace

HostSheet::HostSheet(DocumentSession& session, SheetOptions options)
    : m_session(session), m_options(options) {
    m_info[0] = {.cbSize = sizeof(PROPSHEETUI_INFO),
                 .Version = PROPSHEETUI_INFO_VERSION,
                 .Flags = PSUIINFO_UNICODE,
                 .hComPropSheet = reinterpret_cast<HANDLE>(NewHandle()),
                 .pfnComPropSheet = SheetFunction,
                 .lParamInit = reinterpret_cast<LPARAM>(&session.SheetParam())};
    t_sheets.push_back(this);
    session.Helper().onAnnouncement = [this](const Announcement& call) { Note(Describe(call)); };
}

LONG_PTR CALLBACK HostSheet::SheetFunction(HANDLE group, UINT function, LPARAM lParam1, LPARAM lParam2) {
    const auto sheet = std::ranges::find(t_sheets, group,
                                         [](const HostSheet* open) { return open->m_info[0].hComPropSheet; });
    if (sheet == t_sheets.end())
        return ERR_CPSUI_INVALID_LPARAM;
    try {
        return (*sheet)->Answer(function, lParam1, lParam2);
    } catch (...) {
        return ERR_CPSUI_ALLOCMEM_FAILED;
    }
}

LONG_PTR HostSheet::Answer(UINT function, LPARAM lParam1, LPARAM lParam2) {
    switch (function) {
        case CPSFUNC_ADD_PROPSHEETPAGEW:
            return lParam1 ? AddPage(*reinterpret_cast<const PROPSHEETPAGEW*>(lParam1))
                           : ERR_CPSUI_INVALID_LPARAM;
        case CPSFUNC_SET_HSTARTPAGE:  // by handle; without one by position in the group
            return SetStartPage(lParam1 ? IndexOf(lParam1)
                                        : DriverPageIndex() + 1 + static_cast<int>(lParam2))
                       ? 1
                       : ERR_CPSUI_INVALID_LPARAM;
        case CPSFUNC_SET_RESULT:
            return SetResult(lParam2);
        case CPSFUNC_SET_PSUIPAGE_TITLEW:
            return SetTitle(IndexOf(lParam1), reinterpret_cast<PCWSTR>(lParam2)) ? 1
                                                                                 : ERR_CPSUI_INVALID_LPARAM;
        default:
            Note(Format(L"sheet: function %u is not supported", function));
            return ERR_CPSUI_FUNCTION_NOT_IMPLEMENTED;
    }
}

// Pages are kept as given until the sheet opens.
LONG_PTR HostSheet::AddPage(const PROPSHEETPAGEW& page) {
    if (m_window || m_pages.size() >= MAXPROPPAGES)
        return ERR_CPSUI_TOO_MANY_PROPSHEETPAGES;
    Page& own = m_pages.emplace_back();
    std::memcpy(&own.page, &page, std::min<size_t>(page.dwSize, sizeof own.page));
    own.page.dwSize = sizeof own.page;
    own.handle = NewHandle();
    Note(Format(L"sheet: page %d added", PageCount()));
    return own.handle;
}

// The group begins behind the driver's own pages.
int HostSheet::IndexOf(LPARAM handle) const {
    const auto page = std::ranges::find(m_pages, handle, &Page::handle);
    const auto index = static_cast<int>(page - m_pages.begin());
    return page == m_pages.end() || index <= DriverPageIndex() ? -1 : index;
}

bool HostSheet::SetStartPage(int index) {
    const bool known = index > DriverPageIndex() && index < PageCount();
    if (known)
        m_startPage = index;
    Note(known ? Format(L"sheet: page %d starts", index + 1) : L"sheet: start page refused");
    return known;
}

bool HostSheet::SetTitle(int index, PCWSTR title) {
    if (index < 0 || !title)
        return false;
    Page& page = m_pages[static_cast<size_t>(index)];
    page.title = title;
    Note(Format(L"sheet: page %d is titled \"%ls\"", index + 1, title));
    TCITEMW item = {.mask = TCIF_TEXT, .pszText = page.title.data()};
    SendMessageW(Tabs(), TCM_SETITEMW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
    return true;
}

// Whoever sets a result speaks for the sheet; the plug-in may change it on the way up.
LONG_PTR HostSheet::SetResult(LPARAM result) {
    SETRESULT_INFO info = {.cbSize = sizeof info,
                           .hSetResult = m_info[0].hComPropSheet,
                           .Result = static_cast<LONG_PTR>(result)};
    const HRESULT told = TellPlugIn(PROPSHEETUI_REASON_SET_RESULT, reinterpret_cast<LPARAM>(&info));
    if (FAILED(told))
        return ERR_CPSUI_INTERNAL_ERROR;
    m_result = static_cast<LONG>(told == S_FALSE ? static_cast<ULONG_PTR>(result) : m_info[0].Result);
    return 1;
}

}  // namespace driverhost
