// The per-user settings in the registry. Only the installation opens their key beside this code.
//
// Every operation takes the value's name and answers 1 for success and 0 for failure; nothing is cached,
// logged or shown. A name that is empty or holds a backslash is refused before the registry is touched.
#pragma once

#include <windows.h>

#include <string>

namespace kzp {

inline constexpr wchar_t kSettingsKey[] = L"SOFTWARE\\Brimlake\\KZPWriter\\3";

// Names of the stored values, with type and contents.
inline constexpr wchar_t kLaunchView[] = L"LaunchKZPView";  // REG_SZ, "YES"/"NO": show the file when printed
inline constexpr wchar_t kPromptFileName[] =
    L"PROMPTFILENAME";                                   // REG_SZ, "YES"/"NO": ask for the file's name
inline constexpr wchar_t kDefaultDir[] = L"DefaultDir";  // REG_SZ: output folder, full path
inline constexpr wchar_t kPathDirs[] = L"PathDirs";      // REG_SZ: folder history (pages/output)
inline constexpr wchar_t kOutputType[] = L"OutputType";  // REG_DWORD: 1 "KZP", anything else "KZPx"
inline constexpr DWORD kStoredKzp = 1;
inline constexpr wchar_t kFontList[] = L"FONTLIST";      // REG_BINARY: 64 bytes a font (pages/advanced)
inline constexpr wchar_t kSessionId[] = L"SessionId";    // REG_DWORD: session that prints
inline constexpr wchar_t kApplicationId[] = L"ID";       // REG_DWORD: process that prints, or 0
inline constexpr wchar_t kInstallDir[] = L"InstallDir";  // REG_SZ, read from the machine hive

// Reads create a missing or unreadable value with its default: an empty text, 0, or no bytes. The answer is 1
// when the value was read or its default stored. The stored type is not looked at.

// `out` holds the text up to its first NUL, at most 1023 characters; a longer stored text counts as
// unreadable.
// `existed`, when wanted, tells whether a readable text was stored before.
int ReadStringSetting(const std::wstring& name, std::wstring& out, bool* existed = nullptr);

// `out` is 0 before any attempt and stays 0 when the value was missing.
int ReadDwordSetting(const std::wstring& name, DWORD& out);

// `bytes` is the buffer's size on input and the number of bytes read on output, 0 when the value was missing.
// A value longer than the buffer counts as unreadable.
int ReadBinarySetting(const std::wstring& name, void* buffer, DWORD& bytes);

// Writes always go to the user's hive.

// Stores the text and one byte of its terminator: 2 * length + 1 bytes, which is what readers are built for.
int WriteStringSetting(const std::wstring& name, const std::wstring& text);
int WriteDwordSetting(const std::wstring& name, DWORD value);
int WriteBinarySetting(const std::wstring& name, const void* data, DWORD bytes);

// How the pages take a "YES"/"NO" text: compared without regard to case over the length of the stored text,
// so that the empty text and every beginning of "YES" mean yes, and "n" means no.
bool IsPrefixOfYes(const std::wstring& text);
bool IsPrefixOfNo(const std::wstring& text);

}  // namespace kzp
