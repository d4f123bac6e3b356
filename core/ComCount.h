// The reference count that the factory and the plug-in object share in shape.
#pragma once

#include <windows.h>

#include <atomic>

namespace kzp {

// Starts at 1, for its creator. Changes are interlocked; the driver may count from any thread.
class ComCount {
  public:
    ULONG Increment() {
        ++m_cRef;
        return static_cast<ULONG>(m_cRef.load());
    }

    // Answers the count that is left; at 0 the owner deletes itself and must not be touched again.
    ULONG Decrement() {
        if (--m_cRef == 0)
            return 0;
        return static_cast<ULONG>(m_cRef.load());
    }

  private:
    std::atomic<LONG> m_cRef = 1;
};

}  // namespace kzp
