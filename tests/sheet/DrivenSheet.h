// A document's sheet driven by hand: the plug-in's entry points one by one, in the order and with the blocks
// that a test wants. What the driver frees becomes inaccessible, so that a plug-in that still looks there
// crashes.
#pragma once

#include <vector>

#include "core/KZPPrivateDevMode.h"
#include "tools/driverhost/DriverHelper.h"
#include "tools/driverhost/PlugIn.h"

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
    DrivenSheet(const driverhost::PlugIn& plugIn, DriverHabits habits);
    ~DrivenSheet();
    DrivenSheet(const DrivenSheet&) = delete;
    DrivenSheet& operator=(const DrivenSheet&) = delete;

    void Present(DWORD mode = OEMCUIP_DOCPROP);
    void AddPages();
    void Show();  // windows of this thread: a frame with Apply, the driver's page, activated, and the
                  // plug-in's two
    LONG Tell(WORD reason);
    void Close();

    void Type(int edit, const wchar_t* text) const { SetDlgItemTextW(pages[0], edit, text); }
    void Click(HWND page, int button) const;
    HWND Fonts() const { return FindWindowExW(driverPage, nullptr, L"#32770", nullptr); }
    std::vector<float> Margins() const;
    void SetMargins(const std::vector<float>& margins) const;

    // All that a driver allocates for a sheet.
    struct Blocks {
        OEMUIOBJ uiObject;
        OEMCUIPPARAM param;
        OEMUIPSPARAM sheetParam;
        PROPSHEETUI_INFO info;
        KZPPrivateDevMode record;
        OPTITEM items[20];
        OPTITEM ownItem;
    };
    Blocks& blocks;
    driverhost::DriverHelper& helper = driverhost::DriverHelper::Create(true);
    HWND driverPage = nullptr;
    std::vector<HWND> pages;

  private:
    static LONG_PTR CALLBACK SheetFunction(HANDLE sheet, UINT function, LPARAM first, LPARAM);
    IPrintOemUI2* Object();
    void TellPages(WORD reason);

    const driverhost::PlugIn& m_plugIn;
    const DriverHabits m_habits;
    driverhost::ComRef<IPrintOemUI2> m_object;
    driverhost::DriverTree m_tree = driverhost::DriverTree::Standard(L"");
    std::vector<PROPSHEETPAGEW> m_added;
    HWND m_frame = nullptr;
    bool m_presented = false;
};

}  // namespace kzp::test
