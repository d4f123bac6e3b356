// The two delivered files as the tests of their resources see them: data.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace kzp::test {

HMODULE PluginFile();
HMODULE TextsFile();

inline constexpr LANGID kEnglish = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
inline constexpr LANGID kGerman = MAKELANGID(LANG_GERMAN, SUBLANG_NEUTRAL);
inline constexpr LANGID kFrench = MAKELANGID(LANG_FRENCH, SUBLANG_NEUTRAL);

// A text in one language; empty when the file has none of that number.
std::wstring TextOf(HMODULE file, UINT id, LANGID language = kEnglish);

// The languages that a resource is there in.
std::vector<LANGID> LanguagesOf(HMODULE file, LPCWSTR type, int id);

}  // namespace kzp::test
