// The registry of a test's own.
#pragma once

#include "tools/standins/common/ScratchRegistry.h"

namespace kzp::test {

using namespace standins;
// The plug-in has constants of these names.
using standins::kProductKey;
using standins::kSettingsKey;
using RegistryValue = standins::Value;

}  // namespace kzp::test
