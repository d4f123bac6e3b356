// Running the platform's installer with the project's package, on stand-ins in its system folder.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace kzp::test {

// Puts the stand-in spooler and printer set-up where the installer's processes find them, and puts the
// platform's own back afterwards; also what a run that was killed left behind.
class StandInsInSystemFolder {
  public:
    StandInsInSystemFolder();
    ~StandInsInSystemFolder();
    StandInsInSystemFolder(const StandInsInSystemFolder&) = delete;
    StandInsInSystemFolder& operator=(const StandInsInSystemFolder&) = delete;
};

struct InstallerRun {
    DWORD exitCode = 0;
    std::wstring log;                 // all of it
    std::vector<std::wstring> lines;  // the actions' own, from "INFO: " or "ERROR: " to the line's end

    // How often an action was started: once when it is put into the script, once when that is carried out.
    int Starts(const std::wstring& action) const;
};

// Runs "msiexec <arguments> /qn" with a full log. A run that takes longer than 40 s, as one does that waits
// on a message box, is ended and fails the test.
InstallerRun RunInstaller(const std::wstring& arguments);

// Process of the spooler's service, 0 when it does not run.
DWORD SpoolerProcess();
void StartSpooler();

}  // namespace kzp::test
