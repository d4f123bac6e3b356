// What the program does besides the sheet: it sets the printer up, and plays an application that prints one
// document, for which the driver tells the plug-in's DocumentEvent what happens.
#pragma once

#include <string>
#include <vector>

#include "tools/driverhost/PlugIn.h"

namespace driverhost {

// One DocumentEvent call.
struct DocumentEventCall {
    INT event;  // DOCUMENTEVENT_*
    HRESULT result;
    INT answer;  // *piResult, -1 when it was not written
};

struct PrintOutcome {
    std::vector<DWORD> filter;             // the events that the plug-in asked for
    std::vector<DocumentEventCall> calls;  // the filter query first
};

// Asks for the filter, tells of the device context that is to come, which no filter keeps away, and of the
// events that were asked for, in the order in which a document brings them. `printer` may be null. Every
// event is an entry point: it has an object, and a use of the DLL, of its own.
PrintOutcome PrintDocument(const PlugIn& plugIn, HANDLE printer, const std::wstring& title);

// The command: prints, and says what changed in "SessionId" and "ID" and which companion programs came up.
void RunPrintCommand(const PlugIn& plugIn, const std::wstring& printer);

// Adds driver and printer through the spooler; a printer that exists already is left as it is. HostError when
// the spooler refuses.
void CreatePrinter(const std::wstring& name);

}  // namespace driverhost
