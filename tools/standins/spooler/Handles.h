// The open handles of this process.
#pragma once

#include <windows.h>
#include <winspool.h>

#include <string>

namespace kzp::standins::spooler {

struct OpenedHandle {
    std::wstring printer;  // empty for a handle to the server itself
    ACCESS_MASK access = 0;
};

// Never null.
HANDLE AddHandle(OpenedHandle handle);

// ERROR_INVALID_HANDLE for anything that AddHandle did not give out or that was closed since. `administer`
// asks for the right to change the printer or the server (ERROR_ACCESS_DENIED).
OpenedHandle FindHandle(HANDLE handle, bool administer = false);
void CloseHandleEntry(HANDLE handle);

// FindHandle for calls on printers: server handles are refused as well, and a printer that was deleted
// meanwhile (ERROR_PRINTER_DELETED). Answers its name.
std::wstring FindPrinter(HANDLE handle, bool administer = false);

}  // namespace kzp::standins::spooler
