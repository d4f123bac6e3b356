// What the plug-in leaves behind, in readable form: the device mode, the user's settings, the printer's data,
// the custom form, the driver's items.
#pragma once

#include <string>
#include <vector>

#include "tools/driverhost/DocumentSession.h"

namespace driverhost {

struct StateRow {
    std::wstring section;  // "device mode", "settings", "printer data", "form", "driver items"
    std::wstring name;
    std::wstring value;
};
using State = std::vector<StateRow>;

State DeviceModeState(const DevModeBlock& block);
State SettingsState();  // every value below the user's key, with type and byte count
State PrinterState(HANDLE printer);
State ItemsState(const DriverTree& driver, const DriverTree& plugIn);

// All of them for an open session.
State CaptureState(DocumentSession& session);

// The whole state, or the sections whose name begins with `section`.
void PrintState(const State& state, const std::wstring& section = {});
// A table of what differs; answers the number of rows.
int PrintChanges(const State& before, const State& after);

// A registry or printer-data value: type, byte count, contents.
std::wstring DescribeValue(DWORD type, const std::vector<BYTE>& bytes);

}  // namespace driverhost
