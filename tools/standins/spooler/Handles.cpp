#include "tools/standins/spooler/Handles.h"

#include <map>
#include <mutex>

#include "tools/standins/spooler/Queues.h"

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

DWORD FindHandle(HANDLE handle, OpenedHandle& found) {
    const std::lock_guard guard(g_handlesLock);
    const auto entry = g_handles.find(reinterpret_cast<ULONG_PTR>(handle));
    if (entry == g_handles.end())
        return ERROR_INVALID_HANDLE;
    found = entry->second;
    return ERROR_SUCCESS;
}

DWORD CloseHandleEntry(HANDLE handle) {
    const std::lock_guard guard(g_handlesLock);
    return g_handles.erase(reinterpret_cast<ULONG_PTR>(handle)) ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}

DWORD FindPrinter(HANDLE handle, bool administer, std::wstring& printer) {
    OpenedHandle opened;
    if (const DWORD error = FindHandle(handle, opened))
        return error;
    if (opened.IsServer())
        return ERROR_INVALID_HANDLE;
    if (administer && !opened.MayAdminister())
        return ERROR_ACCESS_DENIED;
    if (!QueueExists(opened.printer))
        return ERROR_PRINTER_DELETED;
    printer = opened.printer;
    return ERROR_SUCCESS;
}

}  // namespace kzp::standins::spooler
