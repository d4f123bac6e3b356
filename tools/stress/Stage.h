// What a campaign plays with: sheets that are used at random, and a shell that starts nothing.
#pragma once

#include "tests/support/SheetTest.h"
#include "tests/support/SystemFolder.h"
#include "tools/stress/Campaign.h"

namespace kzp::stress {

// While it lives, `plugIn` can start no program, open no help window and browse for no folder.
class QuietShell {
  public:
    explicit QuietShell(HMODULE plugIn);

  private:
    test::ImportPatch m_patch;
};

// Shows the sheet of `host`, has `edit` done in it, and presses OK; one that refuses is cancelled. HostError
// when the host could not open it at all.
void PlaySheet(test::HostedSheet& host, const driverhost::SheetStep& edit);

// Uses a tab or a control as a person could, with something made up for it; what cannot be used at the moment
// is left alone.
void UseAnything(driverhost::SheetUser& user, Dice& dice);

// One sheet in which everything is used: what the platform loads on first use is there when counting begins.
void WarmUpSheets();

// Numbers, letters, blanks, paths, over-long: what may come out of a keyboard, a clipboard or a registry.
std::wstring RandomText(Dice& dice);

}  // namespace kzp::stress
