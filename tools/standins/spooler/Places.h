// Where the state of the spooler is kept: the keys below HKEY_LOCAL_MACHINE that Windows uses for the same
// things, so that programs which look there themselves see one and the same data.
#pragma once

namespace kzp::standins::spooler {

inline constexpr wchar_t kPrintersKey[] = L"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers";
inline constexpr wchar_t kFormsKey[] = L"SYSTEM\\CurrentControlSet\\Control\\Print\\Forms";
inline constexpr wchar_t kMonitorsKey[] = L"SYSTEM\\CurrentControlSet\\Control\\Print\\Monitors";
inline constexpr wchar_t kDriversKey[] =
    L"SYSTEM\\CurrentControlSet\\Control\\Print\\Environments\\Windows x64\\Drivers\\Version-3";
inline constexpr wchar_t kPortsKey[] = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Ports";

// The mutex that keeps every call whole, in whichever processes the callers are.
inline constexpr wchar_t kLockName[] = L"KZP Stand-ins Spooler";

// The stand-in's own: which calls are to fail (a subkey for each), and the log of the changing calls.
inline constexpr wchar_t kFailKey[] = L"SOFTWARE\\KZP Stand-ins\\Spooler\\Fail";
inline constexpr wchar_t kLogKey[] = L"SOFTWARE\\KZP Stand-ins\\Spooler\\Log";

inline constexpr wchar_t kEnvironment[] = L"Windows x64";  // the only one there is
inline constexpr wchar_t kLocalPort[] = L"Local Port";     // the monitor that is always there
inline constexpr wchar_t kPrintProcessor[] = L"winprint";

}  // namespace kzp::standins::spooler
