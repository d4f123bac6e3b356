#include "tests/sheet/DrivenSheet.h"

#include <algorithm>
#include <cstring>

#include "resources/resource.h"

namespace kzp::test {

namespace {

template <class Block>
Block& Allocate() {
    return *static_cast<Block*>(
        VirtualAlloc(nullptr, sizeof(Block), MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
}

// The address stays taken, so that no other block comes to stand there.
void Free(void* block) {
    VirtualFree(block, sizeof(DrivenSheet::Blocks), MEM_DECOMMIT);
}

}  // namespace

DrivenSheet::DrivenSheet(const driverhost::PlugIn& plugIn, DriverHabits habits)
    : blocks(Allocate<Blocks>()), m_plugIn(plugIn), m_habits(habits) {
    std::copy(m_tree.All().begin(), m_tree.All().end(), blocks.items);
    blocks.uiObject.cbSize = sizeof blocks.uiObject;
    blocks.record.SetDefaultHeader();
    OEMCUIPPARAM& param = blocks.param;
    param.cbSize = sizeof param;
    param.poemuiobj = &blocks.uiObject;
    param.hPrinter = &blocks;  // no printer's, but this sheet's own
    param.hModule = plugIn.Module();
    param.hOEMHeap = GetProcessHeap();
    param.pOEMDM = &blocks.record;
    blocks.sheetParam.cbSize = sizeof blocks.sheetParam;
    blocks.sheetParam.poemuiobj = param.poemuiobj;
    blocks.sheetParam.hPrinter = param.hPrinter;
    blocks.sheetParam.pOEMDM = param.pOEMDM;
    PROPSHEETUI_INFO& info = blocks.info;
    info.cbSize = sizeof info;
    info.Version = PROPSHEETUI_INFO_VERSION;
    info.hComPropSheet = this;
    info.pfnComPropSheet = SheetFunction;
    if (habits.namesInitParam)
        info.lParamInit = reinterpret_cast<LPARAM>(&blocks.sheetParam);
    helper.Watch(&blocks.uiObject, nullptr, nullptr);
}

DrivenSheet::~DrivenSheet() {
    Close();
    helper.Retire();
}

IPrintOemUI2* DrivenSheet::Object() {
    if (!m_object || m_habits.objectForEachCall) {
        m_object = m_plugIn.CreateObject();
        m_object->PublishDriverInterface(&helper);
    }
    return m_object.Get();
}

void DrivenSheet::Present(DWORD mode) {
    OEMCUIPPARAM& param = blocks.param;
    if (m_habits.otherBlockAtFirst) {
        auto& first = Allocate<OEMCUIPPARAM>();
        first = param;
        Object()->CommonUIProp(mode, &first);
        Free(&first);
    } else {
        Object()->CommonUIProp(mode, &param);
    }
    param.pDrvOptItems = blocks.items;
    param.cDrvOptItems = m_tree.Count();
    param.pOEMOptItems = &blocks.ownItem;
    param.cOEMOptItems = 1;
    Object()->CommonUIProp(mode, &param);
    m_presented = true;
}

LONG_PTR CALLBACK DrivenSheet::SheetFunction(HANDLE sheet, UINT function, LPARAM first, LPARAM) {
    auto& self = *static_cast<DrivenSheet*>(sheet);
    if (function == CPSFUNC_ADD_PROPSHEETPAGEW)
        self.m_added.push_back(*reinterpret_cast<const PROPSHEETPAGEW*>(first));
    return static_cast<LONG_PTR>(self.m_added.size());
}

void DrivenSheet::TellPages(WORD reason) {
    blocks.info.Reason = reason;
    Object()->DocumentPropertySheets(&blocks.info, blocks.info.lParamInit);
}

void DrivenSheet::AddPages() {
    TellPages(PROPSHEETUI_REASON_INIT);
}

void DrivenSheet::Show() {
    m_frame = CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW, 0, 0, 480, 420, nullptr, nullptr,
                              nullptr, nullptr);
    CreateWindowExW(0, L"BUTTON", L"Apply", WS_CHILD | WS_VISIBLE, 400, 360, 60, 24, m_frame,
                    reinterpret_cast<HMENU>(INT_PTR{IDC_SHEET_APPLY}), nullptr, nullptr);
    driverPage =
        CreateWindowExW(0, L"STATIC", L"", WS_CHILD, 0, 0, 460, 350, m_frame, nullptr, nullptr, nullptr);
    Tell(CPSUICB_REASON_SETACTIVE);
    for (const PROPSHEETPAGEW& page : m_added)
        pages.push_back(CreateDialogParamW(page.hInstance, page.pszTemplate, m_frame, page.pfnDlgProc,
                                           reinterpret_cast<LPARAM>(&page)));
}

LONG DrivenSheet::Tell(WORD reason) {
    CPSUICBPARAM event = {};
    event.cbSize = sizeof event;
    event.Reason = reason;
    event.hDlg = driverPage;
    return blocks.param.OEMCUIPCallback(&event, &blocks.param);
}

// As the driver ends a sheet; one without pages ends without a word.
void DrivenSheet::Close() {
    if (!m_presented)
        return;
    m_presented = false;
    const auto destroyWindows = [this] {
        if (m_frame)
            DestroyWindow(m_frame);
    };
    if (!m_habits.destroysBeforeWindows)
        destroyWindows();
    if (!m_added.empty())
        TellPages(PROPSHEETUI_REASON_DESTROY);
    m_object = {};
    Free(&blocks);
    if (m_habits.destroysBeforeWindows)
        destroyWindows();
}

void DrivenSheet::Click(HWND page, int button) const {
    SendDlgItemMessageW(page, button, BM_CLICK, 0, 0);
}

std::vector<float> DrivenSheet::Margins() const {
    std::vector<float> margins(4);
    std::memcpy(margins.data(), blocks.record.fMargins, sizeof blocks.record.fMargins);
    return margins;
}

void DrivenSheet::SetMargins(const std::vector<float>& margins) const {
    std::memcpy(blocks.record.fMargins, margins.data(), sizeof blocks.record.fMargins);
}

}  // namespace kzp::test
