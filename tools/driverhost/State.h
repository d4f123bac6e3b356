// What the plug-in leaves behind, in readable form.
#pragma once

#include <map>
#include <string>

#include "tools/driverhost/DocumentSession.h"

namespace driverhost {

// "device mode: form", "settings: DefaultDir", "printer data: ...", "form: ...", "driver items: ..." and what
// is there.
using State = std::map<std::wstring, std::wstring>;

State SettingsState();  // every value below the user's key, with type and byte count

// All of it for an open session.
State CaptureState(DocumentSession& session);

void PrintState(const State& state);
// A table of what differs.
void PrintChanges(const State& before, const State& after);

}  // namespace driverhost
