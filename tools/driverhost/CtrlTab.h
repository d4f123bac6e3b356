// Ctrl+Tab in a property sheet, where the platform does not switch tabs on synthesised presses.
#pragma once

#include <windows.h>

namespace driverhost {

bool RunsUnderWine();

// While it lives, Ctrl+Tab (with Shift: backwards) in this thread's sheets does what a click on the next tab
// does, as Windows does by itself. Wine asks for the key's state of this moment instead of that of the
// message, and synthesised presses, queued at once, have been released by then. Does nothing on Windows.
class CtrlTabHook {
  public:
    CtrlTabHook();
    ~CtrlTabHook();
    CtrlTabHook(const CtrlTabHook&) = delete;
    CtrlTabHook& operator=(const CtrlTabHook&) = delete;

  private:
    HHOOK m_hook;
};

}  // namespace driverhost
