// A test that hangs ends its program after 80 seconds.
#pragma once

namespace kzp::test {

// For a test that takes longer, at each of its steps.
void RestartWatchdog();

// Called before the program is ended.
inline void (*atHang)() = nullptr;

}  // namespace kzp::test
