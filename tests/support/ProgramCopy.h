// A second process: the running test started once more, in a copy of this program. The copy finds itself with
// IsCopy and plays its own part.
#pragma once

#include "support/UniqueHandle.h"

namespace kzp::test {

class ProgramCopy {
  public:
    ProgramCopy();

    // The copy's exit status: 0 when its part of the test passed, STILL_ACTIVE when it takes longer.
    DWORD Wait(DWORD milliseconds = 60'000) const;

    // Ends the copy, wherever it is; false when it has ended by itself.
    bool End() const { return TerminateProcess(m_process.Get(), 0) && Wait() == 0; }

    static bool IsCopy() { return Owner() != 0; }
    static DWORD Owner();  // the process that started this one as its copy; 0 otherwise

  private:
    UniqueKernelHandle m_process;
};

}  // namespace kzp::test
