// The keys that are on their way to the sheets of this process.
#pragma once

#include <windows.h>

namespace driverhost {

// While it lives, this thread counts the presses that come out of its queue, and Ctrl+Tab (with Shift:
// backwards) in its sheets does what a click on the next tab does, as Windows does by itself. Wine asks for
// the key's state of this moment instead of that of the message, and synthesised presses, queued at once,
// have been released by then.
class KeyQueue {
  public:
    KeyQueue();
    ~KeyQueue();
    KeyQueue(const KeyQueue&) = delete;
    KeyQueue& operator=(const KeyQueue&) = delete;

    // Presses a key that no program knows, and answers its number. Keys keep their order: once it has
    // arrived, everything that was pressed before it has, in whichever sheet of this process has the
    // keyboard.
    static LONG PressMarker();
    static LONG LatestMarker();  // that has arrived
    static LONG CtrlTabs();      // that have arrived

  private:
    HHOOK m_hook;
};

}  // namespace driverhost
