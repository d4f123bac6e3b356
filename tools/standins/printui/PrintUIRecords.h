// How tests read the command lines that the stand-in printer set-up entry received, in whatever process.
#pragma once

#include <string>
#include <vector>

namespace kzp::standins::printui {

// Below HKEY_CURRENT_USER: the journal of the command lines.
inline constexpr wchar_t kCommandsKey[] = L"Software\\KZP Stand-ins\\PrintUI";

std::vector<std::wstring> Commands();  // oldest first, exactly as they came
void ForgetCommands();

}  // namespace kzp::standins::printui
