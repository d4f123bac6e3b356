#include "tools/standins/spooler/Handles.h"

#include <map>
#include <mutex>

#include "tools/standins/spooler/Calls.h"
#include "tools/standins/spooler/Machine.h"

namespace kzp::standins::spooler {

namespace {

std::mutex g_handlesLock;
std::map<ULONG_PTR, OpenedHandle> g_handles;
ULONG_PTR g_nextHandle = 0x4B5A0000;  // never used twice, so that a closed handle stays invalid

}  // namespace

HANDLE AddHandle(OpenedHandle handle) {
    const std::lock_guard guard(g_handlesLock);
    g_nextHandle += 4;
    g_handles.emplace(g_nextHandle, std::move(handle));
    return reinterpret_cast<HANDLE>(g_nextHandle);
}

OpenedHandle FindHandle(HANDLE handle, bool administer) {
    const std::lock_guard guard(g_handlesLock);
    const auto found = g_handles.find(reinterpret_cast<ULONG_PTR>(handle));
    Require(found != g_handles.end(), ERROR_INVALID_HANDLE);
    const OpenedHandle& opened = found->second;
    const ACCESS_MASK right = opened.printer.empty() ? SERVER_ACCESS_ADMINISTER : PRINTER_ACCESS_ADMINISTER;
    Require(!administer || (opened.access & right), ERROR_ACCESS_DENIED);
    return opened;
}

void CloseHandleEntry(HANDLE handle) {
    const std::lock_guard guard(g_handlesLock);
    Require(g_handles.erase(reinterpret_cast<ULONG_PTR>(handle)), ERROR_INVALID_HANDLE);
}

std::wstring FindPrinter(HANDLE handle, bool administer) {
    Require(!FindHandle(handle).printer.empty(), ERROR_INVALID_HANDLE);
    std::wstring printer = FindHandle(handle, administer).printer;
    Require(QueueExists(printer), ERROR_PRINTER_DELETED);
    return printer;
}

}  // namespace kzp::standins::spooler
