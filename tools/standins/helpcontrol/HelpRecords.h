// How tests put the stand-in help control in place and read the calls that it received, in whatever process.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace kzp::standins::help {

inline constexpr wchar_t kDllName[] = L"StandInHelpControl.dll";

// Below HKEY_CURRENT_USER: the journal of the calls.
inline constexpr wchar_t kCallsKey[] = L"Software\\KZP Stand-ins\\HelpControl";

// Below HKEY_CLASSES_ROOT: the default value is the path of the platform's help control.
inline constexpr wchar_t kControlKey[] = L"CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}\\InprocServer32";

// Each call as "command 0 ADDRESS", with "owner " before it when a window was given and "data " before the
// address when data was; oldest first.
std::vector<std::wstring> Calls();
void ForgetCalls();

// Registers `path` (full path of the stand-in, or of nothing at all) as the platform's help control for as
// long as the object lives. `type` is REG_SZ or REG_EXPAND_SZ.
class RegisteredControl {
  public:
    explicit RegisteredControl(const std::wstring& path, DWORD type = REG_SZ);
    ~RegisteredControl();
    RegisteredControl(const RegisteredControl&) = delete;
    RegisteredControl& operator=(const RegisteredControl&) = delete;

  private:
    bool m_hadValue;
    DWORD m_oldType = REG_SZ;
    std::vector<BYTE> m_oldBytes;
};

}  // namespace kzp::standins::help
