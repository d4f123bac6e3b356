// The delivered plug-in in the driver host, ready to show its sheet: the four objects in the order that they
// need.
#pragma once

#include "tools/driverhost/SheetRun.h"

namespace kzp::test {

struct HostedSheet {
    driverhost::PlugIn plugIn;
    driverhost::DocumentSession session;
    driverhost::HostSheet sheet;
    driverhost::SheetRun run;

    explicit HostedSheet(driverhost::SessionOptions options = {}, driverhost::SheetOptions shape = {},
                         const std::wstring& dll = driverhost::BesideProgram(L"KZPWriterUI.dll"))
        : plugIn(dll), session(plugIn, std::move(options)), sheet(session, shape), run(sheet) {}
};

// Options of a session without a printer: its handle is null, and nothing is stored by the spooler.
inline driverhost::SessionOptions NoPrinter() {
    driverhost::SessionOptions options;
    options.printer = L"No such printer";
    options.needsPrinter = false;
    return options;
}

}  // namespace kzp::test
