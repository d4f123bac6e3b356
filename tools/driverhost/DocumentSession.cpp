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
    : m_printerName(std::move(options.printer)),
      m_printer(OpenByName(m_printerName)),
      m_heap(HeapCreate(0, 0, 0)),
      m_helper(DriverHelper::Create(options.offersHelper)),
      m_tree(options.features ? std::move(*options.features)
                              : DriverTree::Standard(plugIn.ResourceText(IDS_HELP_ITEM_NAME))),
      m_plugInTree(options.plugInItem ? DriverTree::PlugInItems() : DriverTree()),
      m_object(plugIn.CreateObject()) {
    if (!m_printer && options.needsPrinter)
        throw HostError{Format(L"cannot open the printer \"%ls\": %ls\n(--create-printer makes it)",
                               m_printerName.c_str(), Win32Error(GetLastError()).c_str())};
    if (options.firstItems)
        m_tree.KeepFirst(*options.firstItems);
    m_signature = PlugInInfo(m_object.Get(), OEMGI_GETSIGNATURE);
    m_version = PlugInInfo(m_object.Get(), OEMGI_GETVERSION);
    m_helper.Watch(&m_uiObject, &m_tree, &m_plugInTree);
    m_published = m_object->PublishDriverInterface(&m_helper);
    m_devMode =
        std::make_unique<DevModeBlock>(m_object.Get(), plugIn.Module(), m_printer.Get(), m_printerName,
                                       m_printer ? LoadDevMode(m_printer.Get()) : std::vector<BYTE>());
    m_devMode->GiveTo(m_tree);
    m_devMode->TakeFrom(m_tree);

    m_uiParam.cbSize = sizeof m_uiParam;
    m_uiParam.poemuiobj = &m_uiObject;
    m_uiParam.hPrinter = m_printer.Get();
    m_uiParam.pPrinterName = m_printerName.data();
    m_uiParam.hModule = plugIn.Module();
    m_uiParam.hOEMHeap = m_heap.Get();
    m_uiParam.pPublicDM = m_devMode->Public();
    m_uiParam.pOEMDM = m_devMode->PlugInPart();

    m_sheetParam.cbSize = sizeof m_sheetParam;
    m_sheetParam.poemuiobj = &m_uiObject;
    m_sheetParam.hPrinter = m_printer.Get();
    m_sheetParam.pPrinterName = m_printerName.data();
    m_sheetParam.hModule = plugIn.Module();
    m_sheetParam.hOEMHeap = m_heap.Get();
    m_sheetParam.pPublicDM = m_devMode->Public();
    m_sheetParam.pOEMDM = m_devMode->PlugInPart();
}

DocumentSession::~DocumentSession() {
    m_helper.Retire();
}

void DocumentSession::PresentItems() {
    m_uiParam.pDrvOptItems = nullptr;
    m_uiParam.cDrvOptItems = 0;
    m_uiParam.pOEMOptItems = nullptr;
    m_uiParam.cOEMOptItems = 0;
    CallCommonUIProp(false);

    m_uiParam.pDrvOptItems = m_tree.Items();
    m_uiParam.cDrvOptItems = m_tree.Count();
    m_uiParam.pOEMOptItems = m_plugInTree.Items();
    m_uiParam.cOEMOptItems = m_plugInTree.Count();
    CallCommonUIProp(true);
}

void DocumentSession::CallCommonUIProp(bool withItems) {
    const HRESULT result = m_object->CommonUIProp(OEMCUIP_DOCPROP, &m_uiParam);
    m_calls.push_back({withItems, result, m_uiParam.cOEMOptItems});
}

LONG DocumentSession::TellCallback(WORD reason, HWND page, POPTITEM current, LONG oldSelection) {
    if (!m_uiParam.OEMCUIPCallback)
        return CPSUICB_ACTION_NONE;
    CPSUICBPARAM param = {};
    param.cbSize = sizeof param;
    param.Reason = reason;
    param.hDlg = page;
    param.pOptItem = m_tree.Items();
    param.cOptItem = static_cast<WORD>(m_tree.Count());
    param.pCurItem = current ? current : m_tree.Items();
    param.OldSel = oldSelection;
    param.UserData = reinterpret_cast<ULONG_PTR>(&m_uiParam);
    return m_uiParam.OEMCUIPCallback(&param, &m_uiParam);
}

DWORD DocumentSession::Accept() {
    m_devMode->TakeFrom(m_tree);
    return m_printer ? StoreDevMode(m_printer.Get(), *m_devMode) : ERROR_SUCCESS;
}

}  // namespace driverhost
