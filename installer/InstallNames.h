// The names under which the printer stands on a machine. Installing and removing must agree on every letter.
#pragma once

namespace kzp {

inline constexpr wchar_t kPrinterName[] = L"Brimlake KZP Writer";  // also the driver's model name
inline constexpr wchar_t kMainPortName[] = L"Brimlake KZP Writer Port";
inline constexpr wchar_t kSecondPortName[] = L"KZP:";
inline constexpr wchar_t kPortOwner[] = L"Local Port";  // the platform's monitor that owns both ports

inline constexpr wchar_t kMonitorName[] = L"Brimlake KZP Writer Port";  // the same text as the main port's
inline constexpr wchar_t kMonitorEnvironment[] = L"Windows x64";
inline constexpr wchar_t kMonitorDll[] = L"KZPPortMonitor.dll";  // in the system folder

inline constexpr wchar_t kActionData[] = L"CustomActionData";  // what a deferred action can read

}  // namespace kzp
