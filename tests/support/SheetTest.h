// A printer and a registry of the test's own for the document sheet.
#pragma once

#include <gtest/gtest.h>

#include "tests/support/HostedSheet.h"
#include "tests/support/ScratchRegistry.h"
#include "tools/standins/spooler/SpoolerControl.h"

namespace kzp::test {

class SheetTest : public testing::Test {
  protected:
    SheetTest() {
        EXPECT_TRUE(standins::spooler::IsInPlace());
        standins::spooler::SetUpPrinter({.name = driverhost::kDefaultPrinter});
    }

    static std::optional<RegistryValue> Setting(const wchar_t* name) {
        return ReadValue(HKEY_CURRENT_USER, kSettingsKey, name);
    }

    ScratchRegistry registry;
};

}  // namespace kzp::test
