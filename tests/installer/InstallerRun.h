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
    std::vector<std::wstring>
        lines;  // the actions' own in the log, from "INFO: " or "ERROR: " to the line's end

    // The plug-in's actions in the order of their starts, "Install Install": once when it is put into the
    // script, once when that is carried out.
    std::wstring started;
};

// Runs "msiexec <arguments> /qn". A run that takes longer than 40 s, as one does that waits on a message box,
// is ended and fails the test.
InstallerRun RunInstaller(const std::wstring& arguments);

}  // namespace kzp::test
