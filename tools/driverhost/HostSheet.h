// The property sheet of a session: a real one of the platform's common controls, with the driver's own pages
// in front and behind them the group of those that the plug-in adds through the sheet function.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <windows.h>

#include <prsht.h>

#include "tools/driverhost/DocumentSession.h"

namespace driverhost {

struct SheetOptions {
    bool applyButton = true;
    bool extraFirstPage = false;  // one more page of the driver in front: four tabs
};

// The thread's sheets that were made and not yet destroyed.
extern thread_local std::vector<class HostSheet*> t_sheets;

class HostSheet {
  public:
    explicit HostSheet(DocumentSession& session, SheetOptions options = {});
    ~HostSheet();
    HostSheet(const HostSheet&) = delete;
    HostSheet& operator=(const HostSheet&) = delete;

    // Shows the sheet until it is closed: CPSUI_OK or CPSUI_CANCEL. The owner should be a visible window with
    // the focus, or synthesised key presses do not reach the sheet. HostError when the sheet cannot be made.
    LONG Show(HWND owner);

    DocumentSession& Session() { return m_session; }

    // The open sheet; null and 0 otherwise.
    HWND Window() const { return m_window; }
    HWND Tabs() const;
    int PageCount() const { return static_cast<int>(m_pages.size()); }
    int CurrentPage() const;           // -1 without a sheet
    HWND PageWindow(int index) const;  // null while the page was not created
    std::wstring TabText(int index) const;
    int DriverPageIndex() const { return m_options.extraFirstPage ? 1 : 0; }

    // What happened, for reports and tests.
    const std::vector<LONG>& Answers() const { return m_answers; }  // CPSUICB_ACTION_*, to each APPLYNOW
    int Refused() const;
    int Applied() const { return static_cast<int>(m_answers.size()) - Refused(); }
    std::function<void(const std::wstring&)> onEvent;
    void Note(const std::wstring& event) const;

    // For the driver's page.
    LONG TellCallback(WORD reason, HWND page) const;
    bool Apply(HWND page);  // false: the plug-in refused

  private:
    struct Page {
        PROPSHEETPAGEW page;
        LONG_PTR handle;  // the plug-in's name for it, which is no address
        std::wstring title;
    };
    static LONG_PTR CALLBACK SheetFunction(HANDLE sheet, UINT function, LPARAM lParam1, LPARAM lParam2);
    static int CALLBACK SheetCallback(HWND window, UINT message, LPARAM lParam);
    LONG_PTR Answer(UINT function, LPARAM lParam1, LPARAM lParam2);
    LONG_PTR AddPage(const PROPSHEETPAGEW& page);
    bool SetStartPage(int index);
    bool SetTitle(int index, PCWSTR title);
    LONG_PTR SetResult(LPARAM result);
    int IndexOf(LPARAM handle) const;                // -1 for a handle that is not the group's
    HRESULT TellPlugIn(WORD reason, LPARAM lParam);  // S_FALSE when it has no group in this sheet
    std::vector<HPROPSHEETPAGE> CreatePages();

    DocumentSession& m_session;
    SheetOptions m_options;
    SessionVector<PROPSHEETUI_INFO> m_info{1};
    std::vector<Page> m_pages;
    bool m_hasGroup = true;
    HWND m_window = nullptr;
    int m_startPage = 0;
    LONG m_result = CPSUI_CANCEL;
    std::vector<LONG> m_answers;
};

// The session's items as a list that follows them, looking for changes four times a second: a child of
// `parent`, or a window of its own without one. It has to go before the session.
HWND CreateItemList(DocumentSession& session, HWND parent, const RECT& place);

// The page of the driver's features, or one more page ("Layout") for drivers that show two.
PROPSHEETPAGEW DriverPage(HostSheet& sheet, bool isFeatures);

}  // namespace driverhost
