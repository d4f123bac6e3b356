#include "tools/driverhost/DocumentSession.h"

#include "resources/resource.h"
#include "tools/driverhost/Text.h"

namespace driverhost {

namespace {

HANDLE OpenByName(const std::wstring& name) {
    HANDLE printer = nullptr;
    PRINTER_DEFAULTSW access = {nullptr, nullptr, PRINTER_ALL_ACCESS};
    auto* const text = const_cast<PWSTR>(name.c_str());
    if (OpenPrinterW(text, &printer, &access) || OpenPrinterW(text, &printer, nullptr))
        return printer;
    return nullptr;
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
        throw HostError{Format(L"cannot open the printer \"%ls\": %ls\n(--create-printer makes it)",
                               m_printerName.c_str(), Win32Error(GetLastError()).c_str())};
    if (options.firstItems)
        m_tree.KeepFirst(*options.firstItems);
    // The device mode's size is asked at an entry point of its own, for which the DLL need not stay loaded.
    const DWORD bytes = m_mode == OEMCUIP_DOCPROP ? DevModeBlock::AskSize(PlugIn(plugIn.Path())) : 0;
    m_object = plugIn.CreateObject();
    m_signature = PlugInInfo(m_object.Get(), OEMGI_GETSIGNATURE);
    m_version = PlugInInfo(m_object.Get(), OEMGI_GETVERSION);
    m_helper.Watch(&m_shown[0].object, &m_tree, &m_plugInTree);
    m_published = m_object->PublishDriverInterface(&m_helper);
    if (m_mode == OEMCUIP_DOCPROP) {
        m_devMode = std::make_unique<DevModeBlock>(
            m_object.Get(), bytes, plugIn.Module(), m_printer.Get(), m_printerName,
            m_printer ? LoadDevMode(m_printer.Get()) : std::vector<BYTE>());
        m_devMode->GiveTo(m_tree);
        m_devMode->TakeFrom(m_tree);
    }
    FillShown(plugIn);
}

void DocumentSession::FillShown(const PlugIn& plugIn) {
    Shown& shown = m_shown[0];
    shown.object.cbSize = sizeof shown.object;
    m_printerName.copy(shown.printerName, std::size(shown.printerName) - 1);

    OEMCUIPPARAM& ui = shown.ui;
    ui.cbSize = sizeof ui;
    ui.poemuiobj = &shown.object;
    ui.hPrinter = m_printer.Get();
    ui.pPrinterName = shown.printerName;
    ui.hModule = plugIn.Module();
    ui.hOEMHeap = m_heap.Get();
    ui.pPublicDM = m_devMode ? m_devMode->Public() : nullptr;
    ui.pOEMDM = m_devMode ? m_devMode->PlugInPart() : nullptr;
    ui.dwFlags = m_devMode ? DM_IN_PROMPT : 0;

    OEMUIPSPARAM& sheet = shown.sheet;
    sheet.cbSize = sizeof sheet;
    sheet.poemuiobj = ui.poemuiobj;
    sheet.hPrinter = ui.hPrinter;
    sheet.pPrinterName = ui.pPrinterName;
    sheet.hModule = ui.hModule;
    sheet.hOEMHeap = ui.hOEMHeap;
    sheet.pPublicDM = ui.pPublicDM;
    sheet.pOEMDM = ui.pOEMDM;
    sheet.dwFlags = ui.dwFlags;

    COMPROPSHEETUI& page = shown.page;
    page.cbSize = sizeof page;
    page.Flags = CPSUIF_UPDATE_PERMISSION;
    page.hInstCaller = GetModuleHandleW(nullptr);
    page.pCallerName = shown.printerName;
    page.UserData = reinterpret_cast<ULONG_PTR>(&shown.object);
}

DocumentSession::~DocumentSession() {
    m_object = {};
    m_helper.Retire();
}

void DocumentSession::PresentItems() {
    OEMCUIPPARAM& ui = UIParam();
    ui.pDrvOptItems = m_tree.Items();
    ui.cDrvOptItems = m_tree.Count();
    ui.pOEMOptItems = nullptr;
    ui.cOEMOptItems = 0;
    CallCommonUIProp();
    ui.pOEMOptItems = m_plugInTree.Items();
    ui.cOEMOptItems = m_plugInTree.Count();
    CallCommonUIProp();
}

void DocumentSession::CallCommonUIProp() {
    const HRESULT result = m_object->CommonUIProp(m_mode, &UIParam());
    m_calls.push_back({result, UIParam().cOEMOptItems});
}

LONG DocumentSession::TellCallback(WORD reason, HWND page, POPTITEM current, LONG oldSelection) {
    Shown& shown = m_shown[0];
    if (!shown.ui.OEMCUIPCallback)
        return CPSUICB_ACTION_NONE;
    shown.page.pOptItem = m_tree.Items();
    shown.page.cOptItem = static_cast<WORD>(m_tree.Count());
    CPSUICBPARAM param = {};
    param.cbSize = sizeof param;
    param.Reason = reason;
    param.hDlg = page;
    param.pOptItem = shown.page.pOptItem;
    param.cOptItem = shown.page.cOptItem;
    param.Flags = shown.page.Flags;
    param.pCurItem = current ? current : param.pOptItem;
    param.UserData = shown.page.UserData;
    param.Result = CPSUI_OK;
    if (reason == CPSUICB_REASON_APPLYNOW)
        param.OldSel = -1;  // every changed item counts
    else if (current)
        param.OldSel = oldSelection;
    else
        param.pOldSel = reinterpret_cast<LPTSTR>(&shown.page);
    return shown.ui.OEMCUIPCallback(&param, &shown.ui);
}

DWORD DocumentSession::Accept() {
    if (!m_devMode)
        return ERROR_SUCCESS;
    m_devMode->TakeFrom(m_tree);
    return m_printer ? StoreDevMode(m_printer.Get(), *m_devMode) : ERROR_SUCCESS;
}

}  // namespace driverhost
