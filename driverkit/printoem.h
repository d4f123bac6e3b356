// The printer driver kit's OEM plug-in contract, declared in our own words: identifiers, operation codes and
// the parameter blocks that cross the boundary between the core driver's user interface and this plug-in.
//
// mingw-w64 ships no printoem.h. Layouts are the kit's for x64 at natural alignment; the assertions at the
// end hold their sizes and each field that the plug-in uses.
#pragma once

#include <windows.h>
#include <winspool.h>

#include <compstui.h>
#include <winddiui.h>

#include <cstddef>

// {ABCE80D7-9F46-11D1-882A-00C04FB961EC}: the class that every UI plug-in serves.
inline constexpr CLSID CLSID_OEMUI = {
    0xABCE80D7, 0x9F46, 0x11D1, {0x88, 0x2A, 0x00, 0xC0, 0x4F, 0xB9, 0x61, 0xEC}};

// Modes of IPrintOemCommon::GetInfo.
inline constexpr DWORD OEMGI_GETSIGNATURE = 1;
inline constexpr DWORD OEMGI_GETINTERFACEVERSION = 2;
inline constexpr DWORD OEMGI_GETVERSION = 3;
inline constexpr DWORD OEMGI_GETPUBLISHERINFO = 4;
inline constexpr DWORD OEMGI_GETREQUESTEDHELPERINTERFACES = 5;

// Modes of IPrintOemCommon::DevMode.
inline constexpr DWORD OEMDM_SIZE = 1;
inline constexpr DWORD OEMDM_DEFAULT = 2;
inline constexpr DWORD OEMDM_CONVERT = 3;
inline constexpr DWORD OEMDM_MERGE = 4;

// Modes of IPrintOemUI::CommonUIProp: the document sheet and the printer sheet.
inline constexpr DWORD OEMCUIP_DOCPROP = 1;
inline constexpr DWORD OEMCUIP_PRNPROP = 2;

// Opens every plug-in's private device-mode block.
struct OEM_DMEXTRAHEADER {
    DWORD dwSize;       // bytes of the whole private block, this header included
    DWORD dwSignature;  // tells one plug-in's block from another's
    DWORD dwVersion;
};

struct OEMUIPROCS;  // the core driver's own functions; a plug-in only hands the pointer back

struct OEMUIOBJ {
    DWORD cbSize;
    OEMUIPROCS* pOemUIProcs;
};
using POEMUIOBJ = OEMUIOBJ*;

// Argument of DevMode. The driver owns everything it points to.
struct OEMDMPARAM {
    DWORD cbSize;
    PVOID pdriverobj;
    HANDLE hPrinter;
    HANDLE hModule;
    PDEVMODEW pPublicDMIn;
    PDEVMODEW pPublicDMOut;
    PVOID pOEMDMIn;   // private block to read; any alignment, any age
    PVOID pOEMDMOut;  // private block to write
    DWORD cbBufSize;  // answer of OEMDM_SIZE, in bytes
};
using POEMDMPARAM = OEMDMPARAM*;

// Argument of DevQueryPrintEx, which this plug-in does not support.
struct DEVQUERYPRINT_INFO;
using PDEVQUERYPRINT_INFO = DEVQUERYPRINT_INFO*;

struct OEMCUIPPARAM;
using POEMCUIPPARAM = OEMCUIPPARAM*;

// Hears the events of the driver's own page; answers a CPSUICB_ACTION_* value.
using OEMCUIPCALLBACK = LONG(APIENTRY*)(PCPSUICBPARAM, POEMCUIPPARAM);

// Argument of CommonUIProp. Lives as long as the sheet; the driver owns it and all that it points to.
struct OEMCUIPPARAM {
    DWORD cbSize;
    POEMUIOBJ poemuiobj;
    HANDLE hPrinter;
    PWSTR pPrinterName;
    HANDLE hModule;   // this plug-in's module
    HANDLE hOEMHeap;  // what is attached to the driver's items is allocated here; the driver frees the heap
    PDEVMODEW pPublicDM;
    PVOID pOEMDM;
    DWORD dwFlags;
    POPTITEM pDrvOptItems;
    DWORD cDrvOptItems;
    POPTITEM pOEMOptItems;  // null on the first call, which asks for the count
    DWORD cOEMOptItems;     // answer of the first call
    PVOID pOEMUserData;
    OEMCUIPCALLBACK OEMCUIPCallback;  // answer of the plug-in
};

// What OPTITEM.UserData points to for the core driver's own items.
struct USERDATA {
    DWORD dwSize;
    ULONG_PTR dwItemID;
    PSTR pKeyWordName;  // the feature's ANSI keyword
    DWORD dwReserved[8];
};

