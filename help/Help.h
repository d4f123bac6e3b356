// What the Help buttons do, and where the installer records the help file.
#pragma once

namespace kzp {

// Below HKEY_LOCAL_MACHINE. The value is the help file's full path; the companion programs lie in its folder.
inline constexpr wchar_t kProductKey[] = L"SOFTWARE\\Brimlake\\KZPWriter";
inline constexpr wchar_t kHelpFilePath[] = L"HelpFilePath";

// Opens the installed help file at the product's topic. Silent when there is no help file or no help control:
// the address then lacks its path, or nothing opens.
void ShowHelp();

}  // namespace kzp
