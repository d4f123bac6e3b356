// The action "Uninstall": removes printer, driver, ports and monitor. The user's settings and the form stay.
#include <windows.h>

#include <msi.h>

#include "core/DebugTrace.h"
#include "installer/InstallNames.h"
#include "installer/PortMonitor.h"
#include "installer/PrinterSetup.h"
#include "support/Spooler.h"

namespace kzp {

namespace {

// The printer first: the set-up does not remove a driver that a printer uses.
void RemovePrinterAndDriver() {
    const PrinterSetup setup;
    setup.Run(L"/dl /r \"Brimlake KZP Writer Port\" /n \"Brimlake KZP Writer\" ");
    setup.Run(L"/dd /m \"Brimlake KZP Writer\" /h \"Intel\" /v \"Windows 2000\" ");
}

// A port that is missing already is as good as removed, so nothing is checked.
void RemovePorts() {
    for (const wchar_t* const name : {kMainPortName, kSecondPortName})
        DeletePortW(nullptr, nullptr, SpoolerText(name));
}

}  // namespace

}  // namespace kzp

// Always answers ERROR_SUCCESS: what cannot be removed is no reason to keep the product.
extern "C" UINT WINAPI Uninstall(MSIHANDLE hInstall) {
    using namespace kzp;
    return GuardCallback(L"Uninstall", L"installer/Uninstall", __LINE__, UINT{ERROR_SUCCESS},
                         [hInstall]() -> UINT {
                             RemovePrinterAndDriver();
                             RemovePorts();
                             RemovePortMonitor(hInstall);
                             return ERROR_SUCCESS;
                         });
}
