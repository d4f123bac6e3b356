// What belongs to one document sheet, and the list of the sheets of this process.
//
// Who may touch what. A SheetState belongs to the thread that shows its sheet: nobody else reads or writes
// it, and it needs no lock. One process may have several sheets open, on several threads or one within
// another's message loop, and none knows of the others. They share the list of the sheets and what the latest
// closed one left for the next; both stand behind one lock in SheetState.cpp, which is held for a few
// instructions and never while anything outside is called.
//
// How long one lives. A sheet comes onto the list with CommonUIProp and leaves it with the driver's
// PROPSHEETUI_REASON_DESTROY, or when CommonUIProp comes with its block's address again and nothing of it is
// open: the block was freed, and the address serves another sheet. A driver need not tell that it is done
// with a sheet whose pages never came, so of the sheets that nobody uses only the latest few stay listed.
// What is listed and not used is compared by address and never looked into.
#pragma once

#include <string>

#include "driverkit/prcomoem.h"
#include "pages/settings/Measures.h"
#include "resources/resource.h"
#include "support/UniqueHandle.h"

namespace kzp {

// Edited by the pages, written by the commit. A sheet begins with what the latest closed one left, until its
// pages are added and take over what is stored.
struct PendingSettings {
    std::wstring LaunchView;      // "YES" or "NO"
    std::wstring PromptFileName;  // "YES", "NO" or "No"
    std::wstring PathDirs;        // folder history, each entry followed by ";"
    std::wstring DefaultDir;      // output folder
    DWORD KzpxOutput = 1;         // 1 "KZPx" output, 0 "KZP"
};

struct SheetState {
    // The sheet's latest CommonUIProp block, owned by the driver, null when there was none or when the sheet
    // was destroyed; a copy of its printer's name; and the helper interface of the object that was called.
    POEMCUIPPARAM CurrentUIParam = nullptr;
    std::wstring CurrentPrinterName;
    IPrintOemDriverUI* DriverUI = nullptr;

    // From PROPSHEETUI_REASON_INIT: the sheet's function and the handles of the two pages.
    PROPSHEETUI_INFO SheetInfo = {};
    LONG_PTR SettingsPageHandle = 0;
    LONG_PTR OutputPageHandle = 0;
    bool ExtraPageAdded = false;  // a further page behind ours; cleared whenever the pages are added
    LPARAM PageParam = 0;         // PROPSHEETPAGE.lParam of the pages, by which they find the sheet

    bool SheetPrimed = false;        // the fonts dialog is embedded and every tab has been visited
    HWND FontsDialog = nullptr;      // the embedded fonts dialog while it exists and is filled
    HWND SheetTabControl = nullptr;  // the sheet's tab control; owns the pages' message boxes
    bool ApplyRefused = false;       // set by a refused commit, cleared by the settings page
    bool ApplyButtonVisible = true;  // whether the sheet showed Apply when the settings page was set up

    bool Initialising = false;  // the settings page is being set up: a standard paper is not judged yet
    int RememberedOffsets[IDC_MOVING_LAST - IDC_MOVING_FIRST + 1] = {};  // tops within that page, by control

    PendingSettings Pending;
    PageMeasureState Measures;
};

// A sheet that is used for as long as the owner lives: by a call of the driver, a page, the fonts dialog. It
// does not leave the memory meanwhile, whatever the driver or another sheet does.
struct SheetUseTraits {
    using Type = SheetState*;
    static Type Empty() { return nullptr; }
    static void Close(Type sheet);
};
using SheetUse = UniqueHandle<SheetUseTraits>;

// The driver's entry points carry no common key. A plug-in object may be made for a single call, a block may
// be presented twice at two addresses, and addresses serve again. What tells sheets apart is the block's own
// address; then the private record (pOEMDM), which one document's sheet has to itself; and where one side
// names no record, the UI object (poemuiobj). Where these leave it open, or contradict each other, nothing
// but the order of the calls is left: a thread adds pages to the sheet that it presented last.

// CommonUIProp: the sheet of this block, or a new one. Throws std::bad_alloc, as all that may make a new one.
SheetUse PresentSheet(POEMCUIPPARAM block);

// PROPSHEETUI_REASON_INIT: the presented sheet that `info.lParamInit` (OEMUIPSPARAM) speaks of and that had
// no pages yet, the latest of several. Where that is open, the one that this thread presented last. Otherwise
// a new sheet, without a block.
SheetUse AddPagesToSheet(const PROPSHEETUI_INFO& info);

// The callback: the sheet of the block that it is given; a new one for a block that was never presented.
SheetUse SheetOfBlock(POEMCUIPPARAM block);

// A page that is set up: the sheet that carries `pageParam`; for a page of no known sheet, one without a
// block.
SheetUse SheetOfPageParam(LPARAM pageParam);

// One more user of a sheet that is in use.
SheetUse UseSheet(SheetState& sheet);

// PROPSHEETUI_REASON_DESTROY: forgets the sheet that was given this info's sheet handle and init parameter.
// It loses its block and its sheet function at once, and stays without them for windows that are open still.
void DestroySheet(const PROPSHEETUI_INFO& info);

// A page closes: the next new sheet begins with what this one has pending, and with its unit and orientation.
void LeaveToNextSheet(const SheetState& sheet);

}  // namespace kzp
