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

// One event of the driver's page told to the plug-in's callback, and its CPSUICB_ACTION_* answer.
struct CallbackCall {
    WORD reason;
    LONG answer;
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
    int PageCount() const;
    int CurrentPage() const;           // -1 without a sheet
    HWND PageWindow(int index) const;  // null while the page was not created
    std::wstring TabText(int index) const;
    int DriverPageIndex() const { return m_options.extraFirstPage ? 1 : 0; }

    // What happened, for reports and tests.
    int StartPage() const { return m_startPage; }  // index the sheet opened on
    const std::vector<CallbackCall>& Callbacks() const { return m_callbacks; }
    const std::vector<std::wstring>& Events() const { return m_events; }
    const std::vector<ULONG_PTR>& SetResults() const { return m_setResults; }  // the plug-in's answers
    int Applied() const { return m_applied; }
    int Refused() const { return m_refused; }
    std::function<void(const std::wstring&)> onEvent;
    void Note(const std::wstring& event);

    // For the driver's page (DriverPage.cpp).
    LONG TellCallback(WORD reason, HWND page, POPTITEM current = nullptr, LONG oldSelection = 0);
    bool Apply(HWND page);  // false: the plug-in refused
    void RefreshTree();
    HWND treeView = nullptr;

  private:
    struct Page {
        PROPSHEETPAGEW page;
        LONG_PTR handle;  // the plug-in's name for it, which is no address
        std::wstring title;
    };
    static LONG_PTR CALLBACK SheetFunction(HANDLE sheet, UINT function, LPARAM lParam1, LPARAM lParam2);
    static int CALLBACK SheetCallback(HWND window, UINT message, LPARAM lParam);
    LONG_PTR Answer(UINT function, LPARAM lParam1, LPARAM lParam2);
    static LONG_PTR NewHandle();
    LONG_PTR AddPage(const PROPSHEETPAGEW& page);
    bool SetStartPage(LPARAM handle, LPARAM otherwise);
    bool SetTitle(LPARAM handle, PCWSTR title);
    LONG_PTR SetResult(LPARAM result);
    int IndexOf(LPARAM handle) const;                // -1 for a handle that is not the group's
    HRESULT TellPlugIn(WORD reason, LPARAM lParam);  // S_FALSE when it has no group in this sheet
    void AddDriverPages();
    std::vector<HPROPSHEETPAGE> CreatePages();
    void PlaceBesideOwner();

    DocumentSession& m_session;
    SheetOptions m_options;
    SessionVector<PROPSHEETUI_INFO> m_info{1};
    std::vector<Page> m_pages;
    bool m_hasGroup = true;
    size_t m_driverPages = 0;  // in front of the plug-in's group
    HWND m_owner = nullptr;
    HWND m_window = nullptr;
    int m_startPage = 0;
    LONG m_result = CPSUI_CANCEL;
    int m_applied = 0;
    int m_refused = 0;
    std::vector<CallbackCall> m_callbacks;
    std::vector<std::wstring> m_events;
    std::vector<ULONG_PTR> m_setResults;
};

}  // namespace driverhost
