// The platform's printer set-up, which installs and removes printers and drivers by command line.
#pragma once

#include <windows.h>

#include <string>

#include "support/UniqueHandle.h"

namespace kzp {

// Holds "printui.dll" while it lives. The entry is looked up by name: no import library has it, and the
// print path must not load it.
class PrinterSetup {
  public:
    PrinterSetup();

    // Runs one command without a window. The platform reports nothing useful: its answer is ignored, and
    // nothing happens where the entry is missing.
    void Run(std::wstring commandLine) const;

  private:
    using Entry = DWORD(WINAPI*)(HWND owner, HINSTANCE instance, LPWSTR commandLine, DWORD show);

    UniqueModule m_library;
    Entry m_entry;
};

}  // namespace kzp
