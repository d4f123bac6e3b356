#include "tests/support/Counters.h"

#include <malloc.h>
#include <winternl.h>

#include <algorithm>
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

constexpr auto kSystemHandleInformation = static_cast<SYSTEM_INFORMATION_CLASS>(16);

}  // namespace

size_t CountHandles() {
    std::vector<BYTE> buffer(1 << 16);
    ULONG needed = 0;
    while (NtQuerySystemInformation(kSystemHandleInformation, buffer.data(),
                                    static_cast<ULONG>(buffer.size()), &needed) != 0)
        buffer.resize(buffer.size() * 2);
    const auto* const first = reinterpret_cast<const HandleEntry*>(buffer.data() + 8);
    return static_cast<size_t>(
        std::count_if(first, first + *reinterpret_cast<const ULONG*>(buffer.data()),
                      [](const HandleEntry& entry) { return entry.processId == GetCurrentProcessId(); }));
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

}  // namespace kzp::test
