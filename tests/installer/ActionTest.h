// The stage on which an action runs in this process: a registry and a spooler of its own, a service manager
// that plays the spooler's service, an installer session, and message boxes that answer themselves. What is
// asked of the service, stored, logged and shown stands in the spooler's log among its own calls, in one
// order.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/installer/MachineState.h"
#include "tests/support/Files.h"
#include "tests/support/Guarded.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/InstallerSession.h"
#include "tests/support/PlugInDll.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/support/SystemFolder.h"
#include "tools/standins/spooler/SpoolerControl.h"

namespace kzp::test {

// Takes the place of the service manager in the plug-in, of waiting, and of message boxes.
class PlatformFake {
  public:
    explicit PlatformFake(HMODULE module);
    ~PlatformFake();
    PlatformFake(const PlatformFake&) = delete;
    PlatformFake& operator=(const PlatformFake&) = delete;

    bool managerMissing = false;
    bool serviceMissing = false;

    // What the looks at the service bring, one after the other: a state when positive, else the negative of
    // an error code. The last one repeats.
    std::vector<int> looks = {SERVICE_RUNNING};

    Lines events;  // in order: opening, stopping, "wait <ms>", looking, closing
    Lines boxes;   // "caption: text" of each message box, which is answered at once

  private:
    std::vector<std::unique_ptr<ImportPatch>> m_patches;
};

class ActionTest : public testing::Test {
  protected:
    ActionTest();
    ~ActionTest() override;

    // The exported action's answer.
    UINT Run(const char* action) const;

    // The box with this text of the delivered resource module, as `boxes` holds it.
    static std::wstring Box(UINT textId);

    ScratchRegistry m_registry;
    TemporaryFolder m_folder;
    InstallerSession m_session;
    PlugInDll m_plugIn;
    SystemFolder m_system{m_plugIn.Module(), SystemFolder::StandIns()};
    PlatformFake m_platform;
};

}  // namespace kzp::test
