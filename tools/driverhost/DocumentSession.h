// One session of the driver's user interface, for a document or for the printer's own properties: printer,
// plug-in object, helper, device mode, option tree, and the parameter blocks through which the plug-in sees
// them. There may be several at a time, on one thread or on several.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/driverhost/DevModeBlock.h"
#include "tools/driverhost/DriverHelper.h"
#include "tools/driverhost/DriverTree.h"
#include "tools/driverhost/PlugIn.h"

namespace driverhost {

inline constexpr wchar_t kDefaultPrinter[] = L"Brimlake KZP Writer for 2D";

struct SessionOptions {
    DWORD mode = OEMCUIP_DOCPROP;  // or OEMCUIP_PRNPROP: printer properties, without a device mode
    std::wstring printer = kDefaultPrinter;
    bool needsPrinter = true;  // false: a missing printer gives a null handle instead of an error
    bool offersHelper = true;  // false: the helper object refuses its interface
    bool plugInItem = false;   // true: an item of the plug-in although it asks for none
    std::optional<DriverTree> features = {};  // instead of the standard tree
    std::optional<DWORD> firstItems = {};     // keep only so many driver items
};

class DocumentSession {
  public:
    // Creates the object, publishes the helper and runs the DevMode operations. HostError when the printer
    // cannot be opened or the plug-in refuses.
    DocumentSession(const PlugIn& plugIn, SessionOptions options);
    ~DocumentSession();
    DocumentSession(const DocumentSession&) = delete;
    DocumentSession& operator=(const DocumentSession&) = delete;

    // CommonUIProp: first without the plug-in's items, which asks for their number, then with them. Answers
    // what the plug-in said last.
    HRESULT PresentItems();

    // Tells the plug-in's callback about an event of the driver's page; CPSUICB_ACTION_NONE without a
    // callback.
    LONG TellCallback(WORD reason, HWND page);

    // The accepted Apply: selections into the device mode, and that into the spooler. Answers a Win32 code.
    DWORD Accept();

    IPrintOemUI2* Object() const { return m_object.Get(); }
    HANDLE Printer() const { return m_printer.Get(); }
    const std::wstring& PrinterName() const { return m_printerName; }
    DriverTree& Tree() { return m_tree; }
    DriverTree& PlugInTree() { return m_plugInTree; }
    DriverHelper& Helper() { return m_helper; }
    DevModeBlock& DevMode() { return *m_devMode; }  // of a document
    DWORD Mode() const { return m_mode; }
    OEMCUIPPARAM& UIParam() { return m_shown[0].ui; }
    OEMUIPSPARAM& SheetParam() { return m_shown[0].sheet; }

  private:
    struct HeapTraits {
        using Type = HANDLE;
        static Type Empty() { return nullptr; }
        static void Close(Type heap) { HeapDestroy(heap); }
    };
    // What the plug-in is given pointers to.
    struct Shown {
        OEMUIOBJ object;
        OEMCUIPPARAM ui;
        OEMUIPSPARAM sheet;
        COMPROPSHEETUI page;
        wchar_t printerName[256];
    };
    HRESULT CallCommonUIProp(POPTITEM plugInItems, DWORD count);
    void FillShown(HMODULE plugIn);

    DWORD m_mode;
    std::wstring m_printerName;
    kzp::UniquePrinter m_printer;
    kzp::UniqueHandle<HeapTraits> m_heap;  // frees all that the plug-in attached to the items
    DriverHelper& m_helper;
    DriverTree m_tree;
    DriverTree m_plugInTree;
    SessionVector<Shown> m_shown{1};
    ComRef<IPrintOemUI2> m_object;
    std::unique_ptr<DevModeBlock> m_devMode;
};

}  // namespace driverhost
