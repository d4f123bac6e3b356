// The reference count that the factory and the plug-in object share in shape.
#pragma once

#include <windows.h>

#include <atomic>

namespace kzp {

// Starts at 1, for its creator. The driver may count from any thread: what is answered is the outcome of the
// one interlocked operation, never a second look at the count, which another thread may have changed and even
// freed by then.
class ComCount {
  public:
    ULONG Increment() { return static_cast<ULONG>(++m_cRef); }

    // Answers the count that is left; at 0, which one caller alone is told, the owner deletes itself.
    ULONG Decrement() { return static_cast<ULONG>(--m_cRef); }

  private:
    std::atomic<LONG> m_cRef = 1;
};

}  // namespace kzp
