#include "tests/support/Counters.h"

#include <malloc.h>
#include <winternl.h>

#include <cstdint>
#include <vector>

namespace kzp::test {

namespace {

// What NtQuerySystemInformation answers for SystemHandleInformation: a count, then these at offset 8.
struct HandleEntry {
    WORD processId;
    WORD creator;
    BYTE type;
    BYTE flags;
    WORD handle;
    void* object;
    DWORD access;
};

constexpr int kSystemHandleInformation = 16;
constexpr LONG kInfoLengthMismatch = static_cast<LONG>(0xC0000004);

}  // namespace

size_t CountHandles() {
    std::vector<std::uint8_t> buffer(1 << 16);
    ULONG needed = 0;
    while (NtQuerySystemInformation(static_cast<SYSTEM_INFORMATION_CLASS>(kSystemHandleInformation),
                                    buffer.data(), static_cast<ULONG>(buffer.size()),
                                    &needed) == kInfoLengthMismatch)
        buffer.resize(buffer.size() * 2);
    const ULONG entries = *reinterpret_cast<const ULONG*>(buffer.data());
    const auto* const entry = reinterpret_cast<const HandleEntry*>(buffer.data() + 8);
    size_t count = 0;
    for (ULONG i = 0; i < entries; ++i)
        count += entry[i].processId == GetCurrentProcessId() ? 1u : 0u;
    return count;
}

size_t CountHeapBlocks(HANDLE heap) {
    size_t count = 0;
    PROCESS_HEAP_ENTRY entry = {};
    HeapLock(heap);
    while (HeapWalk(heap, &entry))
        count += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) ? 1u : 0u;
    HeapUnlock(heap);
    return count;
}

size_t CountHeapBlocks() {
    const HANDLE process = GetProcessHeap();
    const HANDLE runTime = reinterpret_cast<HANDLE>(_get_heap_handle());
    return CountHeapBlocks(process) + (runTime != process ? CountHeapBlocks(runTime) : 0);
}

size_t CountWindows() {
    size_t count = 0;
    EnumChildWindows(
        GetDesktopWindow(),
        [](HWND window, LPARAM parameter) -> BOOL {
            DWORD process = 0;
            GetWindowThreadProcessId(window, &process);
            *reinterpret_cast<size_t*>(parameter) += process == GetCurrentProcessId() ? 1u : 0u;
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&count));
    return count;
}

}  // namespace kzp::test
