// The two pages in a bare sheet, beside a sheet of the same two templates whose dialog procedures do nothing.
#include <windows.h>

#include <prsht.h>

#include "tools/bench/Bench.h"
#include "tools/standins/spooler/SpoolerControl.h"

namespace kzp::bench {

namespace {

constexpr double kLimit = 1.5;
constexpr size_t kRounds = 25;
constexpr int kWholeSheets = 5;

std::vector<PROPSHEETPAGEW> g_pages;

// A sheet function that only collects the pages.
LONG_PTR CALLBACK Collect(HANDLE, UINT function, LPARAM first, LPARAM) {
    if (function == CPSFUNC_ADD_PROPSHEETPAGEW)
        g_pages.push_back(*reinterpret_cast<const PROPSHEETPAGEW*>(first));
    return static_cast<LONG_PTR>(g_pages.size());
}

void CollectPages(IPrintOemUI2* object) {
    g_pages.clear();
    PROPSHEETUI_INFO info = {.cbSize = sizeof info,
                             .Version = PROPSHEETUI_INFO_VERSION,
                             .Reason = PROPSHEETUI_REASON_INIT,
                             .pfnComPropSheet = Collect};
    Require(SUCCEEDED(object->DocumentPropertySheets(&info, 0)) && g_pages.size() == 2,
            "the plug-in does not add its two pages");
}

INT_PTR CALLBACK NoCode(HWND, UINT, WPARAM, LPARAM) {
    return FALSE;
}

// Opens the sheet and shows both pages, one after the other.
HWND OpenSheet(HWND owner, const std::vector<PROPSHEETPAGEW>& pages) {
    PROPSHEETHEADERW header = {};
    header.dwSize = sizeof header;
    header.dwFlags = PSH_PROPSHEETPAGE | PSH_MODELESS;
    header.hwndParent = owner;
    header.pszCaption = L"Document Properties";
    header.nPages = static_cast<UINT>(pages.size());
    header.ppsp = pages.data();
    const HWND sheet = reinterpret_cast<HWND>(PropertySheetW(&header));
    HandlePendingMessages();
    SendMessageW(sheet, PSM_SETCURSEL, 1, 0);
    HandlePendingMessages();
    return sheet;
}

// A person waits for this: the driver's own page with the embedded dialog, its tree, and every tab visited.
double TimeWholeSheet() {
    test::HostedSheet host;
    host.run.Add([](driverhost::SheetUser& user) { user.Cancel(); });
    return Time([&] { host.run.Show(); });
}

}  // namespace

void MeasurePages() {
    BeginChapter("Opening the two pages",
                 "Opening a sheet and showing both pages, beside the same templates without code. The "
                 "plug-in's share: texts from the resource module, stored settings, the printer's forms, the "
                 "documents folder. The key "
                 "presses that visit all tabs belong to the driver's whole sheet, which stands by itself.",
                 "plug-in", "no code");
    const standins::ScratchRegistry registry;
    standins::spooler::SetUpPrinter({.name = driverhost::kDefaultPrinter});
    {
        const ShownWindow window;
        const driverhost::PlugIn plugIn;
        driverhost::DocumentSession session(plugIn, {});
        session.PresentItems();
        // The driver's page comes first: with it the sheet counts as visited, and no keys are pressed.
        const HWND driverPage = CreateWindowExW(0, L"STATIC", L"", WS_CHILD, 0, 0, 460, 350, window.Get(),
                                                nullptr, nullptr, nullptr);
        session.TellCallback(CPSUICB_REASON_SETACTIVE, driverPage);
        CollectPages(session.Object());
        std::vector<PROPSHEETPAGEW> bare = g_pages;
        for (PROPSHEETPAGEW& page : bare)
            page.pfnDlgProc = NoCode;

        HWND sheet = nullptr;
        const auto close = [&] {
            DestroyWindow(sheet);
            HandlePendingMessages();
        };
        Compare(
            "the two pages in a sheet", kRounds, kLimit, [&] { sheet = OpenSheet(window.Get(), g_pages); },
            [&] { sheet = OpenSheet(window.Get(), bare); }, close);
        DestroyWindow(driverPage);
    }
    std::vector<double> whole;
    for (int run = 0; run < kWholeSheets; ++run)
        whole.push_back(TimeWholeSheet());
    Report("the driver's whole sheet, opened and cancelled", Median(whole), 0);
}

}  // namespace kzp::bench
