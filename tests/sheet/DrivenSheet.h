// A document's sheet driven by hand: the plug-in's entry points one by one, in the order that a test wants,
// as drivers of other habits call them. What the driver frees becomes inaccessible, so that a plug-in that
// still looks there crashes.
#pragma once

#include <optional>

#include "resources/resource.h"
#include "tools/driverhost/DocumentSession.h"

namespace kzp::test {

// What drivers may do, each with one sheet at a time and with several.
struct DriverHabits {
    bool objectForEachCall = false;  // else one for the sheet
    bool namesInitParam = true;      // PROPSHEETUI_INFO.lParamInit
    bool otherBlockAtFirst = false;  // the first CommonUIProp's, freed before the second
    bool destroysBeforeWindows = false;
};

class DrivenSheet {
  public:
    explicit DrivenSheet(const driverhost::PlugIn& plugIn, DriverHabits habits = {})
        : m_plugIn(plugIn), m_habits(habits) {
        session.emplace(plugIn, driverhost::SessionOptions{.plugInItem = true});
    }
    ~DrivenSheet() { Close(); }
    DrivenSheet(const DrivenSheet&) = delete;
    DrivenSheet& operator=(const DrivenSheet&) = delete;

    void Present(DWORD mode = OEMCUIP_DOCPROP) {
        OEMCUIPPARAM& param = session->UIParam();
        if (m_habits.otherBlockAtFirst)
            Object()->CommonUIProp(mode, driverhost::SessionVector<OEMCUIPPARAM>{param}.data());
        else
            Object()->CommonUIProp(mode, &param);
        param.pDrvOptItems = session->Tree().Items();
        param.cDrvOptItems = session->Tree().Count();
        param.pOEMOptItems = session->PlugInTree().Items();
        param.cOEMOptItems = session->PlugInTree().Count();
        Object()->CommonUIProp(mode, &param);
    }

    void AddPages() {
        PROPSHEETUI_INFO& info = m_info[0];
        info.cbSize = sizeof info;
        info.Version = PROPSHEETUI_INFO_VERSION;
        info.hComPropSheet = this;
        info.pfnComPropSheet = [](HANDLE sheet, UINT function, LPARAM first, LPARAM) -> LONG_PTR {
            auto& added = static_cast<DrivenSheet*>(sheet)->m_added;
            if (function == CPSFUNC_ADD_PROPSHEETPAGEW)
                added.push_back(*reinterpret_cast<const PROPSHEETPAGEW*>(first));
            return static_cast<LONG_PTR>(added.size());
        };
        if (m_habits.namesInitParam)
            info.lParamInit = reinterpret_cast<LPARAM>(&session->SheetParam());
        TellPages(PROPSHEETUI_REASON_INIT);
    }

    // Windows of this thread: a frame with Apply, the driver's page, activated, and the plug-in's two.
    void Show() {
        const auto create = [](PCWSTR name, DWORD style, int height, HWND parent, INT_PTR id) {
            return CreateWindowExW(0, name, L"", style, 0, 0, 480, height, parent,
                                   reinterpret_cast<HMENU>(id), nullptr, nullptr);
        };
        m_frame = create(L"STATIC", WS_OVERLAPPEDWINDOW, 420, nullptr, 0);
        create(L"BUTTON", WS_CHILD | WS_VISIBLE, 24, m_frame, IDC_SHEET_APPLY);
        driverPage = create(L"STATIC", WS_CHILD, 350, m_frame, 0);
        Tell(CPSUICB_REASON_SETACTIVE);
        for (const PROPSHEETPAGEW& page : m_added)
            pages.push_back(CreateDialogParamW(page.hInstance, page.pszTemplate, m_frame, page.pfnDlgProc,
                                               reinterpret_cast<LPARAM>(&page)));
    }

    LONG Tell(WORD reason) { return session->TellCallback(reason, driverPage); }

    // As the driver ends a sheet; one without pages ends without a word.
    void Close() {
        if (!m_habits.destroysBeforeWindows)
            DestroyWindow(m_frame);
        if (session && !m_added.empty())
            TellPages(PROPSHEETUI_REASON_DESTROY);
        m_object = {};
        session.reset();
        m_info = {};
        DestroyWindow(m_frame);
    }

    void Click(HWND page, int button) const { SendDlgItemMessageW(page, button, BM_CLICK, 0, 0); }
    HWND Fonts() const { return FindWindowExW(driverPage, nullptr, L"#32770", nullptr); }

    std::optional<driverhost::DocumentSession> session;  // until the sheet is closed
    HWND driverPage = nullptr;
    std::vector<HWND> pages;

  private:
    IPrintOemUI2* Object() {
        if (!m_habits.objectForEachCall)
            return session->Object();
        m_object = m_plugIn.CreateObject();
        m_object->PublishDriverInterface(&session->Helper());
        return m_object.Get();
    }
    void TellPages(WORD reason) {
        m_info[0].Reason = reason;
        Object()->DocumentPropertySheets(m_info.data(), m_info[0].lParamInit);
    }

    const driverhost::PlugIn& m_plugIn;
    const DriverHabits m_habits;
    driverhost::ComRef<IPrintOemUI2> m_object;
    driverhost::SessionVector<PROPSHEETUI_INFO> m_info{1};
    std::vector<PROPSHEETPAGEW> m_added;
    HWND m_frame = nullptr;
};

}  // namespace kzp::test
