// The folder that receives the files: where the user's documents are, choosing another one, and taking it
// over once a file could be created in it.
#pragma once

#include <string>

#include "settings/SheetState.h"

namespace kzp {

// The user's documents folder, as the shell spells it; empty when the shell has none. Shell code is loaded at
// the first call.
std::wstring DocumentsFolder();

// Shows the shell's folder browser. 0 with the path of the chosen folder, empty for an item that has none; 1
// with an empty `folder` when the user cancelled.
int BrowseForFolder(PCWSTR title, HWND owner, std::wstring& folder);

// Proves that a file can be created in `folder`; an empty one passes unproven. Then, while "User document
// location" is checked, selects the folder in the output page's list, adding it to list and pending history
// when it is not listed yet, and makes it the pending folder; an empty one makes the pending folder what the
// list shows. 0 when no file could be created, with everything as it was and the user told; otherwise 1.
int ValidateOutputFolder(SheetState& sheet, HWND page, const std::wstring& folder);

}  // namespace kzp