// What PROPSHEETUI_INFO.lParamInit points to in DocumentPropertySheets.
struct OEMUIPSPARAM {
    DWORD cbSize;
    POEMUIOBJ poemuiobj;
    HANDLE hPrinter;
    PWSTR pPrinterName;
    HANDLE hModule;
    HANDLE hOEMHeap;
    PDEVMODEW pPublicDM;
    PVOID pOEMDM;
    PVOID pOEMUserData;
    DWORD dwFlags;
    PVOID pOemEntry;
};

// Also of what mingw-w64 itself declares.
static_assert(sizeof(OEM_DMEXTRAHEADER) == 12 && offsetof(OEM_DMEXTRAHEADER, dwSize) == 0 &&
              offsetof(OEM_DMEXTRAHEADER, dwSignature) == 4 && offsetof(OEM_DMEXTRAHEADER, dwVersion) == 8);
static_assert(sizeof(OEMDMPARAM) == 72 && offsetof(OEMDMPARAM, hPrinter) == 16 &&
              offsetof(OEMDMPARAM, pOEMDMIn) == 48 && offsetof(OEMDMPARAM, pOEMDMOut) == 56 &&
              offsetof(OEMDMPARAM, cbBufSize) == 64);
static_assert(sizeof(OEMCUIPPARAM) == 120 && offsetof(OEMCUIPPARAM, poemuiobj) == 8 &&
              offsetof(OEMCUIPPARAM, hPrinter) == 16 && offsetof(OEMCUIPPARAM, pPrinterName) == 24 &&
              offsetof(OEMCUIPPARAM, hModule) == 32 && offsetof(OEMCUIPPARAM, hOEMHeap) == 40 &&
              offsetof(OEMCUIPPARAM, pOEMDM) == 56 && offsetof(OEMCUIPPARAM, pDrvOptItems) == 72 &&
              offsetof(OEMCUIPPARAM, cDrvOptItems) == 80 && offsetof(OEMCUIPPARAM, pOEMOptItems) == 88 &&
              offsetof(OEMCUIPPARAM, cOEMOptItems) == 96 && offsetof(OEMCUIPPARAM, OEMCUIPCallback) == 112);
static_assert(sizeof(USERDATA) == 56 && offsetof(USERDATA, pKeyWordName) == 16);
static_assert(sizeof(OEMUIPSPARAM) == 88);
static_assert(sizeof(OPTITEM) == 88 && offsetof(OPTITEM, Level) == 2 && offsetof(OPTITEM, Flags) == 4 &&
              offsetof(OPTITEM, UserData) == 8 && offsetof(OPTITEM, pName) == 16 &&
              offsetof(OPTITEM, Sel) == 24 && offsetof(OPTITEM, pOptType) == 40 &&
              offsetof(OPTITEM, HelpIndex) == 48 && offsetof(OPTITEM, pOIExt) == 56);
static_assert(sizeof(OPTTYPE) == 48 && offsetof(OPTTYPE, Type) == 2 && offsetof(OPTTYPE, Count) == 4 &&
              offsetof(OPTTYPE, pOptParam) == 8);
static_assert(sizeof(OPTPARAM) == 48 && offsetof(OPTPARAM, pData) == 8);
static_assert(sizeof(OIEXT) == 56 && offsetof(OIEXT, cbSize) == 0 && offsetof(OIEXT, pHelpFile) == 16);
static_assert(sizeof(CPSUICBPARAM) == 64 && offsetof(CPSUICBPARAM, Reason) == 2 &&
              offsetof(CPSUICBPARAM, hDlg) == 8 && offsetof(CPSUICBPARAM, pOptItem) == 16 &&
              offsetof(CPSUICBPARAM, cOptItem) == 24 && offsetof(CPSUICBPARAM, pCurItem) == 32 &&
              offsetof(CPSUICBPARAM, OldSel) == 40);
static_assert(sizeof(PROPSHEETUI_INFO) == 48 && offsetof(PROPSHEETUI_INFO, Reason) == 6 &&
              offsetof(PROPSHEETUI_INFO, hComPropSheet) == 8 &&
              offsetof(PROPSHEETUI_INFO, pfnComPropSheet) == 16 &&
              offsetof(PROPSHEETUI_INFO, lParamInit) == 24 && offsetof(PROPSHEETUI_INFO, UserData) == 32 &&
              offsetof(PROPSHEETUI_INFO, Result) == 40);
static_assert(sizeof(PROPSHEETUI_INFO_HEADER) == 40 && offsetof(PROPSHEETUI_INFO_HEADER, pTitle) == 8);
static_assert(sizeof(SETRESULT_INFO) == 24 && offsetof(SETRESULT_INFO, Result) == 16);
static_assert(offsetof(DOCEVENT_FILTER, cElementsAllocated) == 4 &&
              offsetof(DOCEVENT_FILTER, cElementsReturned) == 12 &&
              offsetof(DOCEVENT_FILTER, aDocEventCall) == 16);
