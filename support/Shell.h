// The shell's functions that the plug-in calls, by name from "shell32.dll" of the system's folder: loading
// the plug-in must not load the shell. It then stays until the process ends, for what it has started may
// outlive the call. Where the library or the function is missing, the answer is a refusal; the next call
// looks again.
#pragma once

#include <windows.h>

#include <shellapi.h>
#include <shlobj.h>

namespace kzp::shell {

// ShellExecuteExW.
bool Execute(SHELLEXECUTEINFOW& start);

// SHGetSpecialFolderLocation without a window: a list that the caller frees.
HRESULT GetSpecialFolder(int folder, LPITEMIDLIST* items);

// SHBrowseForFolderW: a list that the caller frees; null when nothing was chosen.
LPITEMIDLIST BrowseForFolder(BROWSEINFOW& browse);

// SHGetPathFromIDListW.
bool GetPath(LPCITEMIDLIST items, wchar_t (&path)[MAX_PATH]);

}  // namespace kzp::shell
