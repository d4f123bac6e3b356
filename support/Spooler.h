// What every call to the spooler needs.
#pragma once

#include <windows.h>
#include <winspool.h>

#include "support/UniqueHandle.h"

namespace kzp {

// The spooler's records and calls ask for writable texts but only read them.
inline PWSTR SpoolerText(PCWSTR text) {
    return const_cast<PWSTR>(text);
}

// A handle with every right; empty, with the last error set, when the printer cannot be opened.
inline UniquePrinter OpenPrinterWithAllAccess(PCWSTR name) {
    PRINTER_DEFAULTSW defaults = {nullptr, nullptr, PRINTER_ALL_ACCESS};
    UniquePrinter printer;
    if (!OpenPrinterW(SpoolerText(name), printer.Put(), &defaults))
        (void)printer.Release();  // a failed open owns nothing, whatever it left behind
    return printer;
}

}  // namespace kzp
