#include "tools/driverhost/DocumentSession.h"

#include <cstring>

#include "resources/resource.h"
#include "support/Spooler.h"
#include "tools/driverhost/Text.h"

namespace driverhost {

namespace {

kzp::UniquePrinter OpenByName(const std::wstring& name) {
    kzp::UniquePrinter printer = kzp::OpenPrinterWithAllAccess(name.c_str());
    if (!printer)  // a user may not change its data
        OpenPrinterW(kzp::SpoolerText(name.c_str()), printer.Put(), nullptr);
    return printer;
}

}  // namespace

DocumentSession::DocumentSession(const PlugIn& plugIn, SessionOptions options)
    : m_mode(options.mode),
      m_printerName(std::move(options.printer)),
      m_printer(OpenByName(m_printerName)),
      m_heap(HeapCreate(0, 0, 0)),
      m_helper(DriverHelper::Create(options.offersHelper)),
      m_tree(options.features            ? std::move(*options.features)
             : m_mode == OEMCUIP_DOCPROP ? DriverTree::Standard(plugIn.ResourceText(IDS_HELP_ITEM_NAME))
                                         : DriverTree::OfPrinter()),
      m_plugInTree(options.plugInItem ? DriverTree::PlugInItems() : DriverTree()) {
    if (!m_printer && options.needsPrinter)
        throw LastError(L"cannot open the printer \"" + m_printerName + L"\" (--create-printer makes it)");
    if (options.firstItems)
        m_tree.KeepFirst(*options.firstItems);
    // The device mode's size is asked at an entry point of its own, for which the DLL need not stay loaded.
    const DWORD bytes = m_mode == OEMCUIP_DOCPROP ? DevModeBlock::AskSize(PlugIn(plugIn.Path())) : 0;
    m_object = plugIn.CreateObject();
    PlugInInfo(m_object.Get(), OEMGI_GETSIGNATURE);
    PlugInInfo(m_object.Get(), OEMGI_GETVERSION);
    m_helper.Watch(&m_shown[0].object, &m_tree, &m_plugInTree);
    m_object->PublishDriverInterface(&m_helper);
    if (m_mode == OEMCUIP_DOCPROP) {
        m_devMode = std::make_unique<DevModeBlock>(
            m_object.Get(), bytes, plugIn.Module(), m_printer.Get(), m_printerName,
            m_printer ? LoadDevMode(m_printer.Get()) : std::vector<BYTE>());
        m_devMode->GiveTo(m_tree);
        m_devMode->TakeFrom(m_tree);
    }
    FillShown(plugIn.Module());
}

void DocumentSession::FillShown(HMODULE plugIn) {
    Shown& shown = m_shown[0];
    shown.object.cbSize = sizeof shown.object;
    m_printerName.copy(shown.printerName, std::size(shown.printerName) - 1);
    shown.ui = {.cbSize = sizeof shown.ui,
                .poemuiobj = &shown.object,
                .hPrinter = m_printer.Get(),
                .pPrinterName = shown.printerName,
                .hModule = plugIn,
                .hOEMHeap = m_heap.Get(),
                .pPublicDM = m_devMode ? m_devMode->Public() : nullptr,
                .pOEMDM = m_devMode ? m_devMode->PlugInPart() : nullptr,
                .dwFlags = m_devMode ? DWORD{DM_IN_PROMPT} : 0};
    static_assert(offsetof(OEMUIPSPARAM, pOEMDM) == offsetof(OEMCUIPPARAM, pOEMDM));  // they begin alike
    std::memcpy(&shown.sheet, &shown.ui, offsetof(OEMUIPSPARAM, pOEMUserData));
    shown.sheet.cbSize = sizeof shown.sheet;
    shown.sheet.dwFlags = shown.ui.dwFlags;
    shown.page = {.cbSize = sizeof shown.page,
                  .Flags = CPSUIF_UPDATE_PERMISSION,
                  .hInstCaller = GetModuleHandleW(nullptr),
                  .pCallerName = shown.printerName,
                  .UserData = reinterpret_cast<ULONG_PTR>(&shown.object)};
}

DocumentSession::~DocumentSession() {
    m_object = {};
    m_helper.Retire();
}

HRESULT DocumentSession::PresentItems() {
    UIParam().pDrvOptItems = m_tree.Items();
    UIParam().cDrvOptItems = m_tree.Count();
    CallCommonUIProp(nullptr, 0);
    return CallCommonUIProp(m_plugInTree.Items(), m_plugInTree.Count());
}

HRESULT DocumentSession::CallCommonUIProp(POPTITEM plugInItems, DWORD count) {
    OEMCUIPPARAM& ui = UIParam();
    ui.pOEMOptItems = plugInItems;
    ui.cOEMOptItems = count;
    return m_object->CommonUIProp(m_mode, &ui);
}

LONG DocumentSession::TellCallback(WORD reason, HWND page) {
    Shown& shown = m_shown[0];
    if (!shown.ui.OEMCUIPCallback)
        return CPSUICB_ACTION_NONE;
    shown.page.pOptItem = m_tree.Items();
    shown.page.cOptItem = static_cast<WORD>(m_tree.Count());
    CPSUICBPARAM param = {.cbSize = sizeof param,
                          .Reason = reason,
                          .hDlg = page,
                          .pOptItem = shown.page.pOptItem,
                          .cOptItem = shown.page.cOptItem,
                          .Flags = shown.page.Flags,
                          .pCurItem = shown.page.pOptItem,
                          .UserData = shown.page.UserData,
                          .Result = CPSUI_OK};
    if (reason == CPSUICB_REASON_APPLYNOW)
        param.OldSel = -1;  // every changed item counts
    else
        param.pOldSel = reinterpret_cast<LPTSTR>(&shown.page);
    return shown.ui.OEMCUIPCallback(&param, &shown.ui);
}

DWORD DocumentSession::Accept() {
    if (!m_devMode)
        return ERROR_SUCCESS;
    m_devMode->TakeFrom(m_tree);
    return m_printer ? StoreDevMode(m_printer.Get(), m_devMode->Bytes()) : ERROR_SUCCESS;
}

}  // namespace driverhost
