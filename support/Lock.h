// A lock of the platform, held for as long as the object lives.
#pragma once

#include <windows.h>

namespace kzp {

class Lock {
  public:
    explicit Lock(SRWLOCK& lock) : m_lock(lock) { AcquireSRWLockExclusive(&m_lock); }
    ~Lock() { ReleaseSRWLockExclusive(&m_lock); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

  private:
    SRWLOCK& m_lock;
};

}  // namespace kzp
