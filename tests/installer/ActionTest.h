// The stage on which an action runs in this process: a registry and a spooler of its own, a service manager
// that plays the spooler's service, an installer session, and message boxes that answer themselves. What is
// asked of the service, waited for, stored, logged and shown stands in the spooler's log among its own calls,
// in one order.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <list>
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

class ActionTest : public testing::Test {
  protected:
    ActionTest();
    ~ActionTest() override;

    // The exported action's answer.
    UINT Run(const char* action) const;

    // The log since it was last asked for; of what is told to the user, or all.
    static Lines Log();
    static Lines Told();

    // What the log holds of the box with this text of the delivered resource module.
    static std::wstring Box(UINT textId);

    ScratchRegistry m_registry;
    TemporaryFolder m_folder;
    InstallerSession m_session;
    PlugInDll m_plugIn;
    SystemFolder m_system{m_plugIn.Module(), SystemFolder::StandIns()};
    std::list<ImportPatch> m_patches;
};

// How the service manager answers in the next action.
struct ServiceFake {
    bool managerMissing = false;
    bool serviceMissing = false;

    // What the looks at the service bring, one after the other: a state when positive, else the negative of
    // an error code. The last one repeats.
    std::vector<int> looks = {SERVICE_RUNNING};
};
inline ServiceFake g_service;

inline const std::wstring kRestarted = L"log INFO: Printer Spooler service is restarted";

}  // namespace kzp::test
