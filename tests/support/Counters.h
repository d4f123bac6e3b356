// Leak counters that the platform really maintains, on Windows and on Wine alike.
#pragma once

#include <windows.h>

namespace kzp::test {

// Open kernel handles of this process.
size_t CountHandles();

// Busy blocks of a heap.
size_t CountHeapBlocks(HANDLE heap);

// Busy blocks of the process heap and of the run-time's heap.
size_t CountHeapBlocks();

}  // namespace kzp::test
