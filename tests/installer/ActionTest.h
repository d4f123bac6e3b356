// The stage on which an action runs in this process: a registry and a spooler of its own, a service manager
// that plays the spooler's service, an installer session, and message boxes that answer themselves.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tests/installer/MachineState.h"
#include "tests/support/Files.h"
#include "tests/support/Guarded.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/InstallerSession.h"
#include "tests/support/MessageBoxes.h"
#include "tests/support/PlugInDll.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/support/SystemFolder.h"
#include "tools/standins/printui/PrintUIRecords.h"
#include "tools/standins/spooler/SpoolerControl.h"

namespace kzp::test {

// Takes the place of the service manager in the plug-in, and of waiting.
class SpoolerServiceFake {
  public:
    explicit SpoolerServiceFake(HMODULE module);
    ~SpoolerServiceFake();
    SpoolerServiceFake(const SpoolerServiceFake&) = delete;
    SpoolerServiceFake& operator=(const SpoolerServiceFake&) = delete;

    bool managerMissing = false;
    bool serviceMissing = false;

    // What the looks at the service bring, one after the other: a state when positive, else the negative of
    // an error code. The last one repeats.
    std::vector<int> looks = {SERVICE_RUNNING};

    std::function<void()> atStart;  // called when the service is started

    Lines events;  // in order: opening, stopping, "wait <ms>", looking, closing

  private:
    std::vector<std::unique_ptr<ImportPatch>> m_patches;
};

class ActionTest : public testing::Test {
  protected:
    ActionTest();
    ~ActionTest() override;

    // The exported action's answer.
    UINT Run(const char* action) const;

    // The text of the delivered resource module.
    static std::wstring Text(UINT id);

    ScratchRegistry m_registry;
    TemporaryFolder m_folder;
    InstallerSession m_session;
    PlugInDll m_plugIn;
    SystemFolder m_system{m_plugIn.Module(), SystemFolder::StandIns()};
    MessageBoxes m_boxes;
    SpoolerServiceFake m_services;
};

}  // namespace kzp::test
