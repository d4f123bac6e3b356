// The surroundings of a campaign: a registry and a printer of its own, a shell that starts nothing.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "tests/support/HostedSheet.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/InstallerSession.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/support/SystemFolder.h"
#include "tools/stress/Dice.h"

namespace stress {

// The printer in the registry that this process sees.
void SetUpPrinter();

// While it lives, `plugIn` starts no program, opens no help window and browses for no folder: those calls are
// answered as refused, or with success when `succeed`.
class QuietShell {
  public:
    explicit QuietShell(HMODULE plugIn, bool succeed = true);

  private:
    kzp::test::ImportPatch m_patch;
};

// What the installer's actions meet: an installer's session, the stand-ins in the system's folder, and no
// waits.
class InstallerStage {
  public:
    explicit InstallerStage(HMODULE plugIn);

    // Installs and removes the printer; false when an action answers what it must not.
    bool Play() const;

  private:
    HMODULE m_plugIn;
    kzp::test::InstallerSession m_session;
    kzp::test::SystemFolder m_system;
    kzp::test::ImportPatch m_noWaits;
};

// A sheet function that takes every page.
LONG_PTR CALLBACK TakeEverything(HANDLE sheet, UINT function, LPARAM first, LPARAM second);

// How a sheet is ended.
enum class Ending { kOk, kCancel };

// Shows the sheet of `host`, has `edit` done in it, and ends it; one that refuses OK is cancelled. Answers
// what the sheet answered, nothing when the host could not open it at all. HostError when it takes too long.
std::optional<LONG> PlaySheet(kzp::test::HostedSheet& host, const driverhost::SheetStep& edit, Ending ending);

// Does one thing that a person could do at the sheet; what cannot be used at the moment is left alone.
void EditAtRandom(driverhost::SheetUser& user, Dice& dice);

// One sheet in which everything is used: what the platform loads on first use is there when counting begins.
void WarmUpSheets();

// Numbers, letters, blanks, paths, over-long: what may come out of a keyboard or a clipboard.
std::wstring RandomText(Dice& dice);

}  // namespace stress
