// What the sheet answers to a plug-in that adds, names and orders its pages.
#include <algorithm>
#include <atomic>
#include <cstring>

#include "tools/driverhost/HostSheet.h"
#include "tools/driverhost/Text.h"

#include <commctrl.h>

namespace driverhost {

thread_local std::vector<HostSheet*> t_sheets;

// Handles of groups and pages are no addresses: to whoever takes one for a pointer it is a fault.
LONG_PTR HostSheet::NewHandle() {
    static std::atomic<LONG_PTR> last = 0x451;
    return last += 2;
}

LONG_PTR CALLBACK HostSheet::SheetFunction(HANDLE group, UINT function, LPARAM lParam1, LPARAM lParam2) {
    const auto sheet = std::ranges::find_if(
        t_sheets, [&](HostSheet* open) { return open->m_info[0].hComPropSheet == group; });
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
        case CPSFUNC_ADD_PROPSHEETPAGEW: {
            if (!lParam1)
                return ERR_CPSUI_INVALID_LPARAM;
            const LONG_PTR handle = AddPage(*reinterpret_cast<const PROPSHEETPAGEW*>(lParam1));
            Note(Format(L"sheet: page %d added", IndexOf(handle) + 1));
            return handle;
        }
        case CPSFUNC_SET_HSTARTPAGE: {
            const bool known = SetStartPage(lParam1, lParam2);
            Note(known ? Format(L"sheet: page %d starts", m_startPage + 1)
                       : std::wstring(L"sheet: start page refused"));
            return known ? 1 : ERR_CPSUI_INVALID_LPARAM;
        }
        case CPSFUNC_GET_PAGECOUNT:
            return static_cast<LONG_PTR>(m_pages.size() - m_driverPages);
        case CPSFUNC_SET_RESULT:
            return SetResult(lParam2);
        case CPSFUNC_SET_PSUIPAGE_TITLEW:
            return SetTitle(lParam1, reinterpret_cast<PCWSTR>(lParam2)) ? 1 : ERR_CPSUI_INVALID_LPARAM;
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
    return own.handle;
}

int HostSheet::IndexOf(LPARAM handle) const {
    const auto page = std::find_if(m_pages.begin() + static_cast<std::ptrdiff_t>(m_driverPages),
                                   m_pages.end(), [&](const Page& own) { return own.handle == handle; });
    return page == m_pages.end() ? -1 : static_cast<int>(page - m_pages.begin());
}

// By handle; without one by position in the group.
bool HostSheet::SetStartPage(LPARAM handle, LPARAM otherwise) {
    const LPARAM index = handle ? IndexOf(handle) : static_cast<LPARAM>(m_driverPages) + otherwise;
    if (index < static_cast<LPARAM>(m_driverPages) || static_cast<size_t>(index) >= m_pages.size())
        return false;
    m_startPage = static_cast<int>(index);
    return true;
}

bool HostSheet::SetTitle(LPARAM handle, PCWSTR title) {
    const int index = IndexOf(handle);
    if (index < 0 || !title)
        return false;
    Page& page = m_pages[static_cast<size_t>(index)];
    page.title = title;
    Note(Format(L"sheet: page %d is titled \"%ls\"", index + 1, title));
    if (const HWND tabs = Tabs()) {
        TCITEMW item = {};
        item.mask = TCIF_TEXT;
        item.pszText = page.title.data();
        SendMessageW(tabs, TCM_SETITEMW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
    }
    return true;
}

// Whoever sets a result speaks for the sheet; the plug-in may change it on the way up.
LONG_PTR HostSheet::SetResult(LPARAM result) {
    SETRESULT_INFO info = {};
    info.cbSize = sizeof info;
    info.hSetResult = m_info[0].hComPropSheet;
    info.Result = result;
    const HRESULT told = TellPlugIn(PROPSHEETUI_REASON_SET_RESULT, reinterpret_cast<LPARAM>(&info));
    if (FAILED(told))
        return ERR_CPSUI_INTERNAL_ERROR;
    if (told == S_FALSE)
        m_info[0].Result = static_cast<ULONG_PTR>(result);
    m_setResults.push_back(m_info[0].Result);
    m_result = static_cast<LONG>(m_info[0].Result);
    return 1;
}

}  // namespace driverhost
