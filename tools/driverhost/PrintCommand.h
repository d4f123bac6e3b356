// Plays an application that prints one document: the driver tells the plug-in's DocumentEvent what happens.
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
// event is an entry point: it has an object, and a use of the DLL, of its own; or all go to the one object
// that is given.
PrintOutcome PrintDocument(const PlugIn& plugIn, HANDLE printer, const std::wstring& title);
PrintOutcome PrintDocument(IPrintOemUI2* plugIn, HANDLE printer, const std::wstring& title);

// The command: prints, and says what it found in "SessionId" and "ID" and which companion programs came up
// within `waitMilliseconds`.
void RunPrintCommand(const PlugIn& plugIn, const std::wstring& printer, DWORD waitMilliseconds);

}  // namespace driverhost
