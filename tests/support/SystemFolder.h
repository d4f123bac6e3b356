// The system's folder as a module sees it when it loads libraries by name.
#pragma once

#include <windows.h>

#include <map>
#include <string>

#include "tests/support/ImportPatch.h"

namespace kzp::test {

// Puts stand-ins into the place of system libraries for `module`, for as long as the object lives. A stand-in
// is found only by a load that searches the system's folder and nothing else. One object at a time.
class SystemFolder {
  public:
    using Libraries = std::map<std::wstring, std::wstring>;  // name as the module spells it: path

    // What the installer's actions load by name, as it stands beside this program.
    static Libraries StandIns();

    SystemFolder(HMODULE module, const Libraries& libraries);
    ~SystemFolder();
    SystemFolder(const SystemFolder&) = delete;
    SystemFolder& operator=(const SystemFolder&) = delete;

  private:
    ImportPatch m_patch;
};

}  // namespace kzp::test
