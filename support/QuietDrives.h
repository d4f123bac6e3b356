// Looking for files that may not be there.
#pragma once

#include <windows.h>

namespace kzp {

// While it lives, this thread is told of a drive without a disk, or of a card reader without a card, by an
// error like any other; in a program that has not asked for that Windows shows a box and waits.
class QuietDrives {
  public:
    QuietDrives() { SetThreadErrorMode(GetThreadErrorMode() | SEM_FAILCRITICALERRORS, &m_before); }
    ~QuietDrives() { SetThreadErrorMode(m_before, nullptr); }
    QuietDrives(const QuietDrives&) = delete;
    QuietDrives& operator=(const QuietDrives&) = delete;

  private:
    DWORD m_before = 0;
};

}  // namespace kzp
