// How tests put the stand-in help control in place and read the calls that it received, in whatever process.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "tools/standins/common/Journal.h"
#include "tools/standins/common/Registry.h"

namespace kzp::standins::help {

inline constexpr wchar_t kDllName[] = L"StandInHelpControl.dll";

// Each call as "command 0 ADDRESS", with "owner " before it when a window was given and "data " before the
// address when data was.
inline const Journal calls(HKEY_CURRENT_USER, L"Software\\KZP Stand-ins\\HelpControl");

// Registers `path` (full path of the stand-in, or of nothing at all) as the platform's help control for as
// long as the object lives. `type` is REG_SZ or REG_EXPAND_SZ.
class RegisteredControl {
  public:
    explicit RegisteredControl(const std::wstring& path, DWORD type = REG_SZ);
    ~RegisteredControl();
    RegisteredControl(const RegisteredControl&) = delete;
    RegisteredControl& operator=(const RegisteredControl&) = delete;

  private:
    Key m_key;
    std::optional<Value> m_old;
};

}  // namespace kzp::standins::help
