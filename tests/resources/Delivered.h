// The two delivered files as the tests of their resources see them: data.
#pragma once

#include <windows.h>

#include <string>

namespace kzp::test {

HMODULE PluginFile();
HMODULE TextsFile();

// A text as the plug-in would load it; empty when the file has none of that number.
std::wstring TextOf(HMODULE file, UINT id);

// For messages of failed checks; the texts are plain ASCII.
std::string Narrow(const std::wstring& text);

}  // namespace kzp::test
